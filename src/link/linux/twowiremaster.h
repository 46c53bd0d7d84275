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

/// Sets and reads single lines. Bits that no line names keep what the port had when this was made.
class LineDriver {
 public:
  explicit LineDriver(PortRegisters& registers);
  void Set(const PortLine& line, bool high);
  bool Get(const PortLine& line);

 private:
  PortRegisters& registers_;
  std::array<std::uint8_t, 3> written_{};  ///< by PortRegister
};

/// A two-wire bus master on two outputs and one or two inputs. Addresses are in their 8-bit form. Where the clock can
/// be read back, it runs at up to 100 kHz and waits for a device that stretches it, at most 35 ms (then CommsError
/// ETIMEDOUT); else it runs at 10 kHz. A data line that a device holds low is freed by up to nine clocks, CommsError
/// EBUSY when that does not help. NoAcknowledge (ENXIO) when no device takes the address, CommsError EIO when it
/// refuses a later byte; the bus is stopped first.
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
