// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
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
  bool PulsesKnown = false;      ///< 0x7B was read: until then no speed and no limit in RPM can be told
  PendingChanges PendingChange;  ///< of the fan dialog

  /// The byte of 0x7B: two bits a fan, pulses less one.
  void TakePulses(std::uint8_t fields) {
    for (std::size_t tach = 0; tach < ProgrammedPulses.size(); ++tach) {
      ProgrammedPulses[tach] = static_cast<float>((fields >> (2 * tach) & 0x03) + 1);
    }
    PulsesKnown = true;
  }

  /// False when a byte of 0x7B holds other pulses for the tach than speeds are told with.
  bool AgreesWith(std::uint8_t fields, std::size_t tach) const {
    return ProgrammedPulses.at(tach) == static_cast<float>((fields >> (2 * tach) & 0x03) + 1);
  }

  /// The RPM of a shown speed or limit from the one that the count alone gives. Multiplied before it is divided: the
  /// quotient first would round differently, and at a half to another count.
  float Corrected(float rpm, std::size_t tach) const { return rpm * ProgrammedPulses.at(tach) / ActualPulses.at(tach); }

  /// The factor as one number, which a limit written from the gauge is multiplied with.
  float PulseCorrection(std::size_t tach) const { return ProgrammedPulses.at(tach) / ActualPulses.at(tach); }
};

}  // namespace krx
