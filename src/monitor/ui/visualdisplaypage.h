// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <functional>

#include "monitor/visualmodel.h"

class QLabel;
class QPushButton;

namespace krx {

class ChannelCard;
class ChannelTiles;
class ChartCard;
class PwmDifference;
class PwmPanel;
class SavingBar;
class UserDialogs;
class WaitBudget;
class ZoneRow;

/// Tab "Visual Display": shows the VisualModel's state and hands it what the user does.
class VisualDisplayPage : public QWidget {
  Q_OBJECT
 public:
  /// readOnly: what would write is disabled.
  VisualDisplayPage(VisualModel& model, const VisualParts& parts, UserDialogs& dialogs, bool readOnly = false,
                    QWidget* parent = nullptr);

  /// Everything, after a handler changed what is shown.
  void ShowAll();
  /// What changes with every reading. old: nothing is being read.
  void ShowReadings(bool old);
  /// Keeps the charts' redraws out of the waits before transfers. The budget is to outlive the page.
  void SetWaitBudget(WaitBudget* budget);
  /// A tick has appended to the history, one that failed a gap.
  void Posted();
  void GapPosted();
  /// Of the charts' values.
  SavingBar& Saving();
  /// Medium and chip, which exports name.
  void SetSource(const QString& source);

 signals:
  void EasySetupRequested();
  void SetupLogRequested();
  void FanTestRequested();
  void GlitchTestRequested();
  /// A line for the status bar.
  void Notice(const QString& text);
  /// The flags that decide between slider and panel are out of date.
  void ReReadRequested();
  /// A limit that cannot be written and why; the marker is back in its place, a typed text stays.
  void LimitRejected(const QString& reason);

 private:
  QWidget* MakeBottom(bool readOnly);
  QPushButton* AddButton(const QString& name, const QString& text);
  void ShowLimits();
  bool Do(const std::function<void()>& action);
  void MoveLimit(Marker marker, const std::function<void()>& action, bool dragging);
  void EnterLimit(Marker marker, const std::function<void()>& action);

  VisualModel& model_;
  VisualParts parts_;
  UserDialogs& dialogs_;
  ChannelTiles* tiles_ = nullptr;
  ChartCard* charts_ = nullptr;
  ChannelCard* card_ = nullptr;
  PwmPanel* pwm_ = nullptr;
  PwmDifference* pwmDifference_ = nullptr;
  QLabel* notMonitoring_ = nullptr;
  ZoneRow* zoneRow_ = nullptr;
  bool old_ = true;
};

}  // namespace krx
