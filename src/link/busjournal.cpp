// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/busjournal.h"

#include <algorithm>
#include <utility>

namespace krx {

BusJournal::BusJournal(Clock& clock) : clock_(clock), start_(Now()) {}

double BusJournal::Now() {
  const std::int64_t frequency = clock_.Frequency();
  return frequency == 0 ? clock_.FallbackSeconds()
                        : static_cast<double>(clock_.Counter()) / static_cast<double>(frequency);
}

void BusJournal::Add(JournalEntry entry) {
  entry.Number = ++count_;
  entry.Seconds = Now() - start_;
  entry.Origin = origin_;
  const bool ofRegister =
      entry.Operation == BusOperation::ReadRegister || entry.Operation == BusOperation::WriteRegister;
  if (ofRegister) {
    const Place place{entry.PrinterPort, entry.Address, entry.Register};
    const auto known = seen_.find(place);
    if (entry.Operation == BusOperation::WriteRegister && known != seen_.end()) entry.OldValue = known->second;
    // A failed write may or may not have reached the register: nothing is known of it any more.
    if (!entry.Failure.empty() && entry.Operation == BusOperation::WriteRegister) {
      seen_.erase(place);
    } else if (entry.Failure.empty() && !entry.Skipped) {
      seen_[place] = entry.Value;
    }
  }
  if (entry.Skipped) ++skipped_;
  if (entries_.size() == capacity) entries_.pop_front();
  entries_.push_back(std::move(entry));
  if (Added) Added();
}

bool BusJournal::Undoable(const JournalEntry& entry, std::uint8_t chipAddress) const {
  return entry.Operation == BusOperation::WriteRegister && entry.Address == chipAddress && entry.Failure.empty() &&
         !entry.Skipped && entry.Origin != undoOrigin &&
         std::find(undone_.begin(), undone_.end(), entry.Number) == undone_.end();
}

std::optional<UndoStep> BusJournal::LastWrite(std::uint8_t chipAddress) const {
  for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry) {
    if (!Undoable(*entry, chipAddress)) continue;
    if (!entry->OldValue) return std::nullopt;
    return UndoStep{entry->Register, *entry->OldValue, entry->Number};
  }
  return std::nullopt;
}

std::vector<UndoStep> BusJournal::WritesSinceMark(std::uint8_t chipAddress, std::size_t& lost) const {
  std::vector<UndoStep> steps;
  const std::uint64_t oldestKept = entries_.empty() ? count_ : entries_.front().Number - 1;
  lost = mark_ < oldestKept ? static_cast<std::size_t>(oldestKept - mark_) : 0;
  for (auto entry = entries_.rbegin(); entry != entries_.rend() && entry->Number > mark_; ++entry) {
    if (!Undoable(*entry, chipAddress)) continue;
    if (entry->OldValue) {
      steps.push_back({entry->Register, *entry->OldValue, entry->Number});
    } else {
      ++lost;
    }
  }
  return steps;
}

void BusJournal::SetUndone(std::uint64_t number) {
  undone_.push_back(number);
}

BusJournal::OriginScope::OriginScope(BusJournal& journal, std::string name)
    : journal_(journal), former_(std::exchange(journal.origin_, std::move(name))) {}

BusJournal::OriginScope::~OriginScope() {
  journal_.origin_ = std::move(former_);
}

}  // namespace krx
