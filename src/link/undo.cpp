// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/undo.h"

#include <algorithm>

#include "link/commserror.h"
#include "link/registeraccess.h"

namespace krx {
namespace {

constexpr const char* neverSeen = "what it held before was never read";

std::uint8_t ChipOf(const Link& link) {
  return static_cast<std::uint8_t>(link.ChipAddress);
}

/// True when the register has its former byte again.
bool PutBack(Link& link, BusJournal& journal, const UndoRecord& record, UndoResult& result) {
  if (!record.OldValue) {
    result.Problems.push_back({record.Register, neverSeen});
    return false;
  }
  try {
    const BusJournal::OriginScope origin(journal, undoOrigin);
    WriteByte(link, record.Register, *record.OldValue);
  } catch (const CommsError& error) {
    result.Problems.push_back({record.Register, error.BoxText()});
    return false;
  }
  result.Written.push_back({record.Register, *record.OldValue});
  return true;
}

}  // namespace

UndoResult UndoLastWrite(Link& link, BusJournal& journal) {
  UndoResult result;
  const std::vector<UndoRecord> writes = journal.UndoableWrites(ChipOf(link));
  if (writes.empty()) return result;
  const UndoRecord& last = writes.back();
  if (PutBack(link, journal, last, result) || !last.OldValue) journal.SetUndone(last.Number);
  return result;
}

UndoResult UndoToMark(Link& link, BusJournal& journal) {
  UndoResult result;
  result.Forgotten = journal.ForgottenSinceMark();
  // The first write to a register since the mark knows what it held at the mark.
  std::vector<UndoRecord> since;
  for (const UndoRecord& write : journal.UndoableWrites(ChipOf(link))) {
    if (write.Number > journal.Mark()) since.push_back(write);
  }
  std::vector<UndoRecord> first;
  for (const UndoRecord& write : since) {
    const auto same = [&](const UndoRecord& other) { return other.Register == write.Register; };
    if (std::ranges::none_of(first, same)) first.push_back(write);
  }
  for (auto write = first.rbegin(); write != first.rend(); ++write) {
    if (!PutBack(link, journal, *write, result)) continue;
    for (const UndoRecord& each : since) {
      if (each.Register == write->Register) journal.SetUndone(each.Number);
    }
  }
  return result;
}

}  // namespace krx
