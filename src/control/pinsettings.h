// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "board/board.h"
#include "control/pinfunctions.h"

namespace krx {

/// The pin functions with a board, whose switches follow them.
class PinSettings : public PinFunctions {
 public:
  explicit PinSettings(Board& board) : board_(board) {}

  void ThermRefresh() override;
  void AlertRefresh() override;

  /// Called after every refresh that changed a mode.
  std::function<void()> Changed;

 private:
  Board& board_;
};

}  // namespace krx
