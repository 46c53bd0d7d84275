// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "link/clock.h"

namespace krx {

enum class BusOperation { ReadRegister, WriteRegister, SendByte, ReceiveByte, ControlByte, StatusByte };

/// One transfer as the bus-access library saw it.
struct JournalEntry {
  std::uint64_t Number = 0;  ///< counts from 1 for the whole run
  double Seconds = 0;        ///< since the journal began
  BusOperation Operation = BusOperation::ReadRegister;
  bool PrinterPort = false;  ///< the board's bus; otherwise the PC's SMBus
  std::uint8_t Address = 0;  ///< bus address in the medium's form; 0 for control and status byte
  std::uint8_t Register = 0;
  std::optional<std::uint8_t> OldValue = {};  ///< what was seen there before a write
  std::uint8_t Value = 0;                     ///< read or written
  std::string Origin = {};                    ///< the handler that asked for the transfer
  std::string Failure = {};                   ///< empty: succeeded
  bool Skipped = false;                       ///< a write that read-only operation held back
};

/// A register write that reached the chip and has not been taken back.
struct UndoRecord {
  std::uint64_t Number = 0;  ///< of its entry
  std::uint8_t Address = 0;  ///< bus address of the chip
  std::uint8_t Register = 0;
  std::optional<std::uint8_t> OldValue = {};  ///< nothing when it was never seen
};

/// The last transfers of the run, in a ring. Adds no traffic; what it knows of a register is what it saw go by.
class BusJournal {
 public:
  static constexpr std::size_t capacity = 10'000;

  explicit BusJournal(Clock& clock);

  /// Completes number, time, old value and origin, and keeps the entry.
  void Add(JournalEntry entry);
  void Clear() { entries_.clear(); }
  const std::deque<JournalEntry>& Entries() const { return entries_; }
  /// Of the whole run, dropped entries included.
  std::uint64_t Count() const { return count_; }
  std::uint64_t SkippedCount() const { return skipped_; }

  void SetMark();
  /// The number of the entry that the mark stands behind.
  std::uint64_t Mark() const { return mark_; }

  /// The chip's register writes that can be undone, oldest first: the last `capacity` ones, which outlive their
  /// entries, since the reading cycle fills the ring within seconds.
  std::vector<UndoRecord> UndoableWrites(std::uint8_t chipAddress) const;
  /// How many writes since the mark were so many ago that they cannot be undone any more.
  std::size_t ForgottenSinceMark() const { return forgottenSinceMark_; }
  /// Takes a write out of those that can be undone.
  void SetUndone(std::uint64_t number);

  /// Names the handler whose transfers follow, and the former one again at its end.
  class OriginScope {
   public:
    OriginScope(BusJournal& journal, std::string name);
    ~OriginScope();
    OriginScope(const OriginScope&) = delete;
    OriginScope& operator=(const OriginScope&) = delete;

   private:
    BusJournal& journal_;
    std::string former_;
  };

  /// Names the handler whose transfers follow, until the next one is named.
  void SetOrigin(std::string name) { origin_ = std::move(name); }

  /// Called after each Add.
  std::function<void()> Added;

 private:
  /// Which bus, which kind of byte, and the addresses of one.
  using Place = std::tuple<bool, bool, std::uint8_t, std::uint8_t>;

  double Now();
  void LearnValues(JournalEntry& entry);
  void Remember(const JournalEntry& write);

  Clock& clock_;
  double start_;
  std::deque<JournalEntry> entries_;
  std::map<Place, std::uint8_t> seen_;
  std::deque<UndoRecord> writes_;
  std::size_t forgottenSinceMark_ = 0;
  std::uint64_t count_ = 0;
  std::uint64_t skipped_ = 0;
  std::uint64_t mark_ = 0;
  std::string origin_;
};

/// The origin under which undo writes are journaled; they are not undone themselves.
inline constexpr const char* undoOrigin = "Undo";

}  // namespace krx
