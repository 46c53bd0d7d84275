// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QTableView;

namespace krx {

/// The shown cells of the table's selected rows, or of its current one, a line each with tabs between. Empty: none.
QString RowsText(const QTableView& table);

/// Ctrl+C copies whole rows as text; the toolkit's own copies one cell.
void MakeRowsCopyable(QTableView& table);

}  // namespace krx
