// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTableView>

#include "panel/ui/registertablemodel.h"

namespace krx {

/// The scrolled table of all registers. The arrow keys move through it, each step like a click. Rows are the panel's,
/// 1..90.
class RegisterTable : public QTableView {
  Q_OBJECT
 public:
  RegisterTable(RegisterPanel& panel, RegisterTableModel& model);

  /// The rows' states, and the row clicked last as the current one.
  void ShowStates();
  void ScrollTo(int row);
  /// Whether there is room for whole titles, and beside a changed register's mark for the byte that it held first.
  void SetRoomy(bool roomy);
  /// With the scroll bar and room for the longest name.
  int WidthOfColumns(bool roomy) const;
  /// Makes a row the one that Return selects, as the pointer over it would light it.
  void GoTo(int row);

 signals:
  void RowClicked(int row);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  int ColumnWidth(int column, bool roomy) const;
  void LeaveRows();
  /// The row under the pointer; 0: none.
  int RowAt(const QPoint& position) const { return rowAt(position.y()) + 1; }
  /// The nth shown row after (or before) a row; the last one reached at the end of the table.
  int Neighbour(int row, int steps) const;

  RegisterPanel& panel_;
  RegisterTableModel& rows_;
  int shownSelected_ = 0;
};

}  // namespace krx
