// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/copyrows.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QStringList>
#include <QTableView>
#include <algorithm>

namespace krx {
using namespace Qt::StringLiterals;
namespace {

QString RowText(const QTableView& table, int row) {
  QStringList cells;
  for (int column = 0; column < table.model()->columnCount(); ++column) {
    if (!table.isColumnHidden(column)) cells << table.model()->index(row, column).data().toString();
  }
  while (!cells.isEmpty() && cells.last().isEmpty()) cells.removeLast();
  return cells.join(u'\t');
}

}  // namespace

QString RowsText(const QTableView& table) {
  QList<int> rows;
  for (const QModelIndex& index : table.selectionModel()->selectedIndexes()) {
    if (!rows.contains(index.row())) rows << index.row();
  }
  if (rows.isEmpty() && table.currentIndex().isValid()) rows << table.currentIndex().row();
  std::ranges::sort(rows);
  QStringList lines;
  for (const int row : rows) lines << RowText(table, row);
  return lines.join(u'\n');
}

void MakeRowsCopyable(QTableView& table) {
  auto* const copy = new QAction(&table);
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetShortcut);
  table.addAction(copy);
  QObject::connect(copy, &QAction::triggered, &table, [&table] {
    if (const QString text = RowsText(table); !text.isEmpty()) QGuiApplication::clipboard()->setText(text);
  });
}

}  // namespace krx
