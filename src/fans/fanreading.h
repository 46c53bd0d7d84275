// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace krx {

/// What the head of a fan's tab shows beside its name.
struct FanReading {
  std::string Speed = "–";  ///< "2637 RPM"
  std::string Duty;         ///< "88 %"; empty for a fan without an output of its own
  bool Old = false;         ///< not refreshed
};

}  // namespace krx
