// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/limitgauge.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "controls/ui/palette.h"

namespace krx {
namespace {

constexpr std::array markers{Marker::High, Marker::Low};  // from the top down

QString Name(Marker marker) {
  return marker == Marker::Low ? QStringLiteral("Low") : QStringLiteral("High");
}

QString Number(double value, int decimals) {
  return std::isfinite(value) ? QString::number(value, 'f', decimals) : QStringLiteral("none");
}

QString TickText(double tick, double step) {
  return QString::number(tick, 'f', std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9))));
}

}  // namespace

LimitGauge::LimitGauge(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("limits_gauge"));
  setAccessibleName(QStringLiteral("Limit gauge"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
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
    if (markers_.IsDraggable(marker))
      parts += Name(marker) + u' ' + Number(markers_.ValueOf(marker), markers_.Scale().Decimals());
  setAccessibleDescription(parts.join(QStringLiteral(", ")));
  update();
}

// Geometry

QSize LimitGauge::sizeHint() const {
  const auto em = fontMetrics().height();
  return {minimumSizeHint().width(), 20 * em};
}

QSize LimitGauge::minimumSizeHint() const {
  const auto em = fontMetrics().height();
  return {fontMetrics().horizontalAdvance(QStringLiteral("20000 High 20000")) + 4 * em, 9 * em};
}

QRectF LimitGauge::Bar() const {
  const double em = fontMetrics().height();
  const double spare = std::max(width() - minimumSizeHint().width(), 0) / 2.0;
  const double left = spare + fontMetrics().horizontalAdvance(QStringLiteral("20000")) + 0.7 * em;
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
  if (event->button() != Qt::LeftButton || drag_) return;
  const auto marker = MarkerAt(event->position());
  if (!marker) return;
  focused_ = *marker;
  drag_ = Drag{*marker, MarkerY(*marker) - event->position().y(), false};
  update();
}

void LimitGauge::mouseMoveEvent(QMouseEvent* event) {
  emit PointerHover();
  if (!drag_) {
    if (MarkerAt(event->position()))
      setCursor(Qt::SizeVerCursor);
    else
      unsetCursor();
    return;
  }
  const Marker marker = drag_->marker;
  const double before = markers_.ValueOf(marker);
  const double wanted = ValueAtY(event->position().y() + drag_->offset);
  // A tremble within one step of the marker's number is not yet a move.
  if (markers_.Scale().Snap(wanted) == markers_.Scale().Snap(before)) return;
  const double value = markers_.Move(marker, wanted);
  if (value == before) return;
  drag_->moved = true;
  Changed();
  emit MarkerMoving(marker, value);
}

void LimitGauge::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !drag_) return;
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
  if (markers_.Scale().Clamp(wanted) != before) MoveByUser(focused_, wanted);
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

// Drawing

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
  const QColor colour = !draggable ? palette.mutedText : marker == Marker::High ? palette.bad : palette.accent;
  painter.setPen(QPen(colour, 0.1 * em));
  painter.drawLine(QPointF(bar.left(), y), QPointF(bar.right(), y));
  if (!draggable) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  const double tip = bar.right() + 0.1 * em;
  painter.drawPolygon(QPolygonF{{tip, y}, {tip + 0.7 * em, y - 0.45 * em}, {tip + 0.7 * em, y + 0.45 * em}});

  const QString text = Name(marker) + u' ' + Number(markers_.ValueOf(marker), markers_.Scale().Decimals());
  const QRectF label(tip + 1.1 * em, labelY - em / 2, fontMetrics().horizontalAdvance(text) + 2, em);
  painter.setPen(palette.text);
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
  const bool both = markers_.IsPlaced(Marker::Low) && markers_.IsPlaced(Marker::High);
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
