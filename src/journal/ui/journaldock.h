// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDockWidget>
#include <QTimer>

#include "journal/ui/journalmodel.h"
#include "journal/undo.h"
#include "link/linknewcomport06.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

namespace krx {

class UserDialogs;

/// "Bus Journal": the last transfers or only the user's writes, with filter, copy, save and undo.
class JournalDock : public QDockWidget {
  Q_OBJECT
 public:
  /// readOnly: nothing can have been written, so nothing can be taken back.
  JournalDock(Link& link, BusJournal& journal, UserDialogs& dialogs, bool readOnly);

  /// The button's "Undo last action".
  void UndoLast();

 signals:
  /// A line for the status bar.
  void Notice(const QString& text);
  /// Registers were written back; what shows them may be out of date.
  void Undone(const krx::UndoResult& undone);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  QWidget* MakeControls(bool readOnly);
  void Refresh();
  void ShowEnd();
  void ApplyFilter();
  void Copy();
  void Save();
  void Undo(UndoResult (*undo)(Link&, BusJournal&));

  Link& link_;
  BusJournal& journal_;
  UserDialogs& dialogs_;
  JournalModel model_;
  QTimer refresh_;
  QTableView* table_;
  bool atEnd_ = true;  ///< the user has not scrolled back
  QLineEdit* filter_ = nullptr;
  QCheckBox* writesOnly_ = nullptr;
  QCheckBox* userOnly_ = nullptr;
  QPushButton* undoToMark_ = nullptr;
  QLabel* count_ = nullptr;
};

}  // namespace krx
