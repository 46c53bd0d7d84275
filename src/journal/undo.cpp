// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/undo.h"

#include <algorithm>
#include <span>

#include "link/commserror.h"
#include "link/registeraccess.h"

namespace krx {
namespace {

constexpr const char* neverSeen = "previous value unknown; the written value is kept";

std::uint8_t ChipOf(const Link& link) {
  return static_cast<std::uint8_t>(link.ChipAddress);
}

/// True when nothing has to be written: the register holds its old byte.
bool HoldsOldByte(const UndoRecord& record) {
  return record.Before && record.Before == record.After;
}

/// False when the register should be tried again.
bool Restore(Link& link, BusJournal& journal, const UndoRecord& record, UndoResult& result) {
  if (HoldsOldByte(record)) return true;
  if (!record.Before) {
    result.Problems.push_back({record.Register, neverSeen});
    return true;
  }
  const auto replaced = link.Seen.Byte(record.Register);
  try {
    const BusJournal::ActionScope action(journal, undoOrigin);
    WriteByte(link, record.Register, *record.Before);
  } catch (const CommsError& error) {
    result.Problems.push_back({record.Register, error.BoxText()});
    return false;
  }
  result.Written.push_back({record.Register, *record.Before, replaced});
  return true;
}

/// The combined effect of the records, one per register: the value before the first record and after the last one.
std::vector<UndoRecord> Combined(std::span<const UndoRecord> records) {
  std::vector<UndoRecord> net;
  for (const UndoRecord& record : records) {
    const auto known = std::ranges::find(net, record.Register, &UndoRecord::Register);
    if (known == net.end()) {
      net.push_back(record);
    } else {
      known->After = record.After;
    }
  }
  return net;
}

/// The writes of the newest action, which are adjacent.
std::span<const UndoRecord> NewestAction(std::span<const UndoRecord> records) {
  std::size_t first = records.size();
  while (first > 0 && records[first - 1].Action == records.back().Action) --first;
  return records.subspan(first);
}

void UndoRecords(Link& link, BusJournal& journal, std::span<const UndoRecord> records, UndoResult& result) {
  const std::vector<UndoRecord> net = Combined(records);
  for (auto each = net.rbegin(); each != net.rend(); ++each) {
    if (!Restore(link, journal, *each, result)) continue;
    for (const UndoRecord& record : records) {
      if (record.Register == each->Register) journal.SetUndone(record.Number);
    }
  }
}

}  // namespace

std::optional<UndoTarget> NextUndo(const Link& link, const BusJournal& journal) {
  const std::vector<UndoRecord> all = journal.UndoableWrites(ChipOf(link));
  for (std::span<const UndoRecord> records = all; !records.empty();) {
    const auto newest = NewestAction(records);
    std::vector<UndoRecord> net = Combined(newest);
    std::erase_if(net, HoldsOldByte);
    if (!net.empty()) return UndoTarget{newest.back().Action, newest.back().Origin, net.size()};
    records = records.first(records.size() - newest.size());
  }
  return std::nullopt;
}

UndoResult UndoLastAction(Link& link, BusJournal& journal) {
  UndoResult result;
  std::vector<UndoRecord> records = journal.UndoableWrites(ChipOf(link));
  while (!records.empty() && result.Written.empty() && result.Problems.empty()) {
    const auto newest = NewestAction(records);
    result.Origin = newest.back().Origin;
    UndoRecords(link, journal, newest, result);
    records.resize(records.size() - newest.size());
  }
  return result;
}

UndoResult UndoToMark(Link& link, BusJournal& journal) {
  UndoResult result;
  if (!journal.Mark()) return result;
  result.Forgotten = journal.ForgottenSinceMark();
  std::vector<UndoRecord> records = journal.UndoableWrites(ChipOf(link));
  std::erase_if(records, [&](const UndoRecord& record) { return record.Number <= *journal.Mark(); });
  UndoRecords(link, journal, records, result);
  return result;
}

}  // namespace krx
