// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>

namespace krx {

/// The fan state that the rest of the system shares, by tach input.
struct FanCommon {
  std::array<std::string, 4> FanLabel{"Fan1", "Fan2", "Fan3", "Fan4"};
  std::array<float, 4> ProgrammedPulses{1, 1, 1, 1};  ///< pulses per revolution programmed into 0x7B
  std::array<float, 4> ActualPulses{1, 1, 1, 1};      ///< pulses per revolution that the fan really gives

  /// Factor on every shown speed and every written limit count.
  float PulseCorrection(std::size_t tach) const { return ProgrammedPulses.at(tach) / ActualPulses.at(tach); }
};

}  // namespace krx
