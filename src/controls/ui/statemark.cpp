// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/statemark.h"

#include <QEvent>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <utility>

#include "controls/ui/palette.h"

namespace krx {
namespace {

// The shapes; the sign inside one takes the colour of the ground.

void PaintTick(QPainter& painter, const QPen& sign) {
  painter.drawEllipse(QPointF(), 0.96, 0.96);
  painter.setPen(sign);
  painter.setBrush(Qt::NoBrush);
  painter.drawPolyline(QPolygonF{{-0.42, 0.04}, {-0.12, 0.34}, {0.44, -0.28}});
}

void PaintDiamond(QPainter& painter, const QPen& sign) {
  painter.drawPolygon(QPolygonF{{0, -1.12}, {1.12, 0}, {0, 1.12}, {-1.12, 0}});
  painter.setPen(sign);
  painter.drawLine(QPointF(0, -0.5), QPointF(0, 0.08));
  painter.drawPoint(QPointF(0, 0.46));
}

void PaintRing(QPainter& painter, const QColor& colour) {
  painter.setPen(QPen(colour, 0.2, Qt::SolidLine, Qt::RoundCap));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(QPointF(), 0.8, 0.8);
}

QColor ColourOf(Mark mark, const Palette& palette) {
  switch (mark) {
    case Mark::Good:
      return palette.ok;
    case Mark::Attention:
    case Mark::HeaterOn:
      return palette.bad;
    case Mark::Changed:
      return palette.accent;
    case Mark::None:
    case Mark::Unknown:
    case Mark::Off:
      break;
  }
  return palette.mutedText;
}

}  // namespace

void PaintMark(QPainter& painter, Mark mark, const Palette& palette, bool muted) {
  const QColor colour = muted ? palette.mutedText : ColourOf(mark, palette);
  const QPen sign(palette.card, 0.26, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  switch (mark) {
    case Mark::None:
      break;
    case Mark::Unknown:
      PaintRing(painter, colour);
      break;
    case Mark::Good:
      PaintTick(painter, sign);
      break;
    case Mark::Attention:
      PaintDiamond(painter, sign);
      break;
    case Mark::Off:
      PaintRing(painter, colour);
      painter.drawLine(QPointF(-0.38, 0), QPointF(0.38, 0));
      break;
    case Mark::HeaterOn:
      painter.drawRoundedRect(QRectF(-0.6, -0.6, 1.2, 1.2), 0.15, 0.15);
      break;
    case Mark::Changed:
      painter.drawPolygon(QPolygonF{{0, -0.6}, {0.6, 0}, {0, 0.6}, {-0.6, 0}});
      break;
  }
}

StateMark::StateMark(Mark mark, QWidget* parent) : QWidget(parent), mark_(mark) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void StateMark::SetMark(Mark mark) {
  if (std::exchange(mark_, mark) != mark) update();
}

void StateMark::SetMuted(bool muted) {
  if (std::exchange(muted_, muted) != muted) update();
}

QSize StateMark::sizeHint() const {
  const int side = fontMetrics().height();
  return {side, side};
}

void StateMark::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) updateGeometry();
  QWidget::changeEvent(event);
}

void StateMark::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(rect()).center());
  const double radius = 0.42 * std::min(width(), height());
  painter.scale(radius, radius);
  PaintMark(painter, mark_, Palette::For(*this), muted_);
}

}  // namespace krx
