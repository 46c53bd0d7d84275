// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace krx {

/// How many readings a second came, measured over a second or more.
class ReadingRate {
 public:
  void Start(double seconds) {
    since_ = seconds;
    readings_ = 0;
    rate_.reset();
  }
  void Read() { ++readings_; }
  /// Readings a second up to now, over the last full period; nothing before the first one has passed.
  std::optional<double> PerSecond(double seconds) {
    if (seconds - since_ >= period) {
      rate_ = readings_ / (seconds - since_);
      since_ = seconds;
      readings_ = 0;
    }
    return rate_;
  }

 private:
  static constexpr double period = 1;

  double since_ = 0;
  int readings_ = 0;
  std::optional<double> rate_;
};

}  // namespace krx
