// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/copymenu.h"

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>

namespace krx {
namespace {

/// What the context menu of a widget copies; empty where there is no menu.
std::string Copied(QWidget& widget) {
  QGuiApplication::clipboard()->clear();
  QContextMenuEvent event(QContextMenuEvent::Mouse, {1, 1}, widget.mapToGlobal(QPoint(1, 1)));
  QCoreApplication::sendEvent(&widget, &event);
  if (auto* const menu = widget.findChild<QMenu*>("mnuCopy")) {
    menu->actions().front()->trigger();
    delete menu;
  }
  return QGuiApplication::clipboard()->text().toStdString();
}

TEST(CopyMenu, CopiesTheValueOfALabelOrAWidgetAndTheSelectedRowsOfATable) {
  CopyMenu menu;
  qApp->installEventFilter(&menu);
  QLabel plain("26.25C"), rich("<b>5.04</b> V"), unknown("–");
  QPushButton tile("Local"), button("Easy Setup");
  tile.setProperty(copyTextProperty, "26.25 C");
  QTableWidget table(3, 2);
  for (int cell = 0; cell < 6; ++cell) table.setItem(cell / 2, cell % 2, new QTableWidgetItem(QString::number(cell)));
  EXPECT_EQ(Copied(*table.viewport()), "") << "nothing selected";
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setSelectionMode(QAbstractItemView::MultiSelection);
  for (const int row : {2, 0}) table.selectRow(row);
  const std::pair<QWidget*, const char*> rows[] = {{&plain, "26.25C"}, {&rich, "5.04 V"},
                                                   {&unknown, ""},     {&tile, "26.25 C"},
                                                   {&button, ""},      {table.viewport(), "0\t1\n4\t5"}};
  for (const auto& [widget, text] : rows) EXPECT_EQ(Copied(*widget), text);
}

}  // namespace
}  // namespace krx
