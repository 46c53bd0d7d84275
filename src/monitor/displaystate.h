// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>

namespace krx {

/// Selections of the main display and how the outputs are driven.
struct DisplayState {
  std::int16_t SelectedChannel = 0;             ///< last clicked channel, 0..11
  std::int16_t SelectedPwm = 1;                 ///< output 1..3 in the PWM panel
  std::array<bool, 3> PwmManual{};              ///< behaviour bits 7:5 of 0x5C..0x5E were 111 when the chip was found
  std::array<std::uint8_t, 3> BehaviourCode{};  ///< bits 7:5 of 0x5C..0x5E
  bool EasySetupUsed = false;
  bool DynamicTminShown = true;
};

}  // namespace krx
