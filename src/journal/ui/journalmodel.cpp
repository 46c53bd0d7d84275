// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/ui/journalmodel.h"

#include <algorithm>
#include <vector>

#include "controls/ui/texts.h"

namespace krx {

JournalModel::JournalModel(const BusJournal& journal) : journal_(journal) {}

const std::deque<JournalEntry>& JournalModel::Source() const {
  return filter_.UserOnly ? journal_.UserWrites() : journal_.Entries();
}

void JournalModel::DropLost() {
  const auto& entries = Source();
  const std::uint64_t oldest = entries.empty() ? journal_.Count() + 1 : entries.front().Number;
  const auto kept = std::lower_bound(numbers_.begin(), numbers_.end(), oldest);
  if (kept == numbers_.begin()) return;
  beginRemoveRows({}, 0, static_cast<int>(kept - numbers_.begin()) - 1);
  numbers_.erase(numbers_.begin(), kept);
  endRemoveRows();
}

void JournalModel::Follow() {
  DropLost();
  std::vector<std::uint64_t> fresh;
  const auto& entries = Source();
  for (auto entry = entries.rbegin(); entry != entries.rend() && entry->Number > lastSeen_; ++entry) {
    if (JournalMatches(*entry, filter_)) fresh.push_back(entry->Number);
  }
  lastSeen_ = journal_.Count();
  if (fresh.empty()) return;
  const int first = static_cast<int>(numbers_.size());
  beginInsertRows({}, first, first + static_cast<int>(fresh.size()) - 1);
  numbers_.insert(numbers_.end(), fresh.rbegin(), fresh.rend());
  endInsertRows();
}

void JournalModel::SetFilter(const JournalFilter& filter) {
  beginResetModel();
  filter_ = filter;
  numbers_.clear();
  endResetModel();
  lastSeen_ = 0;
  Follow();
}

const JournalEntry* JournalModel::Find(int row) const {
  const std::uint64_t number = numbers_.at(static_cast<std::size_t>(row));
  const auto found = std::ranges::lower_bound(Source(), number, {}, &JournalEntry::Number);
  // Between two looks the ring may have dropped what a row still stands for.
  return found != Source().end() && found->Number == number ? &*found : nullptr;
}

int JournalModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(numbers_.size());
}

int JournalModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(journalColumnCount);
}

QVariant JournalModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  const JournalEntry* const entry = Find(index.row());
  if (entry == nullptr) return {};
  return QString::fromStdString(JournalColumns(*entry).at(static_cast<std::size_t>(index.column())));
}

QVariant JournalModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
  return QtText(journalTitles.at(static_cast<std::size_t>(section)));
}

}  // namespace krx
