// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <array>
#include <functional>

#include "control/controlmodel.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

namespace krx {

class UserDialogs;

/// Tab "Control ": pin settings, board boxes, and the buttons that open the dialogs.
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
  void SetFanDialogAvailable(bool available);

 signals:
  void SwitchAccessWanted();
  void FanConfigWanted();

 private:
  QGroupBox* MakeFanGroup();
  QGroupBox* MakeThermGroup();
  QGroupBox* MakeAlertGroup();
  QGroupBox* MakeBoardGroup(const QString& title, const char* name, const QString& caption,
                            std::array<QCheckBox*, 2>& boxes, void (ControlModel::*set)(std::size_t, bool));
  QWidget* MakeVidPanel();
  QGroupBox* MakeThermTimeGroup();
  QGroupBox* MakeLaterGroup(const QString& title, const QStringList& captions);
  QCheckBox* MakeCheck(QVBoxLayout& layout, const char* name, const QString& caption,
                       std::function<void(bool)> clicked);
  QRadioButton* MakeOption(QVBoxLayout& layout, const char* name, const QString& caption,
                           std::function<void()> clicked);
  void Act(const std::function<void()>& action);
  void ShowState();

  ControlModel model_;
  UserDialogs& dialogs_;
  bool readOnly_;
  QCheckBox* chkProchot_ = nullptr;
  QRadioButton* opt5V_ = nullptr;
  QRadioButton* optTach4_ = nullptr;
  QCheckBox* chkAlert_ = nullptr;
  QCheckBox* chkPwm2Alert_ = nullptr;
  QCheckBox* chk25vAlert_ = nullptr;
  QRadioButton* opt25V_ = nullptr;
  QRadioButton* optPwm2_ = nullptr;
  std::array<QCheckBox*, 2> sensors_{};
  std::array<QCheckBox*, 2> heaters_{};
  std::array<QCheckBox*, 5> vid_{};
  QWidget* pnlVidBits_ = nullptr;
  QLineEdit* txtProcTime_ = nullptr;
  QPushButton* switchAccess_ = nullptr;
  QPushButton* fanConfig_ = nullptr;
  QLabel* noBoard_ = nullptr;
  QLabel* vidNotProbed_ = nullptr;
};

}  // namespace krx
