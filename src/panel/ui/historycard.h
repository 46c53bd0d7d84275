// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTimer>

#include "controls/ui/card.h"
#include "panel/ui/historymodel.h"

class QPushButton;
class QTableView;

namespace krx {

/// "History of this register": what the journal has of it, and the undo of the action that wrote a row.
class HistoryCard : public Card {
  Q_OBJECT
 public:
  /// readOnly: nothing can have been written.
  HistoryCard(const Link& link, BusJournal& journal, bool readOnly);

  /// Shows a register, and what has come of it since.
  void Show(std::uint8_t reg);

 signals:
  /// The newest action is to be undone.
  void UndoRequested();

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void Refresh();
  void OfferUndo();
  void Undo();

  bool readOnly_;
  std::uint8_t register_ = 0;
  std::uint64_t chosen_ = 0;     ///< number of the chosen row's transfer; 0: none
  std::uint64_t offeredAt_ = 0;  ///< number of the user's newest write when the undo was offered
  const BusJournal& journal_;
  RegisterHistory history_;
  HistoryModel model_;
  QTimer refresh_;
  QTableView* table_;
  QPushButton* undo_;
  QLabel* words_;
};

}  // namespace krx
