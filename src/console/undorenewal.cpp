// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/undorenewal.h"

#include "board/boardsync.h"
#include "console/workbench.h"
#include "registers/chip.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

/// The values read by the reading cycle, which may be stopped.
void RenewReadings(Workbench& bench, const UndoStep& step) {
  for (std::size_t i = 0; i < 3; ++i) {
    if (step.Register == chip::Zones[i].Tmin) bench.Zones.ZoneTmin[i] = static_cast<std::int8_t>(step.Value);
    if (step.Register == chip::Zones[i].OperatingPoint)
      bench.Zones.ZoneOpPoint[i] = static_cast<std::int8_t>(step.Value);
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
    // The others may have been set by the user in the switch dialog.
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
  // Board accesses come last, so that a failure there does not prevent the other updates.
  for (const UndoStep& step : steps) {
    if (step.Register == chip::Configuration2) RouteChangedTachs(bench.EvalBoard, step);
  }
  if (!pins) return;
  bench.Pins.ThermRefresh();
  bench.Pins.AlertRefresh();
}

}  // namespace krx
