// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "console/visualmodel.h"
#include "console/workbench.h"
#include "support/testbench.h"

namespace krx {

using Medium = TestBench::Medium;

/// Records what the models ask of the timers: V+ V- visual_timer, T- continuous reading off.
class RecordingTimers : public MainTimers {
 public:
  void StartVisualTimer() override { Running = true, Add("V+"); }
  void StopVisualTimer() override { Running = false, Add("V-"); }
  bool VisualTimerRunning() const override { return Running; }
  void StopContinuousReading() override { Add("T-"); }
  std::string Take() { return std::exchange(calls_, {}); }
  bool Running = false;

 private:
  void Add(const char* call) { calls_ += (calls_.empty() ? "" : " ") + std::string(call); }
  std::string calls_;
};

/// The whole console without windows, on the simulated bus.
struct VisualBench : TestBench {
  explicit VisualBench(Medium medium = Medium::Board, SimOptions options = {}) : TestBench(medium, std::move(options)) {
    Work.Fans.PulsesKnown = true;
  }
  /// The chip has measured Vccp, on which a current rests.
  void MeasureVccp(float volts) {
    Bus.Seen.Saw(channels[vccpChannel].ValueRegister, 0x80);
    Work.First.Took(vccpChannel);
    Work.Measured.Voltages[channels[vccpChannel].Slot] = volts;
  }
  Workbench Work{Bus};
  RecordingTimers Timers;
  VisualModel Model{Work, Timers};
};

}  // namespace krx
