// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <iostream>

#include "autocontrol/zonestate.h"
#include "board/board.h"
#include "board/boardstate.h"
#include "board/fantests.h"
#include "console/startup.h"
#include "control/pinsettings.h"
#include "controls/tracehistory.h"
#include "fans/fancommon.h"
#include "fans/fanconfig.h"
#include "link/linknewcomport06.h"
#include "link/owedwrites.h"
#include "monitor/channels.h"
#include "monitor/displaystate.h"
#include "monitor/firstvalues.h"
#include "monitor/measurements.h"
#include "monitor/readingcycle.h"
#include "monitor/seenranges.h"
#include "panel/registerpanel.h"
#include "power/powersettings.h"
#include "records/logstate.h"

namespace krx {

/// All headless objects of the run, in order of dependency, with their start values. Only the frame sees all of it;
/// console/pageparts.h lists what each page uses.
struct Workbench {
  explicit Workbench(Link& link) : ChipLink(link) {}
  /// Makes the pending restores.
  ~Workbench() { Owed.PutBackAtEnd(std::cerr); }
  Workbench(const Workbench&) = delete;
  Workbench& operator=(const Workbench&) = delete;

  Link& ChipLink;
  Measurements Measured;
  FanCommon Fans;
  ZoneState Zones;
  PowerSettings Power;
  BoardState BoardFlags;
  LogState Log;
  DisplayState Display;
  StartUpState Start;
  TraceHistory History{traceCount};
  FirstValues First{ChipLink};
  SeenRanges Ranges;
  OwedWrites Owed{ChipLink};
  Board EvalBoard{ChipLink, BoardFlags, Owed};
  PinSettings Pins{EvalBoard};
  RegisterPanel Registers{ChipLink};
  FanConfig FanSettings{ChipLink, EvalBoard, Fans, Display.BehaviourCode};
  GlitchTest Glitch{ChipLink, Log};
  ReadingCycle Cycle{ChipLink, {Measured, Zones, Fans, Power, Log, Pins, History, First, Ranges}};
};

}  // namespace krx
