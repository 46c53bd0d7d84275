// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "autocontrol/zonestate.h"
#include "board/boardstate.h"
#include "console/displaystate.h"
#include "console/measurements.h"
#include "console/pinsettings.h"
#include "console/readingcycle.h"
#include "controls/tracehistory.h"
#include "fans/fancommon.h"
#include "link/linknewcomport06.h"
#include "power/powersettings.h"
#include "records/logstate.h"

namespace krx {

/// Every headless object of the run, in order of dependency. Only the main window and its models see all of it.
struct Workbench {
  explicit Workbench(Link& link) : ChipLink(link) {}

  Link& ChipLink;
  Measurements Measured;
  FanCommon Fans;
  ZoneState Zones;
  PowerSettings Power;
  BoardState Board;
  LogState Log;
  DisplayState Display;
  TraceHistory History{traceCount};
  PinSettings Pins{ChipLink, Board};
  ReadingCycle Cycle{ChipLink, {Measured, Zones, Fans, Power, Log, Pins, History}};
};

}  // namespace krx
