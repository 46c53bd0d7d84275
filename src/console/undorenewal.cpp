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
    const chip::Zone& zone = chip::Zones[i];
    if (step.Register == zone.Tmin) bench.Zones.ZoneTmin[i] = SignedByte(step.Value);
    if (step.Register == zone.OperatingPoint) bench.Zones.ZoneOpPoint[i] = SignedByte(step.Value);
    if (step.Register == zone.Hysteresis)
      bench.Measured.ZoneHysteresis[i] = step.Value >> zone.HysteresisShift & chip::HysteresisMask;
    if (step.Register == chip::Outputs[i].Duty) bench.Measured.DutyTexts[i] = DutyText(DutyToPercent(step.Value));
  }
}

void RenewFans(Workbench& bench, const UndoStep& step) {
  if (step.Register == chip::FanPulses) bench.Fans.TakePulses(step.Value);
  for (std::size_t output = 0; output < pwmCount; ++output) {
    if (step.Register != chip::Outputs[output].Configuration) continue;
    bench.Display.BehaviourCode[output] = static_cast<std::uint8_t>(step.Value >> chip::BehaviourShift);
  }
}

void RouteChangedTachs(Board& board, const UndoStep& step) {
  const int changed = step.Replaced ? step.Value ^ *step.Replaced : 0xFF;
  for (std::size_t tach = 0; tach < chip::Tachs.size(); ++tach) {
    const std::uint8_t mask = chip::Tachs[tach].TwoWire;
    // The others may have been set by the user in the switch dialog.
    if ((changed & mask) != 0) RouteTach(board, static_cast<int>(tach), (step.Value & mask) != 0);
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
