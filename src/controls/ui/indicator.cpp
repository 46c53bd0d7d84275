// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/indicator.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>

#include "controls/ui/palette.h"
#include "controls/ui/statemark.h"

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

Mark MarkOf(IndicatorState state) {
  switch (state) {
    case IndicatorState::Hidden:
      return Mark::None;
    case IndicatorState::Ok:
      return Mark::Good;
    case IndicatorState::Bad:
      return Mark::Attention;
    case IndicatorState::Unknown:
      break;
  }
  return Mark::Unknown;
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
  setAccessibleDescription(StateText(state_) + (stale_ ? u" (out of date)"_s : QString()));
  update();
}

void Indicator::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) updateGeometry();
  QWidget::changeEvent(event);
}

void Indicator::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(rect()).center());
  const double radius = 0.44 * std::min(width(), height());
  painter.scale(radius, radius);
  PaintMark(painter, MarkOf(state_), Palette::For(*this), stale_);
}

}  // namespace krx
