// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "link/clock.h"
#include "link/linux/portwiring.h"

namespace krx {

/// The three registers of a printer port. Throws CommsError when the port fails.
class PortRegisters {
 public:
  virtual ~PortRegisters() = default;
  virtual std::uint8_t Read(PortRegister which) = 0;
  virtual void Write(PortRegister which, std::uint8_t value) = 0;
};

/// Sets and reads single lines. Unused bits keep the value that the port had at construction.
class LineDriver {
 public:
  explicit LineDriver(PortRegisters& registers);
  void Set(const PortLine& line, bool high);
  bool Get(const PortLine& line);

 private:
  PortRegisters& registers_;
  std::array<std::uint8_t, 3> written_{};  ///< by PortRegister
};

/// A bit-banged two-wire bus master on two outputs and one or two inputs. Addresses are in their 8-bit form. If the
/// clock can be read back, it runs at up to 100 kHz and supports clock stretching of up to 35 ms (then CommsError
/// ETIMEDOUT); otherwise it runs at 10 kHz. A data line held low by a device is released with up to nine clocks,
/// CommsError EBUSY if that does not help. NoAcknowledge (ENXIO) when no device acknowledges the address, CommsError
/// EIO when a later byte is not acknowledged; a stop condition is sent first.
class TwoWireMaster {
 public:
  /// Releases both lines.
  TwoWireMaster(LineDriver& driver, const PortLines& lines, Clock& clock);

  /// start, address, the bytes, stop
  void Send(std::uint8_t address, std::span<const std::uint8_t> bytes);
  /// start, address, one byte not acknowledged, stop
  std::uint8_t Receive(std::uint8_t address);
  /// start, address, register, repeated start, address, one byte not acknowledged, stop
  std::uint8_t ReadRegister(std::uint8_t address, std::uint8_t reg);

 private:
  void Begin(std::uint8_t address);
  void PutOrRefuse(std::uint8_t byte, std::uint8_t address);
  std::uint8_t TakeAndEnd(std::uint8_t address);
  void Start();
  void Stop();
  void FreeDataLine();
  bool Put(std::uint8_t byte);
  std::uint8_t Take();
  bool ClockBit(bool data);
  void RaiseClock();
  void LowerClock();
  void WaitHalfPeriod();

  LineDriver& driver_;
  const PortLines& lines_;
  Clock& clock_;
  double halfPeriod_;
};

}  // namespace krx
