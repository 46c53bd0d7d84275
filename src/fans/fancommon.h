// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace krx {

/// The settings of one fan that a user can edit.
enum class FanSetting : std::size_t {
  FanType,
  Behaviour,
  Frequency,
  MinimumDuty,
  SpinUp,
  ProgrammedPulses,
  Hysteresis,
  Polarity,
  TachSource,
  TachLimit,
  Acoustics,
  RampRate,
  ActualPulses,
};
inline constexpr std::size_t fanSettingCount = 13;

/// Per setting and fan: edited since it was loaded.
class PendingChanges {
 public:
  bool Has(FanSetting setting, std::size_t fan) const { return flags_.at(static_cast<std::size_t>(setting)).at(fan); }
  void Set(FanSetting setting, std::size_t fan) { flags_.at(static_cast<std::size_t>(setting)).at(fan) = true; }
  void Clear() { flags_ = {}; }

 private:
  std::array<std::array<bool, 4>, fanSettingCount> flags_{};
};

/// The fan state that the rest of the system shares, by tach input.
struct FanCommon {
  std::array<std::string, 4> FanLabel{"Fan1", "Fan2", "Fan3", "Fan4"};
  std::array<float, 4> ProgrammedPulses{1, 1, 1, 1};  ///< pulses per revolution programmed into 0x7B
  std::array<float, 4> ActualPulses{1, 1, 1, 1};      ///< pulses per revolution that the fan really gives
  PendingChanges PendingChange;                       ///< of the fan dialog

  /// Factor on every shown speed and every written limit count.
  float PulseCorrection(std::size_t tach) const { return ProgrammedPulses.at(tach) / ActualPulses.at(tach); }
};

}  // namespace krx
