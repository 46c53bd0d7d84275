// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/copyrows.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QMenu>
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

QString AllRows(const QTableView& table) {
  QStringList lines;
  for (int row = 0; row < table.model()->rowCount(); ++row) {
    if (!table.isRowHidden(row)) lines << RowText(table, row);
  }
  return lines.join(u'\n');
}

void Copy(const QString& text) {
  if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

void ShowMenu(QTableView& table, const QPoint& position) {
  auto* const menu = new QMenu(&table);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const int row = table.rowAt(position.y());
  const bool selected = table.selectionModel()->isRowSelected(row);
  QAction* const copy = menu->addAction(u"&Copy row"_s);
  copy->setEnabled(row >= 0);
  QObject::connect(copy, &QAction::triggered, &table,
                   [&table, row, selected] { Copy(selected ? RowsText(table) : RowText(table, row)); });
  QObject::connect(menu->addAction(u"Copy &all rows"_s), &QAction::triggered, &table,
                   [&table] { Copy(AllRows(table)); });
  menu->popup(table.viewport()->mapToGlobal(position));
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
  QObject::connect(copy, &QAction::triggered, &table, [&table] { Copy(RowsText(table)); });
  table.setContextMenuPolicy(Qt::CustomContextMenu);
  QObject::connect(&table, &QTableView::customContextMenuRequested, &table,
                   [&table](const QPoint& position) { ShowMenu(table, position); });
}

}  // namespace krx
