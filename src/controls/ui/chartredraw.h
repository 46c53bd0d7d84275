// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>

#include "controls/waitbudget.h"

class QWidget;

namespace krx {

/// When a chart's plot is drawn again: often enough to be looked at, never while nobody can see it, and not while a
/// transfer would come late for it.
class ChartRedraw : public QObject {
  Q_OBJECT

 public:
  /// Belongs to the chart, which `draw` draws at once.
  ChartRedraw(QWidget& chart, std::function<void()> draw);
  ~ChartRedraw() override;

  /// None by default. It is to outlive the chart.
  void SetWaitBudget(WaitBudget* budget);
  WaitBudget* Budget() const { return budget_; }

  /// A tick brought what the plot shows: redraws with every fifth, or when 50 ms have passed since the last picture.
  void Posted();
  /// Redraws soon, once for all that is requested until then.
  void Request();
  /// The chart may be in sight again: requests what was left out meanwhile.
  void CatchUp();

 private:
  bool Drawable() const;
  void Redraw();

  QWidget& chart_;
  std::function<void()> draw_;
  QElapsedTimer sinceRedraw_;
  QTimer timer_;
  WaitBudget* budget_ = nullptr;
  double redrawSeconds_ = 0;  // what the last one took
  int ticks_ = 0;
  bool dirty_ = true;
};

}  // namespace krx
