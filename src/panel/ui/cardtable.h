// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QTableView;

namespace krx {

/// A table that lies on a card without a frame of its own: muted titles, rows of one height with a thin line below.
void MakeCardTable(QTableView& table);

}  // namespace krx
