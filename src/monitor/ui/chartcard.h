// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

#include "monitor/visualmodel.h"

namespace krx {

class SavingBar;
class StripChart;
class UserDialogs;
class WaitBudget;
enum class ChartFormat;
class ReadingCycle;
class TraceHistory;
struct DisplayState;

/// What the charts show.
struct ChartParts {
  const TraceHistory& History;
  const DisplayState& Display;
  const ReadingCycle& Cycle;  ///< whose clock the history's times are on
};

/// The two strip charts, of which one is in sight, over the cycle's history.
class ChartCard : public QFrame {
  Q_OBJECT
 public:
  /// state names the traces until the first ShowState.
  ChartCard(const ChartParts& parts, UserDialogs& dialogs, const VisualState& state, QWidget* parent = nullptr);

  /// Which chart is in sight, and captions, range and traces of both.
  void ShowState(const VisualState& state);
  /// What changes with every reading.
  void ShowReading(const VisualState& state);
  /// Keeps the redraws out of the waits before transfers. The budget is to outlive the card.
  void SetWaitBudget(WaitBudget* budget);
  /// A tick has appended to the history.
  void Posted();
  /// A tick that failed has: the traces have a gap.
  void GapPosted();
  /// Medium and chip, which exports name.
  void SetSource(const QString& source) { source_ = source; }

  SavingBar& Saving() { return *saving_; }

  /// Number of the channel's trace in its chart, and of its colour.
  static int TraceNumber(std::size_t channel);

 signals:
  /// A line for the status bar.
  void Notice(const QString& text);

 private:
  StripChart* MakeChart(const QString& name, Strip strip, const VisualState& state);
  void MakeSavingBar();
  void ExportChart(StripChart& chart, ChartFormat format);
  QStringList ExportNotes() const;

  ChartParts parts_;
  UserDialogs& dialogs_;
  StripChart* strip2_;
  StripChart* strip3_;
  SavingBar* saving_ = nullptr;
  QString source_;
  std::array<bool, traceCount> traceShown_;
  GaugeScale strip2Range_;
};

}  // namespace krx
