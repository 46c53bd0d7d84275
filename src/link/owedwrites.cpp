// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/owedwrites.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>
#include <utility>

#include "link/failuretext.h"
#include "link/registeraccess.h"

namespace krx {
namespace {

constexpr int tries = 3;
constexpr double pauseSeconds = 0.05;
// On a hung bus a transfer takes up to a second to fail; none begins after this time, so all ends within four seconds.
constexpr double lastTrySeconds = 3;

std::string ShouldHold(std::uint8_t reg, std::uint8_t byte) {
  return fmt::format("{:02X}h should hold {:02X}h", reg, byte);
}

}  // namespace

OwedWrites::OwedWrites(Link& link)
    : link_(link),
      subscription_(
          link.Seen.Subscribe([this](std::uint8_t reg, std::optional<std::uint8_t> byte) { Passed(reg, byte); })) {}

OwedWrites::Ticket OwedWrites::Enter(std::string what, std::function<void()> putBack) {
  Entry entry;
  entry.Number = next_++;
  entry.What = std::move(what);
  entry.PutBack = std::move(putBack);
  entries_.push_back(std::move(entry));
  return entries_.back().Number;
}

OwedWrites::Ticket OwedWrites::EnterRegister(std::uint8_t reg, std::uint8_t byte, std::uint8_t mask) {
  if (Entry* const entry = FindRegister(reg)) {
    entry->Overdue = false;
    return entry->Number;
  }
  const Ticket ticket = Enter({}, {});
  entries_.back().Of = Register{reg, byte, mask, {}};
  return ticket;
}

OwedWrites::Entry* OwedWrites::FindRegister(std::uint8_t reg) {
  const auto found =
      std::ranges::find_if(entries_, [&](const Entry& entry) { return entry.Of && entry.Of->Address == reg; });
  return found == entries_.end() ? nullptr : &*found;
}

std::optional<std::uint8_t> OwedWrites::OverdueByte(std::uint8_t reg) const {
  for (const Entry& entry : entries_) {
    if (entry.Overdue && entry.Of && entry.Of->Address == reg) return entry.Of->Byte;
  }
  return std::nullopt;
}

OwedWrites::Entry* OwedWrites::Find(Ticket ticket) {
  const auto found = std::ranges::find(entries_, ticket, &Entry::Number);
  return found == entries_.end() ? nullptr : &*found;
}

void OwedWrites::Change(Ticket ticket, std::uint8_t byte) {
  Register& changed = *Find(ticket)->Of;
  changed.Tried.set(byte & changed.Mask);
  WriteByte(link_, changed.Address, byte);
}

void OwedWrites::Settle(Ticket ticket) {
  std::erase_if(entries_, [&](const Entry& entry) { return entry.Number == ticket; });
}

std::vector<OwedWrites::Ticket> OwedWrites::OverdueTickets() const {
  std::vector<Ticket> tickets;
  for (const Entry& entry : entries_) {
    if (entry.Overdue) tickets.push_back(entry.Number);
  }
  return tickets;
}

bool OwedWrites::PutBack(std::vector<Ticket> tickets) {
  const bool ending = Ending();
  const bool once = ending && link_.LastTransferFailed();
  bool failed = false;
  for (int round = 0; round < tries && !tickets.empty() && !OutOfTime(); ++round) {
    // A restore interrupted by the end request is repeated at the end itself.
    if (round > 0 && (once || Ending() != ending)) break;
    if (round > 0) link_.DelayHoldingInput(pauseSeconds);
    std::vector<Ticket> left;
    for (const Ticket ticket : tickets) {
      if (!Try(ticket)) left.push_back(ticket);
    }
    failed = failed || !left.empty();
    tickets = std::move(left);
  }
  bool overdue = false;
  for (const Ticket ticket : tickets) {
    if (Entry* const entry = Find(ticket)) overdue = entry->Overdue = true;
  }
  if (overdue && BecameOverdue) BecameOverdue();
  if (!overdue && failed && MadeGood) MadeGood(lastFailure_);
  return !overdue;
}

bool OwedWrites::Try(Ticket ticket) {
  const Entry* const found = Find(ticket);
  if (found == nullptr) return true;
  if (OutOfTime()) return false;
  // A copy: PutBack may remove its own entry.
  const Entry entry = *found;
  trying_ = true;
  bool done = false;
  try {
    if (entry.Of) {
      WriteByte(link_, entry.Of->Address, entry.Of->Byte);
    } else {
      entry.PutBack();
    }
    done = true;
    Settle(ticket);
  } catch (const CommsError& error) {
    lastFailure_ = error;
    successesBefore_ = link_.SuccessCount();
  }
  trying_ = false;
  return done;
}

void OwedWrites::TakeTurn() {
  if (link_.SuccessCount() == successesBefore_) return;
  bool failed = false;
  CommsError first{0, ""};
  for (const Ticket ticket : OverdueTickets()) {
    if (Try(ticket)) continue;
    if (!std::exchange(failed, true)) first = lastFailure_;
  }
  if (failed) throw first;
}

void OwedWrites::Passed(std::uint8_t reg, std::optional<std::uint8_t> byte) {
  if (trying_ || !byte || !OverdueByte(reg)) return;
  Entry& entry = *FindRegister(reg);
  Register& owed = *entry.Of;
  if (*byte == owed.Byte || !owed.Tried.test(*byte & owed.Mask)) {
    // The register holds a byte that the caller never wrote: it was changed by the user, or a write reported as failed
    // did reach the chip.
    setAnew_ = setAnew_ || *byte != owed.Byte;
    Settle(entry.Number);
  } else {
    owed.Byte = static_cast<std::uint8_t>((*byte & ~owed.Mask) | (owed.Byte & owed.Mask));
  }
}

void OwedWrites::BeginEnding() {
  if (!endingBegan_) endingBegan_ = link_.ElapsedSeconds();
}

bool OwedWrites::Ending() {
  if (link_.EndAsked && link_.EndAsked()) BeginEnding();
  return endingBegan_.has_value();
}

bool OwedWrites::OutOfTime() {
  return endingBegan_ && link_.ElapsedSeconds() - *endingBegan_ > lastTrySeconds;
}

void OwedWrites::PutBackAtEnd(std::ostream& err) noexcept {
  try {
    BeginEnding();
    MadeGood = nullptr;  // the window that would show it may be gone
    std::vector<Ticket> all;
    for (const Entry& entry : entries_) all.push_back(entry.Number);
    if (PutBack(all)) return;
    for (const Entry& entry : entries_) {
      err << "Not restored: " << (entry.Of ? ShouldHold(entry.Of->Address, entry.Of->Byte) : entry.What);
      if (lastFailure_.Number() != 0) err << " (" << lastFailure_.BoxText() << ')';
      err << '\n';
    }
  } catch (const std::exception& error) {
    err << "Not everything was restored: " << FailureText(error) << '\n';
  }
}

}  // namespace krx
