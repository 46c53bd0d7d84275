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

/// Pending restores: what this run has changed temporarily and must restore, such as heaters that it switched on or an
/// output driven by a detection. An entry is made before the first write and removed when the state has been restored.
/// An entry whose restore failed is overdue: it stays on the list for a later turn and for the end of the program.
class OwedWrites {
 public:
  using Ticket = std::uint64_t;  ///< identifies an entry; never 0

  explicit OwedWrites(Link& link);
  OwedWrites(const OwedWrites&) = delete;
  OwedWrites& operator=(const OwedWrites&) = delete;

  /// what: the state until then, "heater 1 is still on". putBack throws what the link throws; whatever it refers to
  /// must outlive the entry.
  Ticket Enter(std::string what, std::function<void()> putBack);

  /// A register to be restored to `byte`; the caller changes only the bits of `mask`. An overdue register keeps its
  /// original byte: its present contents are only what the previous change left behind.
  Ticket EnterRegister(std::uint8_t reg, std::uint8_t byte, std::uint8_t mask);
  /// The caller's own write to an entered register; throws what the link throws.
  void Change(Ticket ticket, std::uint8_t byte);

  /// Removes an entry; does nothing when it is not on the list.
  void Settle(Ticket ticket);

  /// Restores these entries in this order: up to three tries 50 ms apart, with no other handler running in between.
  /// False when an entry is overdue afterwards.
  bool PutBack(std::vector<Ticket> tickets);
  bool PutBackOverdue() { return PutBack(OverdueTickets()); }

  bool AnyOverdue() const { return !OverdueTickets().empty(); }
  /// The byte that an overdue register should hold.
  std::optional<std::uint8_t> OverdueByte(std::uint8_t reg) const;
  /// The error of the last failed try.
  const CommsError& LastFailure() const { return lastFailure_; }
  /// Called when an entry has become overdue.
  std::function<void()> BecameOverdue;
  /// Called with the failure when PutBack has succeeded after a failed try, which is not reported otherwise.
  std::function<void(const CommsError&)> MadeGood;

  /// One try to restore what is overdue, in a turn of its own; does nothing unless a transfer has succeeded since the
  /// last try. Throws the first failure.
  void TakeTurn();

  /// Whether an overdue register has been set to another value since the last call, so that its restore was dropped.
  bool TakeSetAnew() { return std::exchange(setAnew_, false); }

  /// The program has been asked to end. From now on there is only one try per byte if the last transfer failed, and no
  /// try begins so late that a hung bus would delay the end by more than 4 s.
  void BeginEnding();
  /// The end of the program: restores everything on the list and prints one line per entry that could not be restored.
  void PutBackAtEnd(std::ostream& err) noexcept;

 private:
  struct Register {
    std::uint8_t Address = 0;
    std::uint8_t Byte = 0;
    std::uint8_t Mask = 0;
    std::bitset<256> Tried;  ///< bytes written by the caller, masked
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
  std::uint64_t successesBefore_ = 0;  ///< at the last failed try
  bool trying_ = false;
  bool setAnew_ = false;
  std::optional<double> endingBegan_;
  RegisterImage::Subscription subscription_;
};

}  // namespace krx
