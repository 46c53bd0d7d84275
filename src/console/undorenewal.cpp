// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/undorenewal.h"

#include "board/boardsync.h"
#include "console/workbench.h"
#include "registers/chip.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

/// What the reading cycle reads again and again: it may be standing still.
void RenewReadings(Workbench& bench, const UndoStep& step) {
  for (std::size_t i = 0; i < 3; ++i) {
    const auto celsius = static_cast<std::int16_t>(TempFromByte(step.Value, 0));
    if (step.Register == chip::Zones[i].Tmin) bench.Zones.ZoneTmin[i] = celsius;
    if (step.Register == chip::Zones[i].OperatingPoint) bench.Zones.ZoneOpPoint[i] = celsius;
    if (step.Register == chip::Outputs[i].Duty) bench.Measured.DutyTexts[i] = DutyText(DutyToPercent(step.Value));
  }
  std::array<int, 3>& hysteresis = bench.Measured.ZoneHysteresis;
  if (step.Register == chip::Hysteresis1) hysteresis[0] = step.Value & 0x0F, hysteresis[1] = step.Value >> 4;
  if (step.Register == chip::Hysteresis2) hysteresis[2] = step.Value >> 4;
}

void RenewFans(Workbench& bench, const UndoStep& step) {
  if (step.Register == chip::FanPulses) bench.Fans.TakePulses(step.Value);
  for (std::size_t output = 0; output < pwmCount; ++output) {
    if (step.Register != chip::Outputs[output].Configuration) continue;
    bench.Display.BehaviourCode[output] = static_cast<std::uint8_t>(step.Value >> chip::BehaviourShift);
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
    if (step.Register == chip::Configuration3 || step.Register == chip::Configuration4) pins = true;
  }
  // What reaches the board comes last: a failure there leaves nothing else undone.
  for (const UndoStep& step : steps) {
    if (step.Register == chip::Configuration2) RouteChangedTachs(bench.EvalBoard, step);
  }
  if (!pins) return;
  bench.Pins.ThermRefresh();
  bench.Pins.AlertRefresh();
}

}  // namespace krx
