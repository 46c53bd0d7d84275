// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/traceplottable.h"

#include <algorithm>
#include <cmath>

namespace krx {

std::int64_t ToMicroseconds(double seconds) {
  return std::llround(std::clamp(seconds, -9e12, 9e12) * 1e6);
}

namespace {

struct Run {
  double X;
  double Top;  // of the smaller y
  double Bottom;
};

double PixelMiddle(double position, double devicePixel) {
  return (std::floor(position / devicePixel) + 0.5) * devicePixel;
}

// Nearest ends of two runs; where they overlap the bridge is level.
QLineF Bridge(const Run& from, const Run& to) {
  if (to.Bottom < from.Top) return {from.X, from.Top, to.X, to.Bottom};
  if (to.Top > from.Bottom) return {from.X, from.Bottom, to.X, to.Top};
  const double y = std::max(from.Top, to.Top);
  return {from.X, y, to.X, y};
}

}  // namespace

TraceLines MakeTraceLines(std::span<const TraceColumn> columns, const TraceScale& scale, std::optional<QPointF> before,
                          std::optional<QPointF> after) {
  TraceLines lines;
  std::optional<Run> last;
  bool gap = false;             // after the last run
  std::optional<QLineF> level;  // grows as long as neighbours stand at one height
  const auto flush = [&] {
    if (level) lines.Straight.append(*level);
    level.reset();
  };
  const double step = 1.5 * scale.DevicePixel;
  const auto yOf = [&](float value) {
    const double y = scale.ZeroY + static_cast<double>(value) * scale.YPerUnit;
    return PixelMiddle(std::clamp(y, -1e6, 1e6), scale.DevicePixel);  // far outside, and no painter's overflow
  };
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].Empty()) continue;
    Run run{PixelMiddle(scale.FirstX + static_cast<double>(i) * scale.ColumnWidth, scale.DevicePixel),
            yOf(columns[i].Max), yOf(columns[i].Min)};
    if (run.Top > run.Bottom) std::swap(run.Top, run.Bottom);
    if (!last && before) {
      lines.Slanted.append({*before, {run.X, yOf(columns[i].Max)}});
    } else if (last && run.X - last->X > step) {
      flush();
      if (!gap) lines.Slanted.append(Bridge(*last, run));
    }
    Run drawn = run;
    if (last && run.X - last->X <= step) {
      drawn.Top = std::min(drawn.Top, last->Bottom);
      drawn.Bottom = std::max(drawn.Bottom, last->Top);
    }
    if (drawn.Top == drawn.Bottom) {
      if (level)
        level->setP2({drawn.X, drawn.Top});
      else
        level = QLineF(drawn.X, drawn.Top, drawn.X, drawn.Top);
    } else {
      flush();
      lines.Straight.append({drawn.X, drawn.Top, drawn.X, drawn.Bottom});
    }
    last = run;
    gap = columns[i].GapAfter;
  }
  flush();
  if (last && after) lines.Slanted.append({{last->X, last->Top}, *after});
  if (!last && before && after) lines.Slanted.append({*before, *after});
  // A line of no length is not drawn by every paint engine.
  for (QLineF& line : lines.Straight)
    if (line.p1() == line.p2()) line.setP2(line.p2() + QPointF(scale.DevicePixel / 4, 0));
  return lines;
}

TracePlottable::TracePlottable(QCPAxis* keyAxis, QCPAxis* valueAxis, const TraceHistory& history, std::size_t trace)
    : QCPAbstractPlottable(keyAxis, valueAxis), history_(history), trace_(trace) {
  setSelectable(QCP::stNone);
}

double TracePlottable::selectTest(const QPointF&, bool, QVariant*) const {
  return -1;
}

QCPRange TracePlottable::getKeyRange(bool& foundRange, QCP::SignDomain) const {
  foundRange = !history_.Empty() && history_.LastTime() >= firstTime_;
  return {ToSeconds(std::max(history_.FirstTime(), firstTime_)), ToSeconds(history_.LastTime())};
}

QCPRange TracePlottable::getValueRange(bool& foundRange, QCP::SignDomain, const QCPRange& keyRange) const {
  const bool everything = keyRange == QCPRange();
  const std::int64_t begin = everything ? firstTime_ : std::max(firstTime_, ToMicroseconds(keyRange.lower));
  const std::int64_t end = everything ? history_.LastTime() + 1 : ToMicroseconds(keyRange.upper);
  const TraceColumn range = history_.Range(trace_, begin, end);
  foundRange = !range.Empty();
  return foundRange ? QCPRange(range.Min, range.Max) : QCPRange();
}

