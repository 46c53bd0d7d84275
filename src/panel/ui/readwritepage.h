// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <array>
#include <functional>

#include "controls/ui/chiptimer.h"
#include "panel/registerpanel.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace krx {

class RegisterList;
class UserDialogs;

/// Tab "Read/Write": the register list and the selected register bit by bit.
class ReadWritePage : public QWidget {
  Q_OBJECT

 public:
  /// readOnly: nothing is written, so the controls that would are disabled.
  ReadWritePage(RegisterPanel& panel, Link& link, ChipTurns& turns, UserDialogs& dialogs, bool readOnly);

  /// The tab is shown: continuous reading off, the last selected row again.
  void Enter();
  void StopContinuousReading();
  /// Somebody else has written a register.
  void ShowWrittenElsewhere(std::uint8_t address, std::uint8_t byte);

 private:
  QWidget* MakeRegisterCard();
  QWidget* MakeBits();
  QWidget* MakeEntries();
  QWidget* MakeContinuousReading();

  void Click(int row);
  void SetContinuousReading(bool on);
  void Act(const std::function<void()>& action, const std::string& name = {});
  void ShowPanel();
  void ShowEntry(QLineEdit& box, QPushButton& button, const std::string& text, EntryState state);

  RegisterPanel& panel_;
  UserDialogs& dialogs_;
  bool readOnly_;
  ChipTimer timer3_;
  RegisterList* list_ = nullptr;
  QLabel* address_ = nullptr;
  QLabel* name_ = nullptr;
  QLabel* hexValue_ = nullptr;
  QLabel* decimalValue_ = nullptr;
  QLabel* caution_ = nullptr;
  std::array<QLabel*, 8> bitNames_{};
  std::array<QPushButton*, 8> bits_{};
  QLineEdit* text6_ = nullptr;
  QLineEdit* text7_ = nullptr;
  QPushButton* command4_ = nullptr;
  QPushButton* command5_ = nullptr;
  QPushButton* continuousSwitch_ = nullptr;
  QLabel* continuousLabel_ = nullptr;
};

}  // namespace krx
