// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "link/linknewcomport06.h"

namespace krx {

/// One 8-bit switch device of the evaluation board: bit n drives the switch whose designator ends in the n-th letter.
class Switch {
 public:
  Switch(Link& link, std::uint8_t deviceAddress) : link_(link), deviceAddress_(deviceAddress) {}

  /// Sends the set states as one byte. Does nothing on the SMBus, where there is no board.
  void WriteSwitch();
  /// Reads the states from the device. On the SMBus they are unchanged.
  void ReadSwitch();

  /// The device's state as far as known: the set state, or in a read-only run, whose writes are suppressed, the last
  /// state read.
  bool Closed(int bit) const { return (RealByte().value_or(0) >> bit & 1) != 0; }
  /// False in a read-only run until the device was read.
  bool Known() const { return RealByte().has_value(); }

  /// Set or last read state of bit i (0..7): true is closed.
  bool Status(int bit) const { return (status_ >> bit & 1) != 0; }
  void SetStatus(int bit, bool closed);

  void SetDeviceAddress(std::uint8_t address) { deviceAddress_ = address; }
  std::uint8_t DeviceAddress() const { return deviceAddress_; }

  /// All eight states, bit n of the byte for switch n.
  std::uint8_t StatusByte() const { return status_; }
  void SetStatusByte(std::uint8_t states) { status_ = states; }

 private:
  std::optional<std::uint8_t> RealByte() const { return link_.WritesHeldBack ? read_ : status_; }

  Link& link_;
  std::uint8_t deviceAddress_;
  std::uint8_t status_ = 0;
  std::optional<std::uint8_t> read_;
};

}  // namespace krx
