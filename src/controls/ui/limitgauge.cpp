// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/limitgauge.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>
#include <array>
#include <cmath>

#include "controls/ui/focusring.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array markers{Marker::High, Marker::Low};  // from the top down

}  // namespace

LimitGauge::LimitGauge(QWidget* parent) : QWidget(parent) {
  setObjectName(u"limits_gauge"_s);
  setAccessibleName(u"Limit gauge"_s);
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  new FocusRing(*this);  // owned by this
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
}

void LimitGauge::SetScale(double minimum, double maximum) {
  drag_.reset();
  markers_.SetScale(minimum, maximum);
  updateGeometry();
  Changed();
}

void LimitGauge::SetValue(double value) {
  if (value == markers_.Value()) return;
  markers_.SetValue(value);
  update();
}

void LimitGauge::Place(Marker marker, double value, std::optional<GaugeMarkers::RegisterBytes> bytes) {
  markers_.Place(marker, value, std::move(bytes));
  Changed();
}

void LimitGauge::Park(Marker marker, double value) {
  markers_.Park(marker, value);
  Changed();
}

void LimitGauge::PutBack(Marker marker) {
  markers_.PutBack(marker);
  Changed();
}

void LimitGauge::SetStale(bool stale) {
  stale_ = stale;
  update();
}

double LimitGauge::MoveByUser(Marker marker, double wanted) {
  const double value = markers_.Move(marker, wanted);
  if (!markers_.IsDraggable(marker)) return value;
  Changed();
  emit MarkerMoving(marker, value);
  emit MarkerReleased(marker, markers_.ValueOf(marker));
  return markers_.ValueOf(marker);
}

void LimitGauge::Changed() {
  QStringList parts;
  for (const Marker marker : markers)
    if (markers_.IsDraggable(marker)) parts += Label(marker);
  setAccessibleDescription(parts.join(u", "_s));
  update();
}

// Geometry

QSize LimitGauge::sizeHint() const {
  const auto em = fontMetrics().height();
  return {minimumSizeHint().width(), 20 * em};
}

QSize LimitGauge::minimumSizeHint() const {
  const auto em = fontMetrics().height();
  return {fontMetrics().horizontalAdvance(u"20000 High 20000"_s) + 4 * em, 9 * em};
}

QRectF LimitGauge::Bar() const {
  const double em = fontMetrics().height();
  const double spare = std::max(width() - minimumSizeHint().width(), 0) / 2.0;
  const double left = spare + fontMetrics().horizontalAdvance(u"20000"_s) + 0.7 * em;
  return {left, 0.6 * em, 1.6 * em, height() - 1.2 * em};
}

double LimitGauge::YOf(double value) const {
  return Bar().bottom() - markers_.Scale().Fraction(value) * Bar().height();
}

double LimitGauge::ValueAtY(double y) const {
  return markers_.Scale().ValueAt((Bar().bottom() - y) / std::max(Bar().height(), 1.0));
}

double LimitGauge::MarkerY(Marker marker) const {
  return YOf(markers_.ValueOf(marker));
}

std::optional<Marker> LimitGauge::MarkerAt(QPointF position) const {
  if (position.x() < Bar().left()) return std::nullopt;
  std::optional<Marker> nearest;
  double nearestDistance = 0.7 * fontMetrics().height();
  for (const Marker marker : markers) {
    const double distance = std::abs(MarkerY(marker) - position.y());
    // Where both stand at one place the side of the mouse decides, so that neither locks the other in.
    const bool tieOwn = distance == nearestDistance && marker == Marker::Low && position.y() > MarkerY(marker);
    if (!markers_.IsDraggable(marker) || (distance >= nearestDistance && !tieOwn)) continue;
    nearest = marker;
    nearestDistance = distance;
  }
  return nearest;
}

// The user

void LimitGauge::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (drag_) EndDrag();
  const auto marker = MarkerAt(event->position());
  if (!marker) return;
  focused_ = *marker;
  drag_ = Drag{*marker, MarkerY(*marker) - event->position().y(), false};
  update();
}

void LimitGauge::mouseMoveEvent(QMouseEvent* event) {
  emit PointerHover();
  // A box that opened during the drag has taken its release.
  if (drag_ && !event->buttons().testFlag(Qt::LeftButton)) EndDrag();
  if (!drag_) {
    if (MarkerAt(event->position()))
      setCursor(Qt::SizeVerCursor);
    else
      unsetCursor();
    return;
  }
  const Marker marker = drag_->marker;
  const double before = markers_.ValueOf(marker);
  const double wanted = markers_.Scale().Snap(ValueAtY(event->position().y() + drag_->offset));
  // A tremble within one step of the marker's number is not yet a move.
  if (wanted == markers_.Scale().Snap(before)) return;
  const double value = markers_.Move(marker, wanted);
  if (value == before) return;
  drag_->moved = true;
  Changed();
  emit MarkerMoving(marker, value);
}

void LimitGauge::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && drag_) EndDrag();
}

void LimitGauge::EndDrag() {
  const Drag drag = *drag_;
  drag_.reset();
  unsetCursor();
  if (drag.moved) emit MarkerReleased(drag.marker, markers_.ValueOf(drag.marker));
}

void LimitGauge::leaveEvent(QEvent*) {
  if (!drag_) unsetCursor();
}

void LimitGauge::keyPressEvent(QKeyEvent* event) {
  double steps = 0;
  switch (event->key()) {
    case Qt::Key_Up:
      steps = 1;
      break;
    case Qt::Key_Down:
      steps = -1;
      break;
    case Qt::Key_PageUp:
      steps = 10;
      break;
    case Qt::Key_PageDown:
      steps = -10;
      break;
    default:
      QWidget::keyPressEvent(event);
      return;
  }
  if (drag_ || !markers_.IsDraggable(focused_)) return;
  const double before = markers_.ValueOf(focused_);
  const double wanted = markers_.Scale().Clamp(before) + steps * markers_.Scale().Step();
  const double end = markers_.Scale().Clamp(stepEnd_ ? stepEnd_(before, wanted) : wanted);
  if (end != before) MoveByUser(focused_, markers_.Scale().Snap(end));
}

void LimitGauge::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

void LimitGauge::focusInEvent(QFocusEvent* event) {
  if (event->reason() == Qt::TabFocusReason) focused_ = Marker::High;
  if (event->reason() == Qt::BacktabFocusReason) focused_ = Marker::Low;
  if (!markers_.IsDraggable(focused_)) focused_ = focused_ == Marker::High ? Marker::Low : Marker::High;
  QWidget::focusInEvent(event);
}

bool LimitGauge::focusNextPrevChild(bool next) {
  const Marker other = next ? Marker::Low : Marker::High;
  if (hasFocus() && focused_ != other && markers_.IsDraggable(other)) {
    focused_ = other;
    update();
    return true;
  }
  return QWidget::focusNextPrevChild(next);
}

}  // namespace krx
