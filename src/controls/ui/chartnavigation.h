// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointF>
#include <QRect>
#include <optional>

class QCPAbstractPlottable;
class QCustomPlot;
class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace krx {

class ZoomArrows;
enum class ChartEdge;

/// Turns what mouse and keyboard do over a plot into wishes for the view. Knows neither times nor values.
class ChartNavigation : public QObject {
  Q_OBJECT

 public:
  ChartNavigation(QCustomPlot* plot, ZoomArrows* arrows);

 signals:
  void ZoomRequested(double factor,
                     double share);         ///< length of the time times factor, fixed at this share of the width
  void PanRequested(double share);          ///< of the width, positive to the right
  void FrameRequested(const QRect& frame);  ///< pixels of the plot
  void EdgeGrabbed();
  void EdgeDragged(krx::ChartEdge edge, double factor);  ///< factor since it was grabbed
  void LiveRequested();
  void CursorRequested(std::optional<QPointF> pixel);
  void CursorStepRequested(int pixels);
  void LegendClicked(QCPAbstractPlottable* plottable);
  void OverlayChanged();  ///< an arrow under the pointer lit up or went out

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Press(QMouseEvent* event);
  void Move(QMouseEvent* event);
  void Release(QMouseEvent* event);
  void Wheel(QWheelEvent* event);
  bool Key(QKeyEvent* event);
  void Hover(std::optional<ChartEdge> edge);

  QCustomPlot* plot_;
  ZoomArrows* arrows_;
  std::optional<ChartEdge> grabbed_;
  bool panning_ = false;
  QPointF from_;
};

}  // namespace krx
