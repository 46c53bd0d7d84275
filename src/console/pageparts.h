// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "console/workbench.h"
#include "control/controlmodel.h"
#include "monitor/visualmodel.h"

namespace krx {

// The objects of the run used by each page.

inline VisualParts VisualPartsOf(Workbench& bench) {
  return {.ChipLink = bench.ChipLink,
          .Measured = bench.Measured,
          .Fans = bench.Fans,
          .Zones = bench.Zones,
          .Power = bench.Power,
          .Log = bench.Log,
          .Display = bench.Display,
          .History = bench.History,
          .First = bench.First,
          .Ranges = bench.Ranges,
          .Pins = bench.Pins,
          .Cycle = bench.Cycle};
}

inline LivingParts LivingPartsOf(Workbench& bench) {
  return {.ChipLink = bench.ChipLink,
          .Measured = bench.Measured,
          .Fans = bench.Fans,
          .Zones = bench.Zones,
          .Power = bench.Power,
          .Display = bench.Display,
          .Pins = bench.Pins,
          .First = bench.First,
          .History = bench.History,
          .Cycle = bench.Cycle};
}

inline ControlParts ControlPartsOf(Workbench& bench) {
  return {.ChipLink = bench.ChipLink,
          .EvalBoard = bench.EvalBoard,
          .BoardFlags = bench.BoardFlags,
          .Pins = bench.Pins,
          .ThermPeriod = bench.Cycle.ThermPeriod,
          .Living = LivingPartsOf(bench)};
}

}  // namespace krx
