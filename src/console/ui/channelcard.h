// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>
#include <functional>

#include "console/visualmodel.h"
#include "controls/gaugemarkers.h"

class QLabel;

namespace krx {

class LimitBox;
class LimitGauge;

/// What boxes and gauge ask while a limit is moved.
struct LimitRules {
  std::function<double(double from, double wanted)> StepEnd;  ///< where a step of the gauge's keys ends
  std::function<bool()> Busy;                                 ///< true inside a transfer
};

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

  void SetRules(const LimitRules& rules);

  /// What changes with every reading.
  void ShowReading(const VisualState& state, std::size_t channel, const SeenRange& seen, bool old);
  /// Puts scale, markers and boxes to where the state has them.
  void ShowLimits(const GaugeMarkers& markers, std::size_t channel, bool powerMode);
  /// The text in a marker's box stays, and what it may be stands below it.
  void Refuse(Marker marker, const QString& range);
  /// The entry in a marker's box was taken: the next ShowLimits shows the limit there.
  void Release(Marker marker);

 signals:
  /// A drag; an arrow key is a move and a release.
  void MarkerMoving(krx::Marker marker, double value);
  void MarkerReleased(krx::Marker marker, double value);
  /// A marker's box: an entry was finished, or an arrow pressed.
  void LimitTyped(krx::Marker marker, const QString& text);
  void LimitStepped(krx::Marker marker, int steps);

 private:
  LimitBox& Box(Marker marker);

  QLabel* caption_;
  QLabel* readout_;
  QLabel* summary_;
  LimitGauge* gauge_;
  LimitBox* highBox_;
  LimitBox* lowBox_;
  std::size_t channel_ = 0;
  bool readOnly_ = false;
};

}  // namespace krx
