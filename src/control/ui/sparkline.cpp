// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/ui/sparkline.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <utility>

#include "control/ui/controlchoice.h"
#include "controls/ui/palette.h"
#include "monitor/recenttrend.h"

namespace krx {
namespace {

constexpr double ground = 0.25;  ///< share of the height below the lowest value

QColor ColourOf(const QWidget& widget, std::size_t trace, bool old) {
  const Palette& colours = Palette::For(widget);
  return old ? colours.mutedText : colours.traces.at(trace);
}

bool Same(const TraceColumn& a, const TraceColumn& b) {
  return a.Min == b.Min && a.Max == b.Max && a.GapAfter == b.GapAfter;
}

/// Lines through the middles of the columns, one a piece without a gap.
std::vector<QPolygonF> Pieces(const std::vector<TraceColumn>& columns, const TrendRange& range, const QRectF& area) {
  std::vector<QPolygonF> pieces;
  bool gap = true;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const TraceColumn& column = columns[i];
    if (column.Empty()) continue;
    if (std::exchange(gap, column.GapAfter)) pieces.emplace_back();
    const double value = (static_cast<double>(column.Min) + static_cast<double>(column.Max)) / 2;
    const double up = (value - range.Low) / (range.High - range.Low);
    const double across = (static_cast<double>(i) + 0.5) / static_cast<double>(columns.size());
    pieces.back() << QPointF(area.left() + across * area.width(), area.bottom() - up * area.height());
  }
  return pieces;
}

}  // namespace

TraceBar::TraceBar(std::size_t trace) : trace_(trace) {
  setFixedSize(Lines(*this, 0.27), Lines(*this, 1.8));
}

void TraceBar::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), ColourOf(*this, trace_, false));
}

Sparkline::Sparkline(std::size_t trace) : trace_(trace) {
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void Sparkline::Show(std::vector<TraceColumn> columns, bool old) {
  if (old == old_ && std::ranges::equal(columns, columns_, Same)) return;
  columns_ = std::move(columns);
  old_ = old;
  update();
}

QSize Sparkline::sizeHint() const {
  return {Lines(*this, 7.4), Lines(*this, 2.2)};
}

void Sparkline::paintEvent(QPaintEvent*) {
  const auto range = RangeOf(columns_);
  if (!range) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double base = height() * (1 - ground);
  const QColor colour = ColourOf(*this, trace_, old_);
  QColor fill = colour;
  fill.setAlphaF(0.13F);
  for (const QPolygonF& piece : Pieces(columns_, *range, QRectF(0, 1, width(), base - 1))) {
    QPolygonF area = piece;
    area << QPointF(piece.back().x(), height()) << QPointF(piece.front().x(), height());
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawPolygon(area);
    painter.setPen(QPen(colour, 1.5));
    painter.drawPolyline(piece);
  }
}

}  // namespace krx
