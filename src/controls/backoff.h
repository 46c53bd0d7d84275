// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>

namespace krx {

/// How long a repeated reading rests on a bus that does not answer. A transfer on a bus that hangs takes up to a
/// second, in which no input is delivered: without a rest the window would hardly ever listen.
class Backoff {
 public:
  void Succeeded() { failures_ = 0; }
  void Failed() { failures_ = std::min(failures_ + 1, most); }

  /// Milliseconds until the next tick: 0, as usual, up to the first failure, then 100, doubled with each one, 2000 at
  /// most.
  int PauseMilliseconds() const {
    return failures_ < 2 ? 0 : std::min(firstMilliseconds << (failures_ - 2), longestMilliseconds);
  }

 private:
  static constexpr int firstMilliseconds = 100;
  static constexpr int longestMilliseconds = 2000;
  static constexpr int most = 16;  ///< more would only overflow

  int failures_ = 0;  ///< in a row
};

}  // namespace krx
