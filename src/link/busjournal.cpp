// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/busjournal.h"

#include <algorithm>
#include <iterator>
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
  LearnValues(entry);
  if (entry.Skipped) ++skipped_;
  if (entry.Operation == BusOperation::WriteRegister && entry.Failure.empty() && !entry.Skipped &&
      entry.Origin != undoOrigin) {
    Remember(entry);
  }
  if (entries_.size() == capacity) entries_.pop_front();
  entries_.push_back(std::move(entry));
  if (Added) Added();
}

void BusJournal::LearnValues(JournalEntry& entry) {
  const bool ofRegister =
      entry.Operation == BusOperation::ReadRegister || entry.Operation == BusOperation::WriteRegister;
  const bool ofDevice = entry.Operation == BusOperation::ReceiveByte || entry.Operation == BusOperation::SendByte;
  // The status byte is another one than the control byte; neither tells what the other held.
  if (!ofRegister && !ofDevice) return;
  const bool write = entry.Operation == BusOperation::WriteRegister || entry.Operation == BusOperation::SendByte;
  const Place place{entry.PrinterPort, ofRegister, entry.Address, entry.Register};
  const auto known = seen_.find(place);
  if (write && known != seen_.end()) entry.OldValue = known->second;
  if (entry.Skipped) return;
  if (entry.Failure.empty()) {
    seen_[place] = entry.Value;
  } else if (write) {
    // It may or may not have arrived: nothing is known of the place any more.
    seen_.erase(place);
  }
}

void BusJournal::Remember(const JournalEntry& write) {
  if (writes_.size() == capacity) {
    if (writes_.front().Number > mark_) ++forgottenSinceMark_;
    writes_.pop_front();
  }
  writes_.push_back({write.Number, write.Address, write.Register, write.OldValue});
}

void BusJournal::SetMark() {
  mark_ = count_;
  forgottenSinceMark_ = 0;
}

std::vector<UndoRecord> BusJournal::UndoableWrites(std::uint8_t chipAddress) const {
  std::vector<UndoRecord> found;
  std::ranges::copy_if(writes_, std::back_inserter(found),
                       [&](const UndoRecord& write) { return write.Address == chipAddress; });
  return found;
}

void BusJournal::SetUndone(std::uint64_t number) {
  std::erase_if(writes_, [&](const UndoRecord& write) { return write.Number == number; });
}

BusJournal::OriginScope::OriginScope(BusJournal& journal, std::string name)
    : journal_(journal), former_(std::exchange(journal.origin_, std::move(name))) {}

BusJournal::OriginScope::~OriginScope() {
  journal_.origin_ = std::move(former_);
}

}  // namespace krx
