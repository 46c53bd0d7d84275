// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>

#include "link/commsmodule.h"

namespace krx {

/// The signals at the pins of one chip besides the measured quantities. The defaults describe a chip on the SMBus,
/// without switches.
struct ChipPins {
  enum class TachWiring { Always, ThreeWire, TwoWire, None };

  std::array<bool, 2> DiodeOpen{};   ///< remote diodes 1, 2
  std::array<TachWiring, 4> Tach{};  ///< the tach source for which pulses arrive
  bool ProchotOnTach4 = true;        ///< the processor-hot signal reaches the Tach4 pin
  bool ProchotOn5V = true;           ///< ... and the 5V pin
  std::uint8_t Vid = steadyVid;      ///< bits 5..0
  static constexpr std::uint8_t steadyVid = 0x0E;
};

/// The evaluation board: four switch devices, and the two heaters in the control byte.
class SimBoard {
 public:
  /// The device's byte, or null when no device is at this (8-bit) address.
  std::uint8_t* Device(std::uint8_t address);

  /// The byte of the device at 0x90, 0x92, 0x94 or 0x96; 0 for any other address. For tests.
  std::uint8_t SwitchByte(std::uint8_t address) const;

  void SetControlByte(std::uint8_t value) { control_ = value; }
  /// The heaters' bits, all others 0.
  std::uint8_t StatusByte() const { return control_ & (heaterMasks[0] | heaterMasks[1]); }
  bool HeaterOn(int heater) const { return (control_ & heaterMasks[heater == 1 ? 0 : 1]) != 0; }

  /// The chip's pin signals with the present switch settings.
  ChipPins Pins(bool vidFollowsU3) const;

  bool BusMode = false;

 private:
  std::array<std::uint8_t, 4> devices_ = {0x00, 0x00, 0x3F, 0x00};  // by SwitchDevice
  std::uint8_t control_ = 0;
};

}  // namespace krx
