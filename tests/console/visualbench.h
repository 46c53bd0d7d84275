// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "console/visualmodel.h"
#include "console/workbench.h"
#include "support/testbench.h"

namespace krx {

/// Records what the models ask of the timers: V+ V- visual_timer, T- continuous reading off.
class RecordingTimers : public MainTimers {
 public:
  void StartVisualTimer() override { Add("V+"); }
  void StopVisualTimer() override { Add("V-"); }
  void StopContinuousReading() override { Add("T-"); }
  std::string Take() { return std::exchange(calls_, {}); }

 private:
  void Add(const char* call) { calls_ += (calls_.empty() ? "" : " ") + std::string(call); }
  std::string calls_;
};

/// The whole console without windows, on the simulated bus.
struct VisualBench : TestBench {
  explicit VisualBench(Medium medium = Medium::Board, SimOptions options = {})
      : TestBench(medium, std::move(options)) {}
  Workbench Work{Bus};
  RecordingTimers Timers;
  VisualModel Model{Work, Timers};
};

}  // namespace krx
