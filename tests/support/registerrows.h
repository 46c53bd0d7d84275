// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtTest>
#include <QtWidgets>
#include <string>

#include "panel/ui/rowdelegate.h"

namespace krx {

/// The row of the register table that goes by a name, "read_writedisplaytext_3".
inline QModelIndex RegisterRow(const QWidget& window, const std::string& name) {
  const QAbstractItemModel& model = *window.findChild<QTableView*>("lstRegisterRows")->model();
  return model.match(model.index(0, 1), nameRole, QString::fromStdString(name), 1, Qt::MatchExactly).value(0);
}

/// Presses such a row, or the widget of that name. False when there is none.
inline bool Press(const QWidget& window, const std::string& name) {
  if (auto* const widget = window.findChild<QWidget*>(QString::fromStdString(name))) {
    // Of a check box only its square and its text take a press, however wide it is.
    const bool marked = widget->inherits("QCheckBox") || widget->inherits("QRadioButton");
    QTest::mouseClick(widget, Qt::LeftButton, {}, marked ? QPoint(8, widget->height() / 2) : widget->rect().center());
    return true;
  }
  const QModelIndex row = RegisterRow(window, name);
  if (!row.isValid()) return false;
  auto* const table = window.findChild<QTableView*>("lstRegisterRows");
  table->scrollTo(row);
  QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualRect(row).center());
  return true;
}

}  // namespace krx
