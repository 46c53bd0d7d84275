// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/ui/switchlamp.h"

#include <QPainter>
#include <algorithm>
#include <utility>

#include "controls/ui/palette.h"

namespace krx {

using namespace Qt::StringLiterals;

SwitchLamp::SwitchLamp(LampState state) : state_(state) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SwitchLamp::SetState(LampState state) {
  if (std::exchange(state_, state) != state) update();
}

QSize SwitchLamp::sizeHint() const {
  const int side = fontMetrics().height();
  return {side, side};
}

void SwitchLamp::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const Palette& colours = Palette::For(*this);
  const double radius = 0.36 * std::min(width(), height());
  painter.translate(QRectF(rect()).center());
  painter.setPen(Qt::NoPen);
  switch (state_) {
    case LampState::Closed:
      painter.setBrush(colours.ok);
      painter.drawEllipse(QPointF(), radius, radius);
      break;
    case LampState::Open:
      painter.setPen(QPen(colours.bad, radius / 3));
      painter.drawRect(QRectF(-radius, -radius, 2 * radius, 2 * radius));
      break;
    case LampState::NotRead:
      painter.setBrush(colours.mutedText);
      painter.drawRect(QRectF(-radius, -radius / 5, 2 * radius, radius / 2.5));
      break;
  }
}

QString LampWord(LampState state) {
  switch (state) {
    case LampState::Closed:
      return u"closed"_s;
    case LampState::Open:
      return u"open"_s;
    case LampState::NotRead:
      break;
  }
  return u"not read"_s;
}

}  // namespace krx
