// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <functional>
#include <string>

#include "panel/registerpanel.h"

namespace krx {

class BusJournal;
class ChipTurns;
class ContinuousCard;
class EntryCard;
class HistoryCard;
class MeaningCard;
class RegisterCard;
class RegisterList;
class UserDialogs;

/// Tab "Read/Write": the register list, and the selected register bit by bit with what it means and what passed of it.
class ReadWritePage : public QWidget {
  Q_OBJECT

 public:
  /// readOnly: nothing is written, so the controls that would are disabled.
  ReadWritePage(RegisterPanel& panel, Link& link, BusJournal& journal, ChipTurns& turns, UserDialogs& dialogs,
                bool readOnly);

  /// The tab is shown: continuous reading off, the last selected row again.
  void Enter();
  void StopContinuousReading();
  /// Somebody else has written a register.
  void ShowWrittenElsewhere(std::uint8_t address, std::uint8_t byte);

 signals:
  /// The newest action is to be undone.
  void UndoRequested();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void MakeLayout();
  void Click(int row);
  void Act(const std::function<void()>& action, const std::string& name = {});
  void ShowPanel();

  RegisterPanel& panel_;
  UserDialogs& dialogs_;
  bool readOnly_;
  RegisterList* list_;
  RegisterCard* register_;
  EntryCard* entries_;
  ContinuousCard* continuous_;
  HistoryCard* history_;
  MeaningCard* meaning_;
};

}  // namespace krx
