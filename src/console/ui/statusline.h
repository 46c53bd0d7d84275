// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QStatusBar>
#include <string>

#include "link/commserror.h"

class QTimer;

namespace krx {

struct AlarmReport;

/// What the status bar says of the reading cycle.
struct CycleRates {
  bool Running = false;        ///< the timer runs and ticks come to their end
  bool NotMonitoring = false;  ///< the chip was last seen not measuring, whether it is being read or not
  double ReadsPerTick = 0;
  double TicksPerSecond = 0;
  double PauseSeconds = 0;  ///< what the cycle rests before the next try, on a bus that does not answer
};

/// The status bar: where the chip is, whether the cycle runs, a passing message, the alarms, the link faults, the log.
class StatusLine : public QStatusBar {
  Q_OBJECT
 public:
  explicit StatusLine(QWidget* parent = nullptr);

  /// "Simulated board · printer port 2Dh"
  void ShowConnection(const QString& connection);
  void ShowCycle(const CycleRates& report);
  /// How many channels are in alarm, and in the tool tip which. old: nothing is being read.
  void ShowAlarms(const AlarmReport& report, bool old);
  /// Stays for some seconds, or until the next one.
  void ShowNotice(const QString& text);
  /// A tick that failed: named and counted, nothing modal.
  void CountFault(const std::string& source, const CommsError& error);
  int FaultCount() const { return faults_; }

 private:
  QLabel* connection_;
  QLabel* cycle_;
  QLabel* notice_;
  QLabel* alarms_;
  QLabel* faultLabel_;
  QTimer* noticeEnd_;
  int faults_ = 0;
};

}  // namespace krx
