// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simboard.h"

#include <cstddef>

#include "registers/boarddevices.h"

namespace krx {
namespace {

constexpr auto u5 = static_cast<std::size_t>(SwitchDevice::U5), u6 = static_cast<std::size_t>(SwitchDevice::U6),
               u4 = static_cast<std::size_t>(SwitchDevice::U4), u3 = static_cast<std::size_t>(SwitchDevice::U3);

/// The three switches of a fan group, closed, open, closed for a two-wire fan. Both orders of reading the group's
/// bits give the same pattern.
ChipPins::TachWiring Wiring(int threeSwitches) {
  if (threeSwitches == 0b101) return ChipPins::TachWiring::TwoWire;
  if (threeSwitches == 0b010) return ChipPins::TachWiring::ThreeWire;
  return ChipPins::TachWiring::None;
}

}  // namespace

std::uint8_t* SimBoard::Device(std::uint8_t address) {
  for (const SwitchDevice device : {SwitchDevice::U5, SwitchDevice::U6, SwitchDevice::U4, SwitchDevice::U3}) {
    if (SwitchDeviceAddress(device) == address) return &devices_[static_cast<std::size_t>(device)];
  }
  return nullptr;
}

std::uint8_t SimBoard::SwitchByte(std::uint8_t address) const {
  const std::uint8_t* device = const_cast<SimBoard*>(this)->Device(address);
  return device == nullptr ? std::uint8_t{0} : *device;
}

ChipPins SimBoard::Pins(bool vidFollowsU3) const {
  ChipPins pins;
  pins.DiodeOpen = {(devices_[u4] & 0x07) != 0x07, (devices_[u4] & 0x38) != 0x38};
  pins.Tach = {Wiring(devices_[u5] & 7), Wiring(devices_[u5] >> 5), Wiring(devices_[u6] & 7),
               Wiring(devices_[u6] >> 5)};
  pins.ProchotOnTach4 = (devices_[u3] & 0x40) != 0;
  // U3E routes the signal to the 5V pin, unless the board uses U3A to U3E for VID: then it is hard-wired.
  pins.ProchotOn5V = vidFollowsU3 || (devices_[u3] & 0x10) != 0;
  if (vidFollowsU3) pins.Vid = static_cast<std::uint8_t>((ChipPins::steadyVid & 0x20) | (devices_[u3] & 0x1F));
  return pins;
}

}  // namespace krx
