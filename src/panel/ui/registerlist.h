// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ui/card.h"
#include "panel/ui/registertable.h"

class QCheckBox;
class QLineEdit;
class QStackedWidget;

namespace krx {

/// The table of all registers under a box that finds them by name, address, or being changed.
class RegisterList : public Card {
  Q_OBJECT
 public:
  RegisterList(RegisterPanel& panel, Link& link);

  /// The pointer or a key has moved the panel's rows.
  void ShowStates() { table_->ShowStates(); }
  void ScrollTo(int row) { table_->ScrollTo(row); }
  /// Where the window is narrow a changed register has its mark only.
  void SetNarrow(bool narrow);
  QSize sizeHint() const override;

 signals:
  void RowClicked(int row);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLayout* MakeSearch();
  bool IsShown(int row) const;
  /// The first shown row; 0 when there is none.
  int FirstHit() const;
  void Filter();
  void FilterRow(int row);
  void ShowCount();
  void SetWidth();

  RegisterPanel& panel_;
  RegisterChanges changes_;
  RegisterTableModel model_;
  RegisterTable* table_;
  QLineEdit* find_ = nullptr;
  QCheckBox* changedOnly_ = nullptr;
  QLabel* count_ = nullptr;
  QLabel* noMatch_ = nullptr;
  QStackedWidget* stack_ = nullptr;
  int hits_ = RegisterPanel::rowCount;
  bool narrow_ = false;
};

}  // namespace krx
