// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/undorenewal.h"

#include "board/boardsync.h"
#include "console/workbench.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

// Local, Remote1, Remote2.
constexpr std::array<std::uint8_t, 3> tminRegisters{0x68, 0x67, 0x69};
constexpr std::array<std::uint8_t, 3> opPointRegisters{0x34, 0x33, 0x35};
// Of PWM1; those of PWM2 and PWM3 follow.
constexpr std::uint8_t pwmDuty = 0x30;
constexpr std::uint8_t pwmConfiguration = 0x5C;
constexpr std::uint8_t hysteresis1 = 0x6D, hysteresis2 = 0x6E;
constexpr std::uint8_t configuration2 = 0x73;
constexpr std::uint8_t configuration3 = 0x78;
constexpr std::uint8_t configuration4 = 0x7D;
constexpr std::uint8_t fanPulses = 0x7B;

/// What the reading cycle reads again and again: it may be standing still.
void RenewReadings(Workbench& bench, const UndoStep& step) {
  for (std::size_t i = 0; i < 3; ++i) {
    if (step.Register == tminRegisters[i]) bench.Zones.ZoneTmin[i] = static_cast<std::int8_t>(step.Value);
    if (step.Register == opPointRegisters[i]) bench.Zones.ZoneOpPoint[i] = static_cast<std::int8_t>(step.Value);
    if (step.Register == pwmDuty + i) bench.Measured.DutyTexts[i] = DutyText(DutyToPercent(step.Value));
  }
  std::array<int, 3>& hysteresis = bench.Measured.ZoneHysteresis;
  if (step.Register == hysteresis1) hysteresis[0] = step.Value & 0x0F, hysteresis[1] = step.Value >> 4;
  if (step.Register == hysteresis2) hysteresis[2] = step.Value >> 4;
}

void RenewFans(Workbench& bench, const UndoStep& step) {
  if (step.Register == fanPulses) bench.Fans.TakePulses(step.Value);
  for (std::size_t output = 0; output < pwmCount; ++output) {
    if (step.Register != pwmConfiguration + output) continue;
    bench.Display.BehaviourCode[output] = static_cast<std::uint8_t>(step.Value >> 5);
  }
}

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
    RenewReadings(bench, step);
    RenewFans(bench, step);
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
