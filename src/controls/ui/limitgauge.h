// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <utility>

#include "controls/gaugemarkers.h"

namespace krx {

/// `limits_gauge`: a vertical bar with a scale, the value and two limit markers that the user drags or moves by keys
/// (Up, Down, PageUp, PageDown; Tab changes the marker). Setting anything from the program emits nothing.
class LimitGauge : public QWidget {
  Q_OBJECT

 public:
  explicit LimitGauge(QWidget* parent = nullptr);

  /// See GaugeMarkers; these also redraw. A new scale ends a drag without a release.
  void SetScale(double minimum, double maximum);
  void SetValue(double value);
  void Place(Marker marker, double value, std::optional<GaugeMarkers::RegisterBytes> bytes);
  void Park(Marker marker, double value);
  void PutBack(Marker marker);
  /// Where a step of the keys from one value to another ends; without it there.
  void SetStepEnd(std::function<double(double from, double wanted)> stepEnd) { stepEnd_ = std::move(stepEnd); }
  /// Greys the value when it is no longer being read.
  void SetStale(bool stale);
  const GaugeMarkers& Markers() const { return markers_; }

  /// What a key does: moves the marker and emits both signals, as a drag and its release. Returns the value
  /// the marker took.
  double MoveByUser(Marker marker, double wanted);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

  /// Where a marker stands, in widget pixels.
  double MarkerY(Marker marker) const;

 signals:
  /// During a drag, at each new value.
  void MarkerMoving(krx::Marker marker, double value);
  /// At the end of a drag that moved the marker.
  void MarkerReleased(krx::Marker marker, double value);
  /// The mouse moves over the gauge.
  void PointerHover();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  struct Drag {
    Marker marker;
    double offset;  ///< from the mouse to the marker's position, so that a press alone moves nothing
    bool moved;
  };
  QRectF Bar() const;
  double YOf(double value) const;
  double ValueAtY(double y) const;
  std::optional<Marker> MarkerAt(QPointF position) const;
  /// "High 80", the number with the scale's decimals; "High unknown".
  QString Label(Marker marker) const;
  void PaintScale(QPainter& painter) const;
  void PaintMarker(QPainter& painter, Marker marker, double labelY) const;
  void EndDrag();
  void Changed();

  GaugeMarkers markers_;
  std::function<double(double from, double wanted)> stepEnd_;
  std::optional<Drag> drag_;
  Marker focused_ = Marker::High;
  bool stale_ = false;
};

}  // namespace krx
