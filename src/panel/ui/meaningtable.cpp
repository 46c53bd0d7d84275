// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/meaningtable.h"

#include <QHeaderView>
#include <QResizeEvent>
#include <utility>

#include "controls/ui/copyrows.h"
#include "controls/ui/statemark.h"
#include "panel/ui/cardtable.h"
#include "panel/ui/rowdelegate.h"

namespace krx {

MeaningTable::MeaningTable(const QStringList& titles) : QTableWidget(0, static_cast<int>(titles.size())) {
  setHorizontalHeaderLabels(titles);
  MakeCardTable(*this);
  MakeRowsCopyable(*this);
  setWordWrap(true);
  setTabKeyNavigation(false);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void MeaningTable::SetRows(int count) {
  if (rowCount() == count) return;
  setRowCount(count);
  changed_ = true;
}

void MeaningTable::SetCell(int row, int column, const Cell& cell) {
  QTableWidgetItem* item = this->item(row, column);
  if (item == nullptr) {
    item = new QTableWidgetItem;  // the table owns it
    setItem(row, column, item);
  }
  const auto set = [&](int role, const QVariant& value) {
    if (item->data(role) == value) return;
    item->setData(role, value);
    changed_ = true;
  };
  QFont font;
  font.setBold(cell.Bold);
  set(Qt::DisplayRole, cell.Text);
  set(Qt::ToolTipRole, cell.ToolTip);
  set(Qt::FontRole, font);
  set(mutedRole, cell.Muted);
  set(presentRole, cell.Present);
  set(markRole, static_cast<int>(cell.Tick ? Mark::Good : Mark::None));
}

void MeaningTable::FitRows() {
  if (!std::exchange(changed_, false) || fitting_) return;
  fitting_ = true;
  for (int column = 0; column < columnCount(); ++column) {
    // The texts of the last column, or before a tick, take what is left and wrap.
    const bool rest = column == columnCount() - 1 || (horizontalHeader()->isHidden() && column % 3 == 1);
    const bool tick = horizontalHeader()->isHidden() && column % 3 == 2;
    horizontalHeader()->setSectionResizeMode(column, rest && !tick ? QHeaderView::Stretch
                                                     : tick        ? QHeaderView::Fixed
                                                                   : QHeaderView::ResizeToContents);
    if (tick) setColumnWidth(column, fontMetrics().height() * 2);
  }
  resizeRowsToContents();
  int height = horizontalHeader()->isHidden() ? 0 : horizontalHeader()->height();
  for (int row = 0; row < rowCount(); ++row) height += rowHeight(row);
  setFixedHeight(height);
  fitting_ = false;
}

void MeaningTable::resizeEvent(QResizeEvent* event) {
  QTableWidget::resizeEvent(event);
  if (event->size().width() == event->oldSize().width()) return;
  changed_ = true;
  FitRows();
}

}  // namespace krx
