// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "console/pageparts.h"
#include "console/startup.h"
#include "monitor/visualmodel.h"
#include "support/testbench.h"

namespace krx {

using Medium = TestBench::Medium;

/// Records the timer requests of the models: V+ V- visual_timer, T- continuous reading off.
class RecordingFrame : public VisualFrame {
 public:
  explicit RecordingFrame(Workbench& work) : work_(work) {}
  void StartVisualTimer() override { Running = true, Add("V+"); }
  void StopVisualTimer() override { Running = false, Add("V-"); }
  bool VisualTimerRunning() const override { return Running; }
  void StopContinuousReading() override { Add("T-"); }
  bool OwesStartUp() const override { return !work_.Start.Owed.empty(); }
  void RetryStartUp() override { RetryOwed(work_); }
  std::string Take() { return std::exchange(calls_, {}); }
  bool Running = false;

 private:
  void Add(const char* call) { calls_ += (calls_.empty() ? "" : " ") + std::string(call); }
  Workbench& work_;
  std::string calls_;
};

/// The whole console without windows, on the simulated bus.
struct VisualBench : TestBench {
  explicit VisualBench(Medium medium = Medium::Board, SimOptions options = {}) : TestBench(medium, std::move(options)) {
    Work.Fans.PulsesKnown = true;
  }
  /// Makes Vccp known, on which a current depends.
  void MeasureVccp(float volts) {
    Bus.Seen.Saw(channels[vccpChannel].ValueRegister, 0x80);
    Work.First.Took(vccpChannel);
    Work.Measured.Voltages[channels[vccpChannel].Slot] = volts;
  }
  StepProblems ReReadChip() {
    StepProblems problems;
    Model.ReRead([&] { problems = krx::ReReadChip(Work); });
    return problems;
  }
  Workbench Work{Bus};
  RecordingFrame Timers{Work};
  VisualModel Model{VisualPartsOf(Work), Timers};
};

}  // namespace krx
