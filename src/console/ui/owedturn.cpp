// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/owedturn.h"

#include <utility>

namespace krx {

OwedTurn::OwedTurn(OwedWrites& owed, ChipTurns& turns, std::function<void(bool)> over, int interval)
    : owed_(owed), over_(std::move(over)), timer_(turns, "Pending restores", interval, [this] { Tick(); }) {
  owed_.BecameOverdue = [this] { timer_.Start(); };
}

void OwedTurn::Tick() {
  owed_.TakeTurn();
  if (owed_.AnyOverdue()) return;
  timer_.Stop();
  over_(owed_.TakeSetAnew());
}

}  // namespace krx
