// SPDX-License-Identifier: GPL-3.0-or-later
// How the gauge looks; what it does is in limitgauge.cpp.
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "controls/ui/limitgauge.h"
#include "controls/ui/palette.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

QString TickText(double tick, double step) {
  return QString::number(tick, 'f', std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9))));
}

}  // namespace

QString LimitGauge::Label(Marker marker) const {
  const double value = markers_.ValueOf(marker);
  const QString number = !markers_.IsKnown(marker) ? u"unknown"_s
                         : std::isfinite(value)    ? QString::number(value, 'f', markers_.Scale().Decimals())
                                                   : u"none"_s;
  return (marker == Marker::Low ? u"Low "_s : u"High "_s) + number;
}

void LimitGauge::PaintScale(QPainter& painter) const {
  const Palette& palette = Palette::For(*this);
  const QRectF bar = Bar();
  const double em = fontMetrics().height();
  painter.setPen(palette.line);
  painter.setBrush(palette.grid);
  painter.drawRoundedRect(bar, 0.3 * em, 0.3 * em);

  painter.setPen(palette.mutedText);
  const auto ticks = markers_.Scale().Ticks(std::max(2, static_cast<int>(bar.height() / (3 * em))));
  const double step = ticks.size() > 1 ? ticks[1] - ticks[0] : 1;
  for (const double tick : ticks) {
    const double y = YOf(tick);
    painter.drawLine(QPointF(bar.left() - 0.5 * em, y), QPointF(bar.left(), y));
    painter.drawText(QRectF(0, y - em / 2, bar.left() - 0.65 * em, em), Qt::AlignRight | Qt::AlignVCenter,
                     TickText(tick, step));
  }
}

void LimitGauge::PaintMarker(QPainter& painter, Marker marker, double labelY) const {
  const Palette& palette = Palette::For(*this);
  const QRectF bar = Bar();
  const double em = fontMetrics().height();
  const double y = MarkerY(marker);
  const bool draggable = markers_.IsDraggable(marker);
  const bool known = draggable && markers_.IsKnown(marker);
  const QColor colour = !known ? palette.mutedText : marker == Marker::High ? palette.bad : palette.accent;
  painter.setPen(QPen(colour, 0.1 * em));
  painter.drawLine(QPointF(bar.left(), y), QPointF(bar.right(), y));
  if (!draggable) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  const double tip = bar.right() + 0.1 * em;
  painter.drawPolygon(QPolygonF{{tip, y}, {tip + 0.7 * em, y - 0.45 * em}, {tip + 0.7 * em, y + 0.45 * em}});

  const QString text = Label(marker);
  const QRectF label(tip + 1.1 * em, labelY - em / 2, fontMetrics().horizontalAdvance(text) + 2, em);
  painter.setPen(known ? palette.text : palette.mutedText);
  painter.drawText(label, Qt::AlignLeft | Qt::AlignVCenter, text);
  if (!hasFocus() || focused_ != marker) return;
  painter.setPen(QPen(palette.accent, 0.1 * em));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(label.adjusted(-0.25 * em, -0.12 * em, 0.25 * em, 0.12 * em), 0.25 * em, 0.25 * em);
}

void LimitGauge::paintEvent(QPaintEvent*) {
  const Palette& palette = Palette::For(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setFont(font());
  PaintScale(painter);

  const QRectF bar = Bar();
  const double em = fontMetrics().height();
  const auto stands = [&](Marker marker) { return markers_.IsPlaced(marker) && markers_.IsKnown(marker); };
  const bool both = stands(Marker::Low) && stands(Marker::High);
  if (both && markers_.High() >= markers_.Low()) {
    QColor band = palette.ok;
    band.setAlphaF(0.25F);
    painter.fillRect(QRectF(QPointF(bar.left() + 1, MarkerY(Marker::High)), QPointF(bar.right(), MarkerY(Marker::Low))),
                     band);
  }
  const double top = YOf(markers_.Value());
  painter.setPen(Qt::NoPen);
  painter.setBrush(stale_ ? palette.mutedText : palette.accent);
  painter.drawRoundedRect(QRectF(bar.center().x() - 0.35 * em, top, 0.7 * em, bar.bottom() - top), 0.15 * em,
                          0.15 * em);

  // Labels that would cover each other move apart; the triangles stay where the limits are.
  const double least = em / 2;
  const double most = height() - em / 2;
  double high = std::clamp(MarkerY(Marker::High), least, most);
  double low = std::clamp(MarkerY(Marker::Low), least, most);
  if (const double room = 1.3 * em; markers_.IsDraggable(Marker::High) && low - high < room) {
    high = std::clamp((high + low - room) / 2, least, std::max(least, most - room));
    low = high + room;
  }
  if (markers_.IsPlaced(Marker::High)) PaintMarker(painter, Marker::High, high);
  if (markers_.IsPlaced(Marker::Low)) PaintMarker(painter, Marker::Low, low);
}

}  // namespace krx
