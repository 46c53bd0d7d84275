// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>

namespace krx {

/// Pause between repeated readings on a bus that does not respond. On a hung bus a transfer takes up to a second,
/// during which no input is delivered: without pauses the window would hardly respond.
class Backoff {
 public:
  void Succeeded() { failures_ = 0; }
  void Failed() { failures_ = std::min(failures_ + 1, most); }

  /// Milliseconds until the next tick: 0 (as usual) up to the first failure, then 100, doubled with each further one,
  /// up to 2000.
  int PauseMilliseconds() const {
    return failures_ < 2 ? 0 : std::min(firstMilliseconds << (failures_ - 2), longestMilliseconds);
  }

 private:
  static constexpr int firstMilliseconds = 100;
  static constexpr int longestMilliseconds = 2000;
  static constexpr int most = 16;  ///< prevents overflow

  int failures_ = 0;  ///< consecutive
};

}  // namespace krx
