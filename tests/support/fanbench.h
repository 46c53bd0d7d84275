// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

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
  /// A pending edit of Fields.
  template <typename Value, typename From>
  void Edit(FanSetting setting, std::size_t fan, Value FanFields::*field, const From& value) {
    Fields.at(fan).*field = value;
    Fans.PendingChange.Set(setting, fan);
  }

  FanCommon Fans;
  std::array<std::uint8_t, 3> Codes{3, 3, 3};
  FanConfig Config{Bus, Eval, Fans, Codes};
  FanDialogModel Model{Config, Fans};
  AllFanFields Fields;
};

}  // namespace krx
