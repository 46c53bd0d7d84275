// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/tracecursor.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/ui/traceplottable.h"

namespace krx {

using namespace Qt::StringLiterals;

QString ElapsedText(std::int64_t microseconds) {
  const std::int64_t tenths = std::abs(microseconds) / 100'000;
  const auto two = [](std::int64_t number) { return u"%1"_s.arg(number, 2, 10, QChar(u'0')); };
  return (microseconds < 0 ? u"-"_s : QString()) + two(tenths / 36'000) + u':' + two(tenths / 600 % 60) + u':' +
         two(tenths / 10 % 60) + u'.' + QString::number(tenths % 10);
}

TraceCursor::TraceCursor(QCustomPlot* plot, RowSource rows) : QCPAbstractItem(plot), rows_(std::move(rows)) {
  setLayer(u"overlay"_s);
  setVisible(false);
}

void TraceCursor::SetPosition(std::optional<QPointF> pixel) {
  position_ = pixel;
  setVisible(pixel.has_value());
}

std::int64_t TraceCursor::Time() const {
  return position_ ? ToMicroseconds(mParentPlot->xAxis->pixelToCoord(position_->x())) : 0;
}

QString TraceCursor::Text() const {
  QString text = ElapsedText(Time());
  for (const CursorRow& row : rows_(Time())) text += u", %1 %2 (%3)"_s.arg(row.Name, row.Value, row.Delta);
  return text;
}

double TraceCursor::selectTest(const QPointF&, bool, QVariant*) const {
  return -1;
}

void TraceCursor::draw(QCPPainter* painter) {
  if (!position_) return;
  const QRectF area = clipRect();
  const double x = std::floor(position_->x());
  painter->setAntialiasing(false);
  painter->setPen(QPen(palette_->mutedText, 0, Qt::DashLine));
  painter->drawLine(QLineF(x, area.top(), x, area.bottom()));

  const std::vector<CursorRow> rows = rows_(Time());
  painter->setFont(mParentPlot->font());
  const QFontMetricsF metrics(painter->font());
  const QString time = ElapsedText(Time());
  const QString deltaTitle = u"Δ to start"_s;
  const double gap = metrics.averageCharWidth() * 1.5;
  const double mark = metrics.xHeight();
  double name = metrics.horizontalAdvance(time) - mark - gap / 2;
  double value = 0;
  double delta = rows.empty() ? 0 : metrics.horizontalAdvance(deltaTitle);
  for (const CursorRow& row : rows) {
    name = std::max(name, metrics.horizontalAdvance(row.Name));
    value = std::max(value, metrics.horizontalAdvance(row.Value));
    delta = std::max(delta, metrics.horizontalAdvance(row.Delta));
  }
  const double line = metrics.height();
  const QSizeF size(gap * 2 + mark + gap / 2 + name + (rows.empty() ? 0 : gap * 2 + value + delta),
                    line * static_cast<double>(rows.size() + 1) + gap);
  // Beside the pointer, on the side with room, and never outside the picture.
  QPointF corner(x + gap, position_->y() - size.height() / 2);
  if (corner.x() + size.width() > area.right()) corner.setX(x - gap - size.width());
  corner.setX(std::max(corner.x(), area.left()));
  corner.setY(std::clamp(corner.y(), area.top() + 1, std::max(area.top() + 1, area.bottom() - size.height() - 1)));

  const QRectF box(corner, size);
  painter->setAntialiasing(true);
  painter->setPen(QPen(palette_->line, 1));
  QColor ground = palette_->raised;
  ground.setAlphaF(0.9F);
  painter->setBrush(ground);
  painter->drawRoundedRect(box, 4, 4);

  const auto textAt = [&](double left, double width, double top, const QString& text, Qt::Alignment side) {
    painter->drawText(QRectF(left, top, width, line), static_cast<int>(side | Qt::AlignVCenter), text);
  };
  double top = box.top() + gap / 2;
  const double nameLeft = box.left() + gap + mark + gap / 2;
  const double valueLeft = nameLeft + name + gap;
  const double deltaLeft = valueLeft + value + gap;
  painter->setPen(palette_->text);
  textAt(box.left() + gap, nameLeft + name - box.left(), top, time, Qt::AlignLeft);
  painter->setPen(palette_->mutedText);
  if (!rows.empty()) textAt(deltaLeft, delta, top, deltaTitle, Qt::AlignRight);
  for (const CursorRow& row : rows) {
    top += line;
    painter->fillRect(QRectF(box.left() + gap, top + (line - mark) / 2, mark, mark), row.Colour);
    painter->setPen(palette_->text);
    textAt(nameLeft, name, top, row.Name, Qt::AlignLeft);
    textAt(valueLeft, value, top, row.Value, Qt::AlignRight);
    painter->setPen(palette_->mutedText);
    textAt(deltaLeft, delta, top, row.Delta, Qt::AlignRight);
  }
}

}  // namespace krx
