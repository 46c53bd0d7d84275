// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "registers/chip.h"

namespace krx {

/// The editable settings of one fan.
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

/// The fan state shared by the system, by tach input.
struct FanCommon {
  std::array<std::string, 4> FanLabel{"Fan1", "Fan2", "Fan3", "Fan4"};
  std::array<float, 4> ProgrammedPulses{1, 1, 1, 1};  ///< pulses per revolution programmed into 0x7B
  std::array<float, 4> ActualPulses{1, 1, 1, 1};      ///< actual pulses per revolution of the fan
  bool PulsesKnown = false;      ///< 0x7B was read; until then speeds and limits in RPM are unknown
  PendingChanges PendingChange;  ///< of the fan dialog

  /// The pulses of a tach in the byte of 0x7B, which holds them minus one.
  static float PulsesIn(std::uint8_t fields, std::size_t tach) {
    return static_cast<float>((fields >> chip::Tachs.at(tach).PulsesShift & chip::PulsesMask) + 1);
  }

  /// Takes the byte of 0x7B.
  void TakePulses(std::uint8_t fields) {
    for (std::size_t tach = 0; tach < ProgrammedPulses.size(); ++tach) {
      ProgrammedPulses[tach] = PulsesIn(fields, tach);
    }
    PulsesKnown = true;
  }

  /// False when a byte of 0x7B holds other pulses for the tach than those used for the shown speeds.
  bool AgreesWith(std::uint8_t fields, std::size_t tach) const {
    return ProgrammedPulses.at(tach) == PulsesIn(fields, tach);
  }

  /// The shown RPM of a speed or limit, from the RPM of the count alone. Multiplies before dividing: forming the
  /// quotient first would round differently and could give another count.
  float Corrected(float rpm, std::size_t tach) const { return rpm * ProgrammedPulses.at(tach) / ActualPulses.at(tach); }

  /// The correction as one factor, as used for limits written from the gauge.
  float PulseCorrection(std::size_t tach) const { return ProgrammedPulses.at(tach) / ActualPulses.at(tach); }
};

}  // namespace krx
