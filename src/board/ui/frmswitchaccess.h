// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <string_view>
#include <vector>

#include "board/board.h"

class QLabel;
class QPushButton;

namespace krx {

class SwitchLamp;
class SwitchSymbol;
class UserDialogs;

/// "Switch Control": the board's 32 switches, each with its lamp. The lamps show the known states, whoever set them.
class FrmSwitchAccess : public QDialog {
  Q_OBJECT

 public:
  /// readOnly: the switches are shown, but cannot be set.
  FrmSwitchAccess(Board& board, UserDialogs& dialogs, bool readOnly, QWidget* parent);

  /// Reads all devices, shows the window, then takes the four device bytes once more.
  void Open();

  /// Shows the known states; without any transfer.
  void ShowLamps();

 signals:
  void Closed();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void reject() override;

 private:
  struct Row {
    SwitchLamp* Lamp;
    QPushButton* Button;
    QLabel* Word;
    SwitchSymbol* Symbol;
  };
  QWidget* MakeTab(const std::vector<std::string_view>& groups, bool settable);
  QWidget* MakeGroup(std::string_view group, bool settable);
  void Act(const std::function<void()>& action);

  Board& board_;
  UserDialogs& dialogs_;
  std::array<Row, switchMap.size()> rows_{};
};

}  // namespace krx
