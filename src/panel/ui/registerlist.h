// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QScrollArea>
#include <array>

#include "panel/registerpanel.h"

namespace krx {

/// One register in the list; its state is its text colour.
class RegisterRow : public QLabel {
  Q_OBJECT
 public:
  explicit RegisterRow(int row);
  void ShowState(RowState state);

 signals:
  void Hovered(int row);
  void Clicked(int row);

 protected:
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void ApplyColours();

  int row_;
  RowState state_ = RowState::Plain;
};

/// The scrolled list of all registers. The arrow keys move through it, each step like a click.
class RegisterList : public QScrollArea {
  Q_OBJECT
 public:
  explicit RegisterList(RegisterPanel& panel);

  void ShowStates();
  void ScrollTo(int row);
  /// Shows only the rows whose name or address contains the text; returns the first of them, 0 when there is none.
  int Filter(const QString& text);

 signals:
  void RowClicked(int row);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;
  QSize sizeHint() const override;

 private:
  /// The nth shown row after (or before) a row; the last one reached at the end of the list.
  int Neighbour(int row, int steps) const;

  RegisterPanel& panel_;
  std::array<RegisterRow*, RegisterPanel::rowCount + 1> rows_{};  ///< by row number; index 0 is unused
};

}  // namespace krx
