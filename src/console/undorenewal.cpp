// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/undorenewal.h"

#include "board/boardsync.h"
#include "console/workbench.h"

namespace krx {
namespace {

constexpr std::uint8_t pwmConfiguration = 0x5C;  // PWM1; PWM2 and PWM3 follow
constexpr std::uint8_t configuration2 = 0x73;
constexpr std::uint8_t configuration3 = 0x78;
constexpr std::uint8_t configuration4 = 0x7D;
constexpr std::uint8_t fanPulses = 0x7B;

void RouteChangedTachs(Board& board, const UndoStep& step) {
  constexpr int tachs = 4;
  const int changed = step.Replaced ? step.Value ^ *step.Replaced : 0x0F;
  for (int tach = 0; tach < tachs; ++tach) {
    // The others may stand as the user set them in the switch dialog.
    if ((changed >> tach & 1) != 0) RouteTach(board, tach, (step.Value >> tach & 1) != 0);
  }
}

}  // namespace

void RenewAfterUndo(Workbench& bench, const std::vector<UndoStep>& steps) {
  bool pins = false;
  for (const UndoStep& step : steps) {
    if (step.Register == fanPulses) bench.Fans.TakePulses(step.Value);
    const int output = step.Register - pwmConfiguration;
    if (output >= 0 && output < 3) {
      bench.Display.BehaviourCode.at(static_cast<std::size_t>(output)) = static_cast<std::uint8_t>(step.Value >> 5);
    }
    if (step.Register == configuration3 || step.Register == configuration4) pins = true;
  }
  // What reaches the board comes last: a failure there leaves nothing else undone.
  for (const UndoStep& step : steps) {
    if (step.Register == configuration2) RouteChangedTachs(bench.EvalBoard, step);
  }
  if (!pins) return;
  bench.Pins.ThermRefresh();
  bench.Pins.AlertRefresh();
}

}  // namespace krx
