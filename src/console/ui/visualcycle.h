// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include "console/ui/cyclereport.h"
#include "controls/ui/chiptimer.h"
#include "monitor/visualmodel.h"

namespace krx {

class StatusLine;
struct Workbench;

/// The reading cycle of the main window: its timer, the model that it drives, and the report on both.
class VisualCycle : public QObject, private VisualFrame {
  Q_OBJECT
 public:
  /// All are to outlive the cycle.
  VisualCycle(Workbench& bench, ChipTurns& turns, StatusLine& status, QObject* parent = nullptr);

  VisualModel& Model() { return model_; }
  CycleReport& Report() { return *report_; }
  bool IsRunning() const { return timer_.IsActive(); }
  /// The program ends: no tick comes any more, and nothing is shown.
  void End();

 signals:
  /// A tick has appended to the history.
  void Posted();
  /// A tick that failed has appended a gap.
  void GapPosted();
  /// The register panel is to stop its continuous reading.
  void ContinuousReadingStopRequested();

 private:
  void StartVisualTimer() override;
  void StopVisualTimer() override { timer_.Stop(); }
  bool VisualTimerRunning() const override { return IsRunning(); }
  void StopContinuousReading() override { emit ContinuousReadingStopRequested(); }
  bool OwesStartUp() const override;
  void RetryStartUp() override;
  void Tick();

  Workbench& bench_;
  VisualModel model_;
  ChipTimer timer_;
  CycleReport* report_;
};

}  // namespace krx
