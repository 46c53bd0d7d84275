// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace krx {

/// Values per temperature zone: 0 Local, 1 Remote1, 2 Remote2.
struct ZoneState {
  std::array<std::int16_t, 3> ZoneTmin{};     ///< present Tmin in °C, kept up to date by the reading cycle
  std::array<std::int16_t, 3> ZoneOpPoint{};  ///< operating point in °C, likewise
  std::array<bool, 3> ZoneOpEnable{true, true, true};
  std::array<std::int16_t, 3> ZoneCycleCode{};
  std::array<std::string, 3> ZoneSourceLabel{"Local", "Remote1", "Remote2"};
  std::array<bool, 3> ZoneVidMonitoring{};

  // Last user input in the automatic-control wizard.
  std::array<std::int16_t, 3> WizardMinTemp{30, 30, 30};  ///< °C
  std::array<std::int16_t, 3> WizardMidTemp{60, 60, 60};  ///< °C
  std::array<std::int16_t, 3> WizardMaxTemp{90, 90, 90};  ///< °C
  std::array<std::int16_t, 3> WizardPwmMid{60, 60, 60};   ///< %
  std::array<std::int16_t, 3> WizardUsePoint{2, 2, 2};    ///< 1 the middle point, 2 the maximum point
  std::array<std::int16_t, 3> WizardFix{};                ///< 0 Fix Min, 1 Fix Mid, 2 Fix Max
};

}  // namespace krx
