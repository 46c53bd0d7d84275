// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QDateTime>

#include "panel/registerhistory.h"

namespace krx {

/// The history of a register as table rows.
class HistoryModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  enum Column { Time, Origin, Hex, Changed, columnTotal };

  /// journalStart: the moment that the journal counts its seconds from.
  HistoryModel(RegisterHistory& history, QDateTime journalStart);

  /// Takes over what is new. True when there are other rows than before.
  bool Follow(std::uint8_t reg);
  /// The row of a transfer; nothing when it has gone.
  std::optional<int> RowOf(std::uint64_t number) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString Text(const HistoryRow& row, int column) const;
  static QString ChangedText(const HistoryRow& row);
  QString ToolTip(const HistoryRow& row) const;

  RegisterHistory& history_;
  QDateTime start_;
  int rows_ = 0;
};

}  // namespace krx
