// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "controls/ui/palette.h"
#include "controls/ui/plotlibrary.h"

namespace krx {

/// What the cursor says about one trace.
struct CursorRow {
  QString Name;
  QString Value;  ///< with unit
  QString Delta;  ///< signed difference to the value at the visible start
  QColor Colour;
};

/// Elapsed time as "hh:mm:ss.t"; hours count on past 99.
QString ElapsedText(std::int64_t microseconds);

/// The measuring line and its box of values. The rows are asked for while drawing, so that they are right when the
/// picture moves under a resting pointer.
class TraceCursor : public QCPAbstractItem {
 public:
  using RowSource = std::function<std::vector<CursorRow>(std::int64_t time)>;

  TraceCursor(QCustomPlot* plot, RowSource rows);

  void SetPosition(std::optional<QPointF> pixel);  ///< none hides it
  std::optional<QPointF> Position() const { return position_; }
  void SetColours(const Palette& palette) { palette_ = &palette; }

  std::int64_t Time() const;  ///< microseconds under the line
  QString Text() const;       ///< the box in one line, for screen readers

  double selectTest(const QPointF& pos, bool onlySelectable, QVariant* details = nullptr) const override;

 protected:
  void draw(QCPPainter* painter) override;

 private:
  RowSource rows_;
  std::optional<QPointF> position_;
  const Palette* palette_ = &Palette::Light();
};

}  // namespace krx
