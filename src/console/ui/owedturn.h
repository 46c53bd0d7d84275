// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include "controls/ui/chiptimer.h"
#include "link/owedwrites.h"

namespace krx {

/// Writes what is overdue in turns of their own, between two complete handlers, once the bus works again. At rest while
/// nothing is.
class OwedTurn {
 public:
  static constexpr int intervalMilliseconds = 1000;

  /// over: called when nothing is overdue any more, with true when some of it was set anew instead of put back.
  OwedTurn(OwedWrites& owed, ChipTurns& turns, std::function<void(bool setAnew)> over,
           int interval = intervalMilliseconds);
  ~OwedTurn() { owed_.BecameOverdue = nullptr; }
  OwedTurn(const OwedTurn&) = delete;
  OwedTurn& operator=(const OwedTurn&) = delete;

 private:
  void Tick();

  OwedWrites& owed_;
  std::function<void(bool)> over_;
  ChipTimer timer_;
};

}  // namespace krx
