// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/twowiremaster.h"

#include <fmt/format.h>

#include <cerrno>

#include "link/commserror.h"

namespace krx {

namespace {

constexpr double fastHalfPeriod = 5e-6;   // 100 kHz, the bus's limit
constexpr double slowHalfPeriod = 50e-6;  // 10 kHz: slow enough that no device stretches the clock
constexpr double stretchLimit = 0.035;    // the SMBus timeout, after which devices reset
constexpr int recoveryClocks = 9;         // the remainder of any byte and its acknowledge
constexpr std::uint8_t readFlag = 1;

double Seconds(Clock& clock) {
  const auto frequency = clock.Frequency();
  if (frequency == 0) return clock.FallbackSeconds();
  return static_cast<double>(clock.Counter()) / static_cast<double>(frequency);
}

std::size_t Index(PortRegister which) {
  return static_cast<std::size_t>(which);
}

}  // namespace

LineDriver::LineDriver(PortRegisters& registers) : registers_(registers) {
  for (const PortRegister which : {PortRegister::Data, PortRegister::Control}) {
    written_[Index(which)] = registers_.Read(which);
  }
}

void LineDriver::Set(const PortLine& line, bool high) {
  std::uint8_t& value = written_[Index(line.Register)];
  const auto mask = static_cast<std::uint8_t>(1U << line.Bit);
  const auto wanted = static_cast<std::uint8_t>(high != line.Inverted ? value | mask : value & ~mask);
  registers_.Write(line.Register, wanted);
  value = wanted;
}

bool LineDriver::Get(const PortLine& line) {
  return ((registers_.Read(line.Register) >> line.Bit & 1) != 0) != line.Inverted;
}

TwoWireMaster::TwoWireMaster(LineDriver& driver, const PortLines& lines, Clock& clock)
    : driver_(driver), lines_(lines), clock_(clock), halfPeriod_(lines.SclIn ? fastHalfPeriod : slowHalfPeriod) {
  // Data first: if another program has left the clock low, this is neither a start nor a stop condition.
  driver_.Set(lines_.SdaOut, true);
  driver_.Set(lines_.SclOut, true);
}

void TwoWireMaster::Send(std::uint8_t address, std::span<const std::uint8_t> bytes) {
  Begin(static_cast<std::uint8_t>(address & ~readFlag));
  for (const std::uint8_t byte : bytes) PutOrRefuse(byte, address);
  Stop();
}

std::uint8_t TwoWireMaster::Receive(std::uint8_t address) {
  return TakeAndEnd(address);
}

std::uint8_t TwoWireMaster::ReadRegister(std::uint8_t address, std::uint8_t reg) {
  Begin(static_cast<std::uint8_t>(address & ~readFlag));
  PutOrRefuse(reg, address);
  return TakeAndEnd(address);
}

void TwoWireMaster::Begin(std::uint8_t address) {
  Start();
  if (Put(address)) return;
  Stop();
  throw NoAcknowledge(ENXIO, fmt::format("no device answers at {:02X}h", address >> 1));
}

void TwoWireMaster::PutOrRefuse(std::uint8_t byte, std::uint8_t address) {
  if (Put(byte)) return;
  Stop();
  throw CommsError(EIO, fmt::format("the device at {:02X}h did not acknowledge a byte", address >> 1));
}

std::uint8_t TwoWireMaster::TakeAndEnd(std::uint8_t address) {
  Begin(address | readFlag);
  const std::uint8_t byte = Take();
  Stop();
  return byte;
}

void TwoWireMaster::Start() {
  // Also a repeated start, which finds the clock low.
  driver_.Set(lines_.SdaOut, true);
  WaitHalfPeriod();
  RaiseClock();
  if (!driver_.Get(lines_.SdaIn)) FreeDataLine();
  WaitHalfPeriod();
  driver_.Set(lines_.SdaOut, false);
  WaitHalfPeriod();
  LowerClock();
}

void TwoWireMaster::Stop() {
  driver_.Set(lines_.SdaOut, false);
  WaitHalfPeriod();
  RaiseClock();
  WaitHalfPeriod();
  driver_.Set(lines_.SdaOut, true);
  WaitHalfPeriod();
}

void TwoWireMaster::FreeDataLine() {
  for (int clocks = 0; clocks < recoveryClocks; ++clocks) {
    LowerClock();
    WaitHalfPeriod();
    RaiseClock();
    WaitHalfPeriod();
    // With both lines high the following start condition makes the device drop the interrupted byte.
    if (driver_.Get(lines_.SdaIn)) return;
  }
  throw CommsError(EBUSY,
                   "the data line stays low after nine clocks: check the board's power and the wiring, and "
                   "whether another device is connected to the printer port");
}

bool TwoWireMaster::Put(std::uint8_t byte) {
  for (int bit = 7; bit >= 0; --bit) ClockBit((byte >> bit & 1) != 0);
  return !ClockBit(true);
}

std::uint8_t TwoWireMaster::Take() {
  unsigned byte = 0;
  for (int bit = 7; bit >= 0; --bit) byte = byte << 1 | (ClockBit(true) ? 1U : 0U);
  ClockBit(true);
  return static_cast<std::uint8_t>(byte);
}

bool TwoWireMaster::ClockBit(bool data) {
  driver_.Set(lines_.SdaOut, data);
  WaitHalfPeriod();
  RaiseClock();
  WaitHalfPeriod();
  const bool seen = driver_.Get(lines_.SdaIn);
  LowerClock();
  return seen;
}

void TwoWireMaster::RaiseClock() {
  driver_.Set(lines_.SclOut, true);
  if (!lines_.SclIn) return;
  const double end = Seconds(clock_) + stretchLimit;
  for (;;) {
    // The time is read before the line, so that a pause of this process does not look like a timeout.
    const bool late = Seconds(clock_) >= end;
    if (driver_.Get(*lines_.SclIn)) return;
    if (late) break;
  }
  driver_.Set(lines_.SdaOut, true);
  throw CommsError(ETIMEDOUT,
                   "the clock stays low for more than 35 ms: a device holds it, or wiring or power is faulty");
}

void TwoWireMaster::LowerClock() {
  driver_.Set(lines_.SclOut, false);
}

void TwoWireMaster::WaitHalfPeriod() {
  const double end = Seconds(clock_) + halfPeriod_;
  while (Seconds(clock_) < end) {
  }
}

}  // namespace krx
