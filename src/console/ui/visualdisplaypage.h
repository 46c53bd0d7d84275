// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <array>
#include <functional>

#include "console/visualmodel.h"

class QLabel;
class QPushButton;

namespace krx {

class ChannelCard;
class ChannelTile;
class Indicator;
class PwmPanel;
class StripChart;
class UserDialogs;
class WaitBudget;
enum class ChartFormat;
struct SeenRange;
struct Workbench;

/// Tab "Visual Display": shows the VisualModel's state and hands it what the user does.
class VisualDisplayPage : public QWidget {
  Q_OBJECT
 public:
  /// readOnly: what would write is disabled.
  VisualDisplayPage(VisualModel& model, Workbench& bench, UserDialogs& dialogs, bool readOnly = false,
                    QWidget* parent = nullptr);

  /// Everything, after a handler changed what is shown.
  void ShowAll();
  /// What changes with every reading. old: nothing is being read.
  void ShowReadings(bool old);
  /// Keeps the charts' redraws out of the waits before transfers. The budget is to outlive the page.
  void SetWaitBudget(WaitBudget* budget);
  /// A tick has appended to the history.
  void Posted();

 signals:
  void EasySetupRequested();
  void SetupLogRequested();
  void FanTestRequested();
  void GlitchTestRequested();
  /// A limit that cannot be written and why; the marker is back in its place.
  void LimitRejected(const QString& reason);

 private:
  QWidget* MakeTiles();
  QWidget* MakeCharts();
  StripChart* MakeChart(const char* name, Strip strip);
  QWidget* MakeZoneRow();
  QWidget* MakeBottom(bool readOnly);
  QPushButton* AddButton(const char* name, const QString& text);
  void ShowFrames();
  void ExportChart(StripChart& chart, ChartFormat format);
  SeenRange RangeOf(std::size_t channel) const;
  bool Do(const std::function<void()>& action);
  void MoveLimit(const std::function<void()>& action, bool dragging);

  VisualModel& model_;
  Workbench& bench_;
  UserDialogs& dialogs_;
  std::array<ChannelTile*, channelCount> tiles_{};
  std::array<Indicator*, channelCount> lamps_{};
  StripChart* strip2_ = nullptr;
  StripChart* strip3_ = nullptr;
  ChannelCard* card_ = nullptr;
  PwmPanel* pwm_ = nullptr;
  QWidget* zoneRow_ = nullptr;
  std::array<QLabel*, 3> tminLabels_{};
  std::array<QLabel*, 3> opPointLabels_{};
  std::array<bool, traceCount> traceShown_;
  GaugeScale strip2Range_;
  int ticks_ = 0;
  std::int64_t measuredFrom_ = 0;  ///< time of the first row in which every channel was measured
  bool old_ = true;
};

}  // namespace krx
