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

/// A write that can be taken back: the register and the byte it held before.
struct UndoStep {
  std::uint8_t Register = 0;
  std::uint8_t Value = 0;
  std::uint64_t Number = 0;  ///< the entry that is undone
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

  void SetMark() { mark_ = count_; }
  std::uint64_t Mark() const { return mark_; }

  /// The newest register write of the chip that has not been undone; nothing when its old value was never seen.
  std::optional<UndoStep> LastWrite(std::uint8_t chipAddress) const;
  /// All undoable register writes since the mark, newest first; `lost` counts those whose old value was never seen
  /// or that the ring has dropped.
  std::vector<UndoStep> WritesSinceMark(std::uint8_t chipAddress, std::size_t& lost) const;
  /// Marks an entry as taken back, so that the next undo goes further back.
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

  /// Called after each Add.
  std::function<void()> Added;

 private:
  using Place = std::tuple<bool, std::uint8_t, std::uint8_t>;

  double Now();
  bool Undoable(const JournalEntry& entry, std::uint8_t chipAddress) const;

  Clock& clock_;
  double start_;
  std::deque<JournalEntry> entries_;
  std::map<Place, std::uint8_t> seen_;
  std::vector<std::uint64_t> undone_;
  std::uint64_t count_ = 0;
  std::uint64_t skipped_ = 0;
  std::uint64_t mark_ = 0;
  std::string origin_;
};

/// The origin under which undo writes are journaled; they are not undone themselves.
inline constexpr const char* undoOrigin = "Undo";

}  // namespace krx
