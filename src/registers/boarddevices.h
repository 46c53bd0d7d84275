// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace krx {

/// The evaluation board's four switch devices, in the order of their bus addresses 0x90, 0x92, 0x94, 0x96.
enum class SwitchDevice : std::uint8_t { U5, U6, U4, U3 };

/// Bus address of a device, 8-bit form.
constexpr std::uint8_t SwitchDeviceAddress(SwitchDevice device) {
  return static_cast<std::uint8_t>(0x90 + 2 * static_cast<int>(device));
}

/// "U5", "U6", "U4" or "U3"; empty for any other address.
constexpr std::optional<std::string_view> SwitchDeviceName(std::uint8_t address) {
  constexpr std::array<std::string_view, 4> names{"U5", "U6", "U4", "U3"};
  if (address < 0x90 || address > 0x96 || address % 2 != 0) return std::nullopt;
  return names[static_cast<std::size_t>((address - 0x90) / 2)];
}

}  // namespace krx
