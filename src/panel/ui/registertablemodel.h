// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <array>

#include "panel/registerchanges.h"
#include "panel/registerpanel.h"

namespace krx {

/// The 90 registers in the panel's order: address, name, the byte seen last, and whether it has changed. A byte that
/// passes on the bus renews the row of its register and no other. Row n of the model is the panel's row n + 1.
class RegisterTableModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  enum Column { Address, Name, LastValue, WhetherChanged, Lock, columnTotal };

  RegisterTableModel(const RegisterPanel& panel, RegisterChanges& changes);
  ~RegisterTableModel() override;

  /// The states that the panel's rows have now.
  void ShowStates();
  /// Without room the titles are short and a changed register has its mark only; the tool tips have the rest.
  void SetRoomy(bool roomy);
  static QString Title(int column, bool roomy);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 signals:
  /// A register has changed, or holds its first byte again.
  void ByteSeen(int panelRow);

 private:
  QString Text(const RegisterEntry& entry, int column) const;
  QString ToolTip(const RegisterEntry& entry, int column) const;
  /// The row in words: what its colours and marks show.
  QString Spoken(const RegisterEntry& entry) const;
  void Renew(int row);

  const RegisterPanel& panel_;
  RegisterChanges& changes_;
  bool roomy_ = true;
  std::array<RowState, RegisterPanel::rowCount> states_{};  ///< as they are shown
};

}  // namespace krx
