// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/undo.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "link/commserror.h"
#include "link/registeraccess.h"

namespace krx {
namespace {

constexpr const char* neverSeen = "previous value unknown; the written value is kept";

std::uint8_t ChipOf(const Link& link) {
  return static_cast<std::uint8_t>(link.ChipAddress);
}

/// False when the register should be tried again.
bool Restore(Link& link, BusJournal& journal, const UndoRecord& record, UndoResult& result) {
  if (record.Before && record.Before == record.After) return true;
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

/// Undoes the combined effect of the records.
void UndoRecords(Link& link, BusJournal& journal, std::span<const UndoRecord> records, UndoResult& result) {
  std::vector<UndoRecord> net;  // one per register: the value before the first record and after the last one
  for (const UndoRecord& record : records) {
    const auto known = std::ranges::find(net, record.Register, &UndoRecord::Register);
    if (known == net.end()) {
      net.push_back(record);
    } else {
      known->After = record.After;
    }
  }
  for (auto each = net.rbegin(); each != net.rend(); ++each) {
    if (!Restore(link, journal, *each, result)) continue;
    for (const UndoRecord& record : records) {
      if (record.Register == each->Register) journal.SetUndone(record.Number);
    }
  }
}

}  // namespace

UndoResult UndoLastAction(Link& link, BusJournal& journal) {
  UndoResult result;
  std::vector<UndoRecord> records = journal.UndoableWrites(ChipOf(link));
  while (!records.empty() && result.Written.empty() && result.Problems.empty()) {
    const std::uint64_t action = records.back().Action;
    auto first = records.end();
    while (first != records.begin() && std::prev(first)->Action == action) --first;
    result.Origin = records.back().Origin;
    UndoRecords(link, journal, {first, records.end()}, result);
    records.erase(first, records.end());
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
