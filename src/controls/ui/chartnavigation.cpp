// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/chartnavigation.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>

#include "controls/ui/plotlibrary.h"
#include "controls/ui/zoomarrows.h"

namespace krx {

ChartNavigation::ChartNavigation(QCustomPlot* plot, ZoomArrows* arrows) : QObject(plot), plot_(plot), arrows_(arrows) {
  plot->setFocusPolicy(Qt::StrongFocus);
  plot->setMouseTracking(true);
  plot->installEventFilter(this);
  connect(plot, &QCustomPlot::mousePress, this, &ChartNavigation::Press);
  connect(plot, &QCustomPlot::mouseMove, this, &ChartNavigation::Move);
  connect(plot, &QCustomPlot::mouseRelease, this, &ChartNavigation::Release);
  connect(plot, &QCustomPlot::mouseWheel, this, &ChartNavigation::Wheel);
  connect(plot, &QCustomPlot::mouseDoubleClick, this, [this](QMouseEvent* event) {
    if (plot_->axisRect()->rect().contains(event->pos())) emit LiveRequested();
  });
  connect(plot, &QCustomPlot::legendClick, this, [this](QCPLegend*, QCPAbstractLegendItem* item, QMouseEvent*) {
    if (auto* entry = qobject_cast<QCPPlottableLegendItem*>(item)) emit LegendClicked(entry->plottable());
  });
  connect(plot->selectionRect(), &QCPSelectionRect::accepted, this,
          [this](const QRect& frame, QMouseEvent*) { emit FrameRequested(frame.normalized()); });
}

void ChartNavigation::Press(QMouseEvent* event) {
  from_ = event->position();
  const bool inside = plot_->axisRect()->rect().contains(event->pos());
  const bool left = event->button() == Qt::LeftButton;
  grabbed_ = left && inside ? arrows_->EdgeAt(from_) : std::nullopt;
  panning_ = inside && !grabbed_ &&
             (event->button() == Qt::MiddleButton || (left && event->modifiers().testFlag(Qt::ShiftModifier)));
  // The library starts its frame right after this signal, whatever the button, unless the mode says no.
  plot_->setSelectionRectMode(inside && left && !grabbed_ && !panning_ ? QCP::srmCustom : QCP::srmNone);
  if (panning_) plot_->setCursor(Qt::ClosedHandCursor);
  if (grabbed_) emit EdgeGrabbed();
}

void ChartNavigation::Move(QMouseEvent* event) {
  const QPointF pixel = event->position();
  const QRect area = plot_->axisRect()->rect();
  if (grabbed_) {
    emit EdgeDragged(*grabbed_, DragFactor(*grabbed_, pixel - from_, area.size()));
  } else if (panning_) {
    emit PanRequested((from_.x() - pixel.x()) / std::max(area.width(), 1));
    from_ = pixel;
  } else if (event->buttons() == Qt::NoButton) {
    const bool inside = area.contains(event->pos());
    Hover(inside ? arrows_->EdgeAt(pixel) : std::nullopt);
    emit CursorRequested(inside && !arrows_->Hovered() ? std::optional(pixel) : std::nullopt);
  }
}

void ChartNavigation::Release(QMouseEvent*) {
  grabbed_.reset();
  panning_ = false;
  Hover(arrows_->Hovered());
}

void ChartNavigation::Hover(std::optional<ChartEdge> edge) {
  const bool upright = edge == ChartEdge::Top || edge == ChartEdge::Bottom;
  plot_->setCursor(!edge ? Qt::CrossCursor : upright ? Qt::SizeVerCursor : Qt::SizeHorCursor);
  if (edge == arrows_->Hovered()) return;
  arrows_->SetHovered(edge);
  emit OverlayChanged();
}

void ChartNavigation::Wheel(QWheelEvent* event) {
  const QRect area = plot_->axisRect()->rect();
  if (!area.contains(event->position().toPoint())) return;
  const QPoint turn = event->angleDelta();
  const double notches = (turn.y() != 0 ? turn.y() : turn.x()) / 120.0;
  if (turn.y() == 0 || event->modifiers().testFlag(Qt::ShiftModifier))
    emit PanRequested(-notches / 10);
  else
    emit ZoomRequested(std::pow(0.8, notches), (event->position().x() - area.left()) / std::max(area.width(), 1));
  event->accept();
}

bool ChartNavigation::Key(QKeyEvent* event) {
  const bool step = event->modifiers().testFlag(Qt::ControlModifier);
  switch (event->key()) {
    case Qt::Key_Left:
      step ? emit CursorStepRequested(-4) : emit PanRequested(-0.1);
      return true;
    case Qt::Key_Right:
      step ? emit CursorStepRequested(4) : emit PanRequested(0.1);
      return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      emit ZoomRequested(0.8, 0.5);
      return true;
    case Qt::Key_Minus:
      emit ZoomRequested(1.25, 0.5);
      return true;
    case Qt::Key_Home:
      emit LiveRequested();
      return true;
    case Qt::Key_Escape:
      emit CursorRequested(std::nullopt);
      return false;  // a window may close on it too
    default:
      return false;
  }
}

bool ChartNavigation::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Leave) {
    Hover(std::nullopt);
    emit CursorRequested(std::nullopt);
  }
  if (event->type() == QEvent::KeyPress && Key(static_cast<QKeyEvent*>(event))) return true;
  return QObject::eventFilter(watched, event);
}

}  // namespace krx
