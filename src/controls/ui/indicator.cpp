// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/indicator.h"

#include <QEvent>
#include <QPainter>
#include <QPen>
#include <algorithm>

#include "controls/ui/palette.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

QString StateText(IndicatorState state) {
  switch (state) {
    case IndicatorState::Hidden:
      return u"Disabled"_s;
    case IndicatorState::Ok:
      return u"OK"_s;
    case IndicatorState::Bad:
      return u"Bad"_s;
    case IndicatorState::Unknown:
      break;
  }
  return u"Not read yet"_s;
}

/// The shapes fill a circle of radius 1 around the origin; the mark inside them takes the colour of the ground.
void PaintTick(QPainter& painter, const QPen& mark) {
  painter.drawEllipse(QPointF(), 0.96, 0.96);
  painter.setPen(mark);
  painter.setBrush(Qt::NoBrush);
  painter.drawPolyline(QPolygonF{{-0.42, 0.04}, {-0.12, 0.34}, {0.44, -0.28}});
}

void PaintDiamond(QPainter& painter, const QPen& mark) {
  painter.drawPolygon(QPolygonF{{0, -1.12}, {1.12, 0}, {0, 1.12}, {-1.12, 0}});
  painter.setPen(mark);
  painter.drawLine(QPointF(0, -0.5), QPointF(0, 0.08));
  painter.drawPoint(QPointF(0, 0.46));
}

}  // namespace

Indicator::Indicator(QWidget* parent) : QWidget(parent) {
  setToolTip(u"Interrupt Status: Green=OK, Red=Bad, Invisible=Disabled"_s);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  Changed();
}

void Indicator::SetState(IndicatorState state) {
  if (state == state_) return;
  state_ = state;
  Changed();
}

void Indicator::SetStale(bool stale) {
  if (stale == stale_) return;
  stale_ = stale;
  Changed();
}

QSize Indicator::sizeHint() const {
  const int side = fontMetrics().height() + 2;
  return {side, side};
}

void Indicator::Changed() {
  setAccessibleDescription(StateText(state_) + (stale_ ? u" (old)"_s : QString()));
  update();
}

void Indicator::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) updateGeometry();
  QWidget::changeEvent(event);
}

void Indicator::paintEvent(QPaintEvent*) {
  if (state_ == IndicatorState::Hidden) return;
  const Palette& palette = Palette::For(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(rect()).center());
  const double radius = 0.44 * std::min(width(), height());
  painter.scale(radius, radius);
  if (state_ == IndicatorState::Unknown) {
    painter.setPen(QPen(palette.mutedText, 0.2));
    painter.drawEllipse(QPointF(), 0.8, 0.8);
    return;
  }
  const bool ok = state_ == IndicatorState::Ok;
  painter.setPen(Qt::NoPen);
  painter.setBrush(stale_ ? palette.mutedText : ok ? palette.ok : palette.bad);
  const QPen mark(palette.card, 0.26, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  ok ? PaintTick(painter, mark) : PaintDiamond(painter, mark);
}

}  // namespace krx
