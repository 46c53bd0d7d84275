// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <bitset>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "link/commserror.h"
#include "link/linknewcomport06.h"

namespace krx {

/// What this run has changed for a while and must put back: heaters that it switched on, an output that a detection
/// drives. Whoever takes something enters it before the first write; it leaves the list when it has been put back. What
/// could not be put back is overdue: it stays on the list, for a later turn and for the end of the program.
class OwedWrites {
 public:
  using Ticket = std::uint64_t;  ///< of an entry; never 0

  explicit OwedWrites(Link& link);
  OwedWrites(const OwedWrites&) = delete;
  OwedWrites& operator=(const OwedWrites&) = delete;

  /// what: how things stand until then, "heater 1 is still on". putBack throws what the link throws; what it refers to
  /// outlives the entry.
  Ticket Enter(std::string what, std::function<void()> putBack);

  /// A register that is to get its byte back, of which the taker changes the bits of `mask`. One that is overdue keeps
  /// what was owed first: what it holds now is no more than what the last taker left.
  Ticket EnterRegister(std::uint8_t reg, std::uint8_t byte, std::uint8_t mask);
  /// The taker's own write to an entered register; throws what the link throws.
  void Change(Ticket ticket, std::uint8_t byte);

  /// Takes an entry off the list; nothing happens when it is not there.
  void Settle(Ticket ticket);

  /// Puts these back, in this order: up to three tries 50 ms apart, without any other handler between them. False when
  /// something is overdue now.
  bool PutBack(std::vector<Ticket> tickets);
  bool PutBackOverdue() { return PutBack(OverdueTickets()); }

  bool AnyOverdue() const { return !OverdueTickets().empty(); }
  /// The byte that is overdue to a register.
  std::optional<std::uint8_t> OverdueByte(std::uint8_t reg) const;
  /// Of the last try that failed.
  const CommsError& LastFailure() const { return lastFailure_; }
  /// Called when something has become overdue.
  std::function<void()> BecameOverdue;
  /// Called when PutBack has succeeded behind a try that failed, with that failure: nobody else hears of it.
  std::function<void(const CommsError&)> MadeGood;

  /// One try at what is overdue, in a turn of its own; nothing unless a transfer has succeeded since the last try.
  /// Throws the first failure.
  void TakeTurn();

  /// Whether something that was overdue has been set to another value since the last call, and so is owed no more.
  bool TakeSetAnew() { return std::exchange(setAnew_, false); }

  /// The program has been asked to end. From now on a byte is tried once where the last transfer failed, and no try
  /// begins so late that a hung bus would keep the program for more than 4 s.
  void BeginEnding();
  /// The end of the program: everything on the list is put back, and what could not be is said, a line each.
  void PutBackAtEnd(std::ostream& err) noexcept;

 private:
  struct Register {
    std::uint8_t Address = 0;
    std::uint8_t Byte = 0;
    std::uint8_t Mask = 0;
    std::bitset<256> Tried;  ///< what the taker wrote, of the bits of Mask
  };
  struct Entry {
    Ticket Number = 0;
    std::string What;
    std::function<void()> PutBack;
    std::optional<Register> Of;
    bool Overdue = false;
  };

  Entry* Find(Ticket ticket);
  Entry* FindRegister(std::uint8_t reg);
  std::vector<Ticket> OverdueTickets() const;
  bool Try(Ticket ticket);
  bool Ending();
  bool OutOfTime();
  void Passed(std::uint8_t reg, std::optional<std::uint8_t> byte);

  Link& link_;
  std::vector<Entry> entries_;
  Ticket next_ = 1;
  CommsError lastFailure_{0, ""};
  std::uint64_t successesBefore_ = 0;  ///< when the last try failed
  bool trying_ = false;
  bool setAnew_ = false;
  std::optional<double> endingBegan_;
  RegisterImage::Subscription subscription_;
};

}  // namespace krx
