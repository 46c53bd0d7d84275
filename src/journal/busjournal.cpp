// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/busjournal.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace krx {
namespace {

template <typename Item>
void PushBounded(std::deque<Item>& ring, const Item& item) {
  if (ring.size() == BusJournal::capacity) ring.pop_front();
  ring.push_back(item);
}

}  // namespace

bool IsWrite(const JournalEntry& entry) {
  return entry.Operation == BusOperation::WriteRegister || entry.Operation == BusOperation::SendByte ||
         entry.Operation == BusOperation::ControlByte;
}

BusJournal::BusJournal(Clock& clock) : clock_(clock), start_(Now()) {}

double BusJournal::Now() {
  const std::int64_t frequency = clock_.Frequency();
  return frequency == 0 ? clock_.FallbackSeconds()
                        : static_cast<double>(clock_.Counter()) / static_cast<double>(frequency);
}

void BusJournal::Add(JournalEntry entry) {
  entry.Number = ++count_;
  entry.Seconds = Now() - start_;
  entry.Origin = running_ ? running_->Origin : control_;
  entry.Action = running_ ? running_->Action : 0;
  LearnValues(entry);
  if (entry.Skipped) ++skipped_;
  if (entry.Action != 0 && IsWrite(entry)) {
    PushBounded(userWrites_, entry);
    if (entry.Operation == BusOperation::WriteRegister && !entry.Skipped && entry.Origin != undoOrigin) Remember(entry);
  }
  PushBounded(entries_, entry);
}

void BusJournal::LearnValues(JournalEntry& entry) {
  const bool ofRegister =
      entry.Operation == BusOperation::ReadRegister || entry.Operation == BusOperation::WriteRegister;
  const bool ofDevice = entry.Operation == BusOperation::ReceiveByte || entry.Operation == BusOperation::SendByte;
  // Status byte and control byte are different bytes; neither gives the value of the other.
  if (!ofRegister && !ofDevice) return;
  const bool write = entry.Operation == BusOperation::WriteRegister || entry.Operation == BusOperation::SendByte;
  const Place place{entry.PrinterPort, ofRegister, entry.Address, entry.Register};
  const auto known = seen_.find(place);
  if (write && known != seen_.end()) entry.OldValue = known->second;
  if (entry.Skipped) return;
  if (entry.Failure.empty()) {
    seen_[place] = entry.Value;
  } else if (write) {
    // The write may or may not have reached the chip: the value is unknown.
    seen_.erase(place);
  }
}

void BusJournal::Remember(const JournalEntry& write) {
  const auto after = write.Failure.empty() ? std::optional(write.Value) : std::nullopt;
  for (auto known = writes_.rbegin(); known != writes_.rend() && known->Action == write.Action; ++known) {
    // The value at the mark must be kept as well.
    if (mark_ && known->Number <= *mark_) break;
    if (known->Address != write.Address || known->Register != write.Register) continue;
    known->After = after;
    return;
  }
  if (writes_.size() == capacity) DropOldestAction();
  writes_.push_back({write.Number, write.Action, write.Origin, write.Address, write.Register, write.OldValue, after});
}

void BusJournal::DropOldestAction() {
  const std::uint64_t oldest = writes_.front().Action;
  while (!writes_.empty() && writes_.front().Action == oldest) {
    if (mark_ && writes_.front().Number > *mark_) ++forgottenSinceMark_;
    writes_.pop_front();
  }
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
  const auto found = std::ranges::lower_bound(writes_, number, {}, &UndoRecord::Number);
  if (found != writes_.end() && found->Number == number) writes_.erase(found);
}

std::uint64_t BusJournal::BeginGesture(std::string control) {
  control_ = std::move(control);
  gestureOpen_ = true;
  ofGesture_ = {};
  return ++gestures_;
}

void BusJournal::EndGesture(std::uint64_t number) {
  if (number == gestures_) gestureOpen_ = false;
}

std::uint64_t BusJournal::ActionNumber(const std::string& origin, ActionScope::Run run) {
  if (run == ActionScope::Run::Continued) {
    if (const auto newest = newestActions_.find(origin); newest != newestActions_.end()) return newest->second;
  }
  // One press can run two handlers: leaving a box applies the typed text, then the button's own handler runs.
  if (gestureOpen_ && ofGesture_.Action != 0 && ofGesture_.Origin == origin) return ofGesture_.Action;
  newestActions_[origin] = ++actions_;
  if (gestureOpen_) ofGesture_ = {origin, actions_};
  return actions_;
}

BusJournal::ActionScope::ActionScope(BusJournal& journal, const std::string& origin, Run run)
    : journal_(journal), former_(journal.running_) {
  if (!former_) {
    const std::string& name = origin.empty() ? journal.control_ : origin;
    journal.running_ = Actor{name, journal.ActionNumber(name, run)};
  } else if (former_->Action != 0 && !origin.empty()) {
    journal.running_->Origin = origin;
  }
}

BusJournal::ActionScope::~ActionScope() {
  journal_.running_ = std::move(former_);
}

BusJournal::OriginScope::OriginScope(BusJournal& journal, std::string name)
    : journal_(journal), former_(std::exchange(journal.running_, Actor{std::move(name), 0})) {}

BusJournal::OriginScope::~OriginScope() {
  journal_.running_ = std::move(former_);
}

}  // namespace krx
