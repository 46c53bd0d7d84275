// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace krx {

/// What a model says of a cell beside the toolkit's own roles.
enum RowRole {
  rowStateRole = Qt::UserRole,  ///< int of a RowState, the same in all cells of a row; none: no bar at the left
  mutedRole,                    ///< bool: muted text
  markRole,                     ///< int of a Mark before the text
  presentRole,                  ///< bool: on the ground of a selected row, without its bar
  lockRole,                     ///< bool: a lock instead of a text
  nameRole,                     ///< the name that a row goes by in the system
};

/// Of the bar that shows a row's state, in pixels.
inline constexpr int rowBarWidth = 5;

/// Paints the rows of a table on a card: a thin line below each, marks, locks, and the row's state in a bar at its left
/// edge. Text keeps the text colour in every state, so that it can be read in both themes.
class RowDelegate : public QStyledItemDelegate {
  Q_OBJECT
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace krx
