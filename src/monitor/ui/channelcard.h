// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>
#include <functional>
#include <string>

#include "controls/gaugemarkers.h"
#include "monitor/seenranges.h"
#include "monitor/visualmodel.h"

class QLabel;

namespace krx {

class LimitBox;
class LimitGauge;

/// What the card says of its channel beside the value.
struct ChannelReport {
  SeenRange Range;
  bool PowerMode = false;      ///< channel 11 is a current
  bool Measured = false;       ///< by the chip; the value is no reading before
  std::string AlarmWords;      ///< empty without an alarm
  bool Old = false;            ///< the value is no longer refreshed
  bool NotMonitoring = false;  ///< because the chip does not measure
  bool PulsesDiffer = false;   ///< of a fan: the chip has others than the speed is told with
  bool Failed = false;         ///< only this value: the last attempt to read it failed
};

/// The selected channel: large readout, its range so far with a reset, the gauge and a typed box for each limit. Its
/// signals tell only what the user does.
class ChannelCard : public QFrame {
  Q_OBJECT
 public:
  explicit ChannelCard(QWidget* parent = nullptr);

  /// The limits are shown but cannot be moved.
  void SetReadOnly();

  /// Where a step of the gauge's keys from one value to another ends.
  void SetStepEnd(std::function<double(double from, double wanted)> stepEnd);

  /// What changes with every reading.
  void ShowReading(const VisualState& state, std::size_t channel, const ChannelReport& report);
  /// Puts scale, markers and boxes to where the state has them.
  void ShowLimits(const GaugeMarkers& markers, std::size_t channel, bool powerMode);
  bool HasLimits() const;
  /// The text in a marker's box stays, and what it may be stands below it; again when that changes.
  void Refuse(Marker marker, const QString& range);
  bool IsRefused(Marker marker) const;
  /// The entry in a marker's box was taken: the next ShowLimits shows the limit there.
  void Release(Marker marker);

 signals:
  /// A drag; an arrow key is a move and a release.
  void MarkerMoving(krx::Marker marker, double value);
  void MarkerReleased(krx::Marker marker, double value);
  /// A marker's box: an entry was finished, or an arrow pressed.
  void LimitTyped(krx::Marker marker, const QString& text);
  void LimitStepped(krx::Marker marker, int steps);
  /// Minimum, maximum and mean of the channel are to begin anew.
  void RangeResetRequested();

 private:
  QWidget* MakeRange();
  void ShowRange(const SeenRange& range, std::size_t channel, bool powerMode);
  LimitBox& Box(Marker marker) const;

  QLabel* caption_;
  QLabel* readout_;
  QLabel* summary_;
  QLabel* extremes_;
  QLabel* mean_;
  LimitGauge* gauge_;
  LimitBox* highBox_;
  LimitBox* lowBox_;
  std::size_t channel_ = 0;
  bool readOnly_ = false;
};

}  // namespace krx
