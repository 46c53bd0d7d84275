// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <vector>

#include "controls/tracehistory.h"

namespace krx {

/// The colour of a trace, as a bar beside its name.
class TraceBar : public QWidget {
  Q_OBJECT
 public:
  explicit TraceBar(std::size_t trace);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::size_t trace_;
};

/// A small line of what a trace did in the last minute, without axes.
class Sparkline : public QWidget {
  Q_OBJECT
 public:
  explicit Sparkline(std::size_t trace);

  void Show(std::vector<TraceColumn> columns, bool old);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::size_t trace_;
  std::vector<TraceColumn> columns_;
  bool old_ = false;
};

}  // namespace krx
