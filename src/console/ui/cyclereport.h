// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <cstdint>

#include "console/ui/cyclemeter.h"

namespace krx {

class ChipTimer;
class FirstValues;
class StatusLine;
class VisualModel;

/// Shows what the reading cycle brings and how fast it runs: some twenty times a second what was read, once a second
/// the rate, and at once that nothing is read any more.
class CycleReport : public QObject {
  Q_OBJECT
 public:
  struct Parts {
    VisualModel& Model;
    StatusLine& Status;
    const FirstValues& First;
    const ChipTimer& Timer;  ///< the cycle's
  };
  explicit CycleReport(const Parts& parts, QObject* parent = nullptr);

  /// The cycle begins.
  void Started() { meter_.Started(); }
  /// A tick came to its end with so many transfers.
  void Ticked(std::uint64_t transfers);
  /// Shows the cycle's state now, not at the next second.
  void Show();
  /// The program ends: nothing is shown any more.
  void Stop() { period_.stop(); }

 signals:
  /// The pages show what was read. old: the cycle does not run, or brings nothing.
  void ReadingsDue(bool old);
  /// The state of the cycle was shown.
  void Shown();

 private:
  Parts parts_;
  CycleMeter meter_;
  QTimer period_;
  QElapsedTimer sinceReadings_;
};

}  // namespace krx
