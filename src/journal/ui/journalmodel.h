// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <cstdint>
#include <deque>

#include "journal/journaltext.h"

namespace krx {

/// The journal's entries that pass a filter, as table rows. It follows the journal when told to, so that a bus in
/// full swing costs nothing between two looks.
class JournalModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  explicit JournalModel(const BusJournal& journal);

  /// Takes over what the journal has got and dropped since the last call.
  void Follow();
  void SetFilter(const JournalFilter& filter);
  /// After Follow every row has its entry.
  const JournalEntry& Entry(int row) const { return *Find(row); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const std::deque<JournalEntry>& Source() const;
  const JournalEntry* Find(int row) const;
  void DropLost();

  const BusJournal& journal_;
  JournalFilter filter_;
  std::deque<std::uint64_t> numbers_;  ///< of the entries that are shown
  std::uint64_t lastSeen_ = 0;
};

}  // namespace krx
