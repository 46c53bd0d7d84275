// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cmath>
#include <functional>
#include <sstream>

#include "app/commandhost.h"
#include "support/testbench.h"

namespace krx {

/// The world of one command, at hand: both streams as texts, and a clock that only waiting moves.
class TestHost : public CommandHost {
 public:
  std::ostream& Out() override { return Data; }
  std::ostream& Err() override { return Talk; }
  Clock& ChipClock() override { return Time; }
  EventPump& Pump() override { return Pumping; }
  std::chrono::system_clock::time_point Now() override {
    return std::chrono::system_clock::time_point(std::chrono::milliseconds(std::llround(Time.Seconds() * 1000)));
  }
  void Wait(double seconds) override {
    Time.Advance(seconds);
    if (OnWait) OnWait();
  }
  bool StopRequested() override { return Stop; }
  int ScreenLines() override { return Lines; }

  ManualClock Time;
  ScriptedPump Pumping{Time};
  std::ostringstream Data;
  std::ostringstream Talk;
  std::function<void()> OnWait;
  bool Stop = false;
  int Lines = 0;
};

}  // namespace krx
