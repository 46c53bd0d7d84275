// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include "fans/fandialogmodel.h"
#include "support/boardbench.h"

namespace krx {

/// The fan settings and their dialog's model on the simulated board.
struct FanBench : BoardBench {
  explicit FanBench(Medium medium = Medium::Board, SimOptions options = {}) : BoardBench(medium, std::move(options)) {
    Fans.PulsesKnown = true;
  }

  /// Applies Fields and returns the traffic.
  std::string Apply() {
    Config.ApplyFanSettings(Fields);
    return BusTraffic();
  }
  /// Pending edits of a fan in Fields; a mark is "on" or "off".
  void Edit(std::size_t fan, std::initializer_list<std::pair<FanSetting, const char*>> edits) {
    for (const auto& [setting, value] : edits) {
      for (const auto& [of, text] : texts) {
        if (of == setting) Fields.at(fan).*text = value;
      }
      for (const auto& [of, mark] : marks) {
        if (of == setting) Fields.at(fan).*mark = value == std::string("on");
      }
      Fans.PendingChange.Set(setting, fan);
    }
  }

  FanCommon Fans;
  std::array<std::uint8_t, 3> Codes{3, 3, 3};
  FanConfig Config{Bus, Eval, Fans, Codes};
  FanDialogModel Model{Config, Fans};
  AllFanFields Fields;

 private:
  using enum FanSetting;
  static constexpr std::pair<FanSetting, std::string FanFields::*> texts[] = {
      {FanType, &FanFields::FanType},           {Behaviour, &FanFields::Behaviour},
      {Frequency, &FanFields::Frequency},       {SpinUp, &FanFields::SpinUp},
      {MinimumDuty, &FanFields::MinimumDuty},   {ProgrammedPulses, &FanFields::ProgrammedPulses},
      {ActualPulses, &FanFields::ActualPulses}, {TachLimit, &FanFields::TachLimit},
      {RampRate, &FanFields::RampRate}};
  static constexpr std::pair<FanSetting, bool FanFields::*> marks[] = {{Hysteresis, &FanFields::HysteresisOn},
                                                                       {Polarity, &FanFields::ActiveHigh},
                                                                       {TachSource, &FanFields::TwoWire},
                                                                       {Acoustics, &FanFields::EnhancedAcoustics}};
};

}  // namespace krx
