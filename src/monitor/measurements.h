// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>

namespace krx {

/// The measurement state. Written only by the reading cycle (and DutyTexts by the duty slider).
struct Measurements {
  std::array<float, 3> Temperatures{};   ///< °C: Local, Remote1, Remote2
  std::array<float, 4> FanSpeeds{};      ///< RPM: Fan1..Fan4; NaN: unknown, because the pulses are
  std::array<float, 5> Voltages{};       ///< V: 5V, 12V, Vccp, Vcc, 2.5V
  std::array<std::string, 3> DutyTexts;  ///< "40%": PWM1..PWM3, as last shown
  float ThermPercent = 0;                ///< percentage of the last read period with THERM asserted, 0..100
  float ThermReading = 0;                ///< last byte of 0x79, or its milliseconds, depending on ThermLogMode
  std::array<int, 3> ZoneHysteresis{};   ///< °C: Local, Remote1, Remote2
};

}  // namespace krx
