// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QTableWidget>

namespace krx {

/// What a cell shows.
struct Cell {
  QString Text = {};
  QString ToolTip = {};
  bool Bold = false;
  bool Muted = false;
  bool Present = false;  ///< on the ground of what is selected
  bool Tick = false;
};

/// A small table that is as high as its rows, whose texts wrap. Setting what a cell shows already costs nothing.
class MeaningTable : public QTableWidget {
  Q_OBJECT
 public:
  explicit MeaningTable(const QStringList& titles);

  void SetRows(int count);
  void SetCell(int row, int column, const Cell& cell);
  /// Columns as wide as their texts, the last but one or the last with the rest; then the rows, and the height of all.
  void FitRows();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  bool fitting_ = false;
  bool changed_ = true;
};

}  // namespace krx
