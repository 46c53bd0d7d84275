// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/owedturn.h"

#include <utility>

namespace krx {

OwedTurn::OwedTurn(OwedWrites& owed, ChipTurns& turns, std::function<void()> putBack, int interval)
    : owed_(owed), putBack_(std::move(putBack)), timer_(turns, "Owed writes", interval, [this] { Tick(); }) {
  owed_.BecameOverdue = [this] { timer_.Start(); };
}

void OwedTurn::Tick() {
  owed_.TakeTurn();
  if (owed_.AnyOverdue()) return;
  timer_.Stop();
  putBack_();
}

}  // namespace krx
