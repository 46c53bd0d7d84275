// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineF>
#include <QVector>
#include <optional>
#include <span>

#include "controls/tracehistory.h"
#include "controls/ui/plotlibrary.h"

namespace krx {

/// Where columns and values lie in the picture, in logical pixels.
struct TraceScale {
  double FirstX = 0;       ///< middle of column 0
  double ColumnWidth = 1;  ///< at most one device pixel
  double ZeroY = 0;        ///< of the value 0
  double YPerUnit = -1;
  double DevicePixel = 1;  ///< size of one
};

/// The lines of one trace: upright and level ones lie on the middle of device pixels, the slanted ones bridge columns
/// in which nothing was posted.
struct TraceLines {
  QVector<QLineF> Straight;
  QVector<QLineF> Slanted;
};

/// At most one upright run a column, each reaching to its neighbour's, so that the trace has no holes but where columns
/// are empty because nothing was measured. `before` and `after` are the picture positions of the nearest values on
/// either side, joined when they exist.
TraceLines MakeTraceLines(std::span<const TraceColumn> columns, const TraceScale& scale, std::optional<QPointF> before,
                          std::optional<QPointF> after);

/// One trace of a history against elapsed seconds.
class TracePlottable : public QCPAbstractPlottable {
 public:
  TracePlottable(QCPAxis* keyAxis, QCPAxis* valueAxis, const TraceHistory& history, std::size_t trace);

  void SetFirstTime(std::int64_t time) { firstTime_ = time; }  ///< microseconds; nothing older is drawn
  void SetStrong(bool strong) { strong_ = strong; }

  double selectTest(const QPointF& pos, bool onlySelectable, QVariant* details = nullptr) const override;
  QCPRange getKeyRange(bool& foundRange, QCP::SignDomain domain = QCP::sdBoth) const override;
  QCPRange getValueRange(bool& foundRange, QCP::SignDomain domain = QCP::sdBoth,
                         const QCPRange& keyRange = QCPRange()) const override;

 protected:
  void draw(QCPPainter* painter) override;
  void drawLegendIcon(QCPPainter* painter, const QRectF& rect) const override;

 private:
  const TraceHistory& history_;
  std::size_t trace_;
  std::int64_t firstTime_ = std::numeric_limits<std::int64_t>::min();
  bool strong_ = false;
  std::vector<TraceColumn> columns_;  // kept between redraws for its memory
};

/// Microseconds of the history as seconds of the axis, and back.
inline double ToSeconds(std::int64_t microseconds) {
  return static_cast<double>(microseconds) * 1e-6;
}
std::int64_t ToMicroseconds(double seconds);

}  // namespace krx
