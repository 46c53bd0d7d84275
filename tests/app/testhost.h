// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cmath>
#include <functional>
#include <iomanip>
#include <sstream>

#include "app/command.h"
#include "app/commandhost.h"
#include "support/testbench.h"

namespace krx {

/// The environment of one command: both streams as texts, and a clock that is advanced only by waiting.
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
  int ScreenLines() override { return ScreenHeight; }

  /// Runs a command line split at blanks (arguments with blanks in quotes); returns its exit code.
  int Run(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> std::quoted(word);) words.push_back(word);
    return RunCommand(words, *this);
  }
  /// The output, by lines.
  std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    std::istringstream stream(Data.str());
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }
  bool Said(const std::string& text) const { return Talk.str().find(text) != std::string::npos; }

  ManualClock Time;
  ScriptedPump Pumping{Time};
  std::ostringstream Data;
  std::ostringstream Talk;
  std::function<void()> OnWait;
  bool Stop = false;
  int ScreenHeight = 0;
};

}  // namespace krx
