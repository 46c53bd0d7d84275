// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/registerhistory.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace krx {
namespace {

constexpr std::string_view ownPage = "Read/Write: ";
constexpr std::string_view ownTab = "Tab \"Read/Write\"";

HistoryRow RowOf(const JournalEntry& entry, std::optional<std::uint8_t> before) {
  HistoryRow row{.Number = entry.Number,
                 .Seconds = entry.Seconds,
                 .Origin = entry.Origin,
                 .Write = IsWrite(entry),
                 .Action = entry.Action};
  if (!entry.Failure.empty() || entry.Skipped) {
    row.Skipped = entry.Skipped;
    row.Note = entry.Skipped ? "not written (read-only)" : entry.Failure;
    return row;
  }
  row.Byte = entry.Value;
  if (before) row.Changed = *before ^ entry.Value;
  return row;
}

/// What is left of the register by the action, and can be taken back.
bool IsUndoable(const std::vector<UndoRecord>& records, const HistoryRow& row, std::uint8_t reg) {
  return row.Write && std::ranges::any_of(records, [&](const UndoRecord& record) {
           const bool asBefore = record.Before && record.Before == record.After;
           return record.Action == row.Action && record.Register == reg && !asBefore;
         });
}

}  // namespace

std::string HistoryRow::OriginText() const {
  const bool ownReading = Origin == ownTab || Origin.starts_with("Read/Write: list");
  if (!Write && ownReading) return "read";
  const std::string name = Origin.starts_with(ownPage) ? Origin.substr(ownPage.size()) : Origin;
  // A timer's name says what it does.
  const bool saysIt = name == "Continuous reading" || name == "Reading cycle";
  return Write || saysIt ? name : name.empty() ? "read" : "read, " + name;
}

std::string HistoryRow::ChangedText() const {
  std::string bits;
  int count = 0;
  for (int bit = 7; bit >= 0; --bit) {
    if ((Changed >> bit & 1) == 0) continue;
    bits += fmt::format("{}{}", count++ == 0 ? "" : ", ", bit);
  }
  return count == 0 ? std::string() : fmt::format("{} {}", count == 1 ? "bit" : "bits", bits);
}

bool RegisterHistory::IsOfRegister(const JournalEntry& entry) const {
  const bool ofRegister =
      entry.Operation == BusOperation::ReadRegister || entry.Operation == BusOperation::WriteRegister;
  return ofRegister && entry.Register == register_ && entry.Address == link_.ChipAddress &&
         entry.PrinterPort == (link_.CommsMedium == 1);
}

void RegisterHistory::LoadAll() {
  rows_.clear();
  last_.reset();
  // The user's writes are kept longer than the rest.
  const auto& entries = journal_.Entries();
  const std::uint64_t oldest = entries.empty() ? 0 : entries.front().Number;
  for (const JournalEntry& entry : journal_.UserWrites()) {
    if (entry.Number < oldest && IsOfRegister(entry)) Add(entry);
  }
  for (const JournalEntry& entry : entries) {
    if (IsOfRegister(entry)) Add(entry);
  }
}

RegisterHistory::News RegisterHistory::Follow(std::uint8_t reg) {
  News news = News::None;
  if (std::exchange(register_, reg) != reg || followed_ == 0) {
    LoadAll();
    news = News::OtherRows;
  } else {
    const auto& entries = journal_.Entries();
    auto next = std::ranges::upper_bound(entries, followed_, {}, &JournalEntry::Number);
    for (; next != entries.end(); ++next) {
      if (IsOfRegister(*next)) news = std::max(news, Add(*next));
    }
  }
  followed_ = journal_.Count();
  return news;
}

RegisterHistory::News RegisterHistory::Add(const JournalEntry& entry) {
  HistoryRow row = RowOf(entry, IsWrite(entry) && entry.OldValue ? entry.OldValue : last_);
  if (row.Byte || (row.Write && !entry.Skipped)) last_ = row.Byte;
  if (!rows_.empty()) {
    HistoryRow& newest = rows_.front();
    const bool together = newest.Origin == row.Origin && newest.Action == row.Action && newest.Note == row.Note;
    // The chip kept what was written, or nothing has changed since the last reading.
    if (!row.Write && together && row.Changed == 0) {
      if (newest.Write) return News::None;
      newest.Number = row.Number;
      newest.Seconds = row.Seconds;
      ++newest.Count;
      return News::SameRows;
    }
    // The reading that a change of single bits begins with.
    if (row.Write && together && !newest.Write && row.Action != 0 && newest.Changed == 0) {
      newest = std::move(row);
      return News::OtherRows;
    }
  }
  rows_.push_front(std::move(row));
  if (rows_.size() > mostRows) rows_.pop_back();
  return News::OtherRows;
}

UndoOffer RegisterHistory::OfferUndo(std::optional<std::size_t> chosen) const {
  const std::vector<UndoRecord> records = journal_.UndoableWrites(static_cast<std::uint8_t>(link_.ChipAddress));
  const auto undoable = [&](const HistoryRow& row) { return IsUndoable(records, row, register_); };
  const HistoryRow* row = chosen && *chosen < rows_.size() ? &rows_[*chosen] : nullptr;
  if (row == nullptr) {
    const auto found = std::ranges::find_if(rows_, undoable);
    if (found == rows_.end()) return {false, "Nothing to undo"};
    row = &*found;
  }
  if (!row->Write) return {false, "A reading changes nothing"};
  if (!undoable(*row)) {
    return {false, row->Action == 0            ? "Written by the console itself"
                   : row->Origin == undoOrigin ? "An undo is not undone itself"
                   : !row->Byte                ? "Nothing was written"
                   : row->Changed == 0         ? "It left the register as it was"
                                               : "Already undone"};
  }
  const auto next = NextUndo(link_, journal_);
  if (!next || next->Action != row->Action) {
    return {false, fmt::format("Undo \"{}\" first, which came later", next ? next->Origin : std::string())};
  }
  const std::size_t others = next->Registers - 1;
  const std::string more = others == 0   ? std::string()
                           : others == 1 ? " with 1 other register"
                                         : fmt::format(" with {} other registers", others);
  return {true, fmt::format("Undoes \"{}\"{}", next->Origin, more)};
}

}  // namespace krx
