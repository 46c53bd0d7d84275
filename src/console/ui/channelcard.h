// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

#include "console/visualmodel.h"
#include "controls/gaugemarkers.h"

class QDoubleSpinBox;
class QLabel;

namespace krx {

class LimitGauge;

/// Smallest and largest value of the run, as far as any were measured.
struct SeenRange {
  bool Any = false;
  double Minimum = 0;
  double Maximum = 0;
};

/// The selected channel: large readout, its range so far, the gauge and a typed box for each limit. Its signals tell
/// only what the user does.
class ChannelCard : public QFrame {
  Q_OBJECT
 public:
  explicit ChannelCard(QWidget* parent = nullptr);

  /// The limits are shown but cannot be moved.
  void SetReadOnly();

  /// What changes with every reading.
  void ShowReading(const VisualState& state, std::size_t channel, const SeenRange& seen, bool old);
  /// Puts scale, markers and boxes to where the state has them.
  void ShowLimits(const GaugeMarkers& markers, std::size_t channel, bool powerMode);

 signals:
  /// A drag; a typed value, an arrow key and a step of a box are a move and a release.
  void MarkerMoving(krx::Marker marker, double value);
  void MarkerReleased(krx::Marker marker, double value);

 private:
  void FillBox(QDoubleSpinBox& box, Marker marker, const GaugeMarkers& markers);

  QLabel* caption_;
  QLabel* readout_;
  QLabel* summary_;
  LimitGauge* gauge_;
  QDoubleSpinBox* highBox_;
  QDoubleSpinBox* lowBox_;
  std::size_t channel_ = 0;
  bool powerMode_ = false;
  bool readOnly_ = false;
};

}  // namespace krx