void TracePlottable::draw(QCPPainter* painter) {
  const QCPAxis* time = mKeyAxis.data();
  const QCPAxis* value = mValueAxis.data();
  if (!time || !value || history_.Empty()) return;
  const bool vectors = painter->modes().testFlag(QCPPainter::pmVectorized);
  const double devicePixel = 1 / (vectors ? 2.0 : std::max(painter->deviceTransform().m11(), 0.1));
  const double devicePixels = std::max(time->axisRect()->width() / devicePixel, 1.0);

  // Columns start at multiples of their width, not at the left edge: so a moving picture keeps its shape.
  const std::int64_t begin = ToMicroseconds(time->range().lower);
  const std::int64_t end = ToMicroseconds(time->range().upper);
  const auto width =
      std::max<std::int64_t>(static_cast<std::int64_t>(static_cast<double>(end - begin) / devicePixels), 1);
  std::int64_t first = begin - ((begin % width) + width) % width;
  first = std::max(first, firstTime_);
  if (first >= end) return;
  const std::int64_t past = first + (end - first + width - 1) / width * width;
  columns_.resize(static_cast<std::size_t>((past - first) / width));
  history_.Columns(trace_, first, past, columns_);

  const auto pixel = [&](const TraceSample& sample) {
    return QPointF(time->coordToPixel(ToSeconds(sample.Time)), value->coordToPixel(static_cast<double>(sample.Value)));
  };
  // Up to the nearest values outside the picture, unless a gap lies between.
  std::optional<QPointF> before;
  std::optional<QPointF> after;
  if (const auto sample = history_.LastUpTo(trace_, first - 1); sample && sample->Time >= firstTime_) {
    const auto inside = history_.FirstFrom(trace_, first);
    if (inside && !history_.GapBetween(trace_, sample->Time, inside->Time)) before = pixel(*sample);
  }
  if (const auto sample = history_.FirstFrom(trace_, past)) {
    const auto inside = history_.LastUpTo(trace_, past - 1);
    if (inside && !history_.GapBetween(trace_, inside->Time, sample->Time)) after = pixel(*sample);
  }

  TraceScale scale;
  scale.DevicePixel = devicePixel;
  scale.FirstX = time->coordToPixel(ToSeconds(first) + ToSeconds(width) / 2);
  scale.ColumnWidth = time->coordToPixel(ToSeconds(begin + width)) - time->coordToPixel(ToSeconds(begin));
  scale.ZeroY = value->coordToPixel(0);
  scale.YPerUnit = value->coordToPixel(1) - scale.ZeroY;
  const TraceLines lines = MakeTraceLines(columns_, scale, before, after);

  QPen pen = mPen;
  // Wider pens, and polylines, go through the general stroker: a hundred times slower.
  pen.setWidthF(vectors ? (strong_ ? 1.4 : 0.7) : 0);
  painter->setPen(pen);
  painter->setBrush(Qt::NoBrush);
  painter->setAntialiasing(false);  // takes back the library's half pixel; the lines stand on pixels by themselves
  const int passes = strong_ && !vectors ? 2 : 1;
  for (int pass = 0; pass < passes; ++pass) {
    painter->setRenderHint(QPainter::Antialiasing, vectors);
    painter->drawLines(lines.Straight);
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->drawLines(lines.Slanted);
    painter->translate(0, devicePixel);
  }
  painter->translate(0, -devicePixel * passes);
  painter->setRenderHint(QPainter::Antialiasing, false);
}

void TracePlottable::drawLegendIcon(QCPPainter* painter, const QRectF& rect) const {
  const QRectF bar(rect.left(), rect.center().y() - 1.5, rect.width(), 3);
  if (visible()) {
    painter->fillRect(bar, mPen.color());
    return;
  }
  // Switched off: hollow, so that it can be told without seeing colours.
  painter->setPen(QPen(mParentPlot->legend->textColor(), 0));
  painter->setOpacity(0.5);
  painter->setBrush(Qt::NoBrush);
  painter->drawRect(bar);
  painter->setOpacity(1);
}

}  // namespace krx
