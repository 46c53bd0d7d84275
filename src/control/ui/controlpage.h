// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <functional>

#include "control/controlmodel.h"

class QLabel;
class QLineEdit;

namespace krx {

class AlertSection;
class Card;
class FanCard;
class HeaterSection;
class PowerCard;
class SensorSection;
class ThermSection;
class UserDialogs;
class VidStrip;

/// Tab "Control ": pin settings, board boxes, and the buttons that open the dialogs, each beside the readings that it
/// acts on.
class ControlPage : public QWidget {
  Q_OBJECT

 public:
  /// readOnly: what would write is disabled.
  ControlPage(const ControlParts& parts, UserDialogs& dialogs, bool readOnly);

  /// The tab is shown.
  void Enter();
  /// Shows what the board's switches are now; without any transfer.
  void SwitchesChanged();
  /// Shows what the pin modes are now; without any transfer.
  void PinsChanged();
  /// Shows what the cycle measured; without any transfer. old: the cycle does not run.
  void ShowReadings(bool old);
  void SetFanDialogAvailable(bool available);

 signals:
  void SwitchAccessRequested();
  void FanConfigRequested();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QWidget* MakeLeftColumn();
  QWidget* MakeRightColumn(bool readOnly);
  QWidget* MakeThermTimeCard();
  QWidget* MakeBoardCard(bool readOnly);
  void SetCompact(bool compact);
  void Act(const std::function<void()>& action);
  void ShowState();

  ControlParts parts_;
  ControlModel model_;
  UserDialogs& dialogs_;
  bool old_ = true;
  QWidget* left_ = nullptr;
  FanCard* fans_ = nullptr;
  PowerCard* power_ = nullptr;
  ThermSection* therm_ = nullptr;
  AlertSection* alert_ = nullptr;
  SensorSection* sensors_ = nullptr;
  HeaterSection* heaters_ = nullptr;
  VidStrip* vid_ = nullptr;
  QLineEdit* txtProcTime_ = nullptr;
  QLabel* thermNow_ = nullptr;
  QLabel* thermRead_ = nullptr;
  QLabel* noBoard_ = nullptr;
  QLabel* vidNotProbed_ = nullptr;
};

}  // namespace krx
