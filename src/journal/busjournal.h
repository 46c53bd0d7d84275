// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <deque>
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
  std::uint64_t Action = 0;                   ///< the user's action it belongs to; 0: the console's own doing
  std::string Failure = {};                   ///< empty: succeeded
  bool Skipped = false;                       ///< a write that read-only operation held back
};

/// True of what changes a register, a switch device or the control byte.
bool IsWrite(const JournalEntry& entry);

/// What an action did to a register and what has not been taken back: all its writes there in one.
struct UndoRecord {
  std::uint64_t Number = 0;  ///< of the first write's entry
  std::uint64_t Action = 0;
  std::string Origin = {};
  std::uint8_t Address = 0;  ///< bus address of the chip
  std::uint8_t Register = 0;
  std::optional<std::uint8_t> Before = {};  ///< nothing when it was never seen
  std::optional<std::uint8_t> After = {};   ///< nothing when the last write failed, which may have arrived
};

/// The last transfers of the run, in a ring, and the user's writes in one of their own. Adds no traffic; what it knows
/// of a register is what it saw go by.
class BusJournal {
 public:
  static constexpr std::size_t capacity = 10'000;

  /// Who asks for transfers.
  struct Actor {
    std::string Origin = {};
    std::uint64_t Action = 0;
  };

  explicit BusJournal(Clock& clock);

  /// Completes number, time, old value and origin, and keeps the entry.
  void Add(JournalEntry entry);
  const std::deque<JournalEntry>& Entries() const { return entries_; }
  /// The last `capacity` writes of the user's actions: the reading cycle fills the other ring within seconds.
  const std::deque<JournalEntry>& UserWrites() const { return userWrites_; }
  /// Of the whole run, dropped entries included.
  std::uint64_t Count() const { return count_; }
  std::uint64_t SkippedCount() const { return skipped_; }

  void SetMark();
  /// The number of the entry that the mark stands behind; nothing when none was set.
  std::optional<std::uint64_t> Mark() const { return mark_; }

  /// What the user's actions wrote to the chip and can be undone, in the order of the first writes. The writes of an
  /// action stand together unless another one came between; an action in part is never kept.
  std::vector<UndoRecord> UndoableWrites(std::uint8_t chipAddress) const;
  /// How many records since the mark were so many ago that they cannot be undone any more.
  std::size_t ForgottenSinceMark() const { return forgottenSinceMark_; }
  /// Takes a record out of those that can be undone.
  void SetUndone(std::uint64_t number);

  /// The user begins something: a press of a button or key. Until its end the handlers that it runs under one name are
  /// one action, so that a drag is. `control` names what has the input; returns the gesture's number.
  std::uint64_t BeginGesture(std::string control);
  void EndGesture(std::uint64_t number);

  /// A run of one of the user's handlers: its writes are one action, whatever the user does meanwhile. Within another
  /// one it is part of that.
  class ActionScope {
   public:
    enum class Run { New, Continued };
    /// origin: the handler's name; empty: that of the control used last. Continued: goes on with the newest action of
    /// that name, for a handler that works in steps.
    explicit ActionScope(BusJournal& journal, const std::string& origin = {}, Run run = Run::New);
    ~ActionScope();
    ActionScope(const ActionScope&) = delete;
    ActionScope& operator=(const ActionScope&) = delete;

   private:
    BusJournal& journal_;
    std::optional<Actor> former_;
  };

  /// What the console does of its own accord, by name: no action.
  class OriginScope {
   public:
    OriginScope(BusJournal& journal, std::string name);
    ~OriginScope();
    OriginScope(const OriginScope&) = delete;
    OriginScope& operator=(const OriginScope&) = delete;

   private:
    BusJournal& journal_;
    std::optional<Actor> former_;
  };

 private:
  /// Which bus, which kind of byte, and the addresses of one.
  using Place = std::tuple<bool, bool, std::uint8_t, std::uint8_t>;

  double Now();
  void LearnValues(JournalEntry& entry);
  void Remember(const JournalEntry& write);
  void DropOldestAction();
  std::uint64_t ActionNumber(const std::string& origin, ActionScope::Run run);

  Clock& clock_;
  double start_;
  std::deque<JournalEntry> entries_;
  std::deque<JournalEntry> userWrites_;
  std::map<Place, std::uint8_t> seen_;
  std::deque<UndoRecord> writes_;
  std::size_t forgottenSinceMark_ = 0;
  std::uint64_t count_ = 0;
  std::uint64_t skipped_ = 0;
  std::optional<std::uint64_t> mark_;

  std::optional<Actor> running_;  ///< whose handler runs
  std::string control_;           ///< what had the user's input last
  std::uint64_t gestures_ = 0;
  bool gestureOpen_ = false;
  Actor ofGesture_;  ///< the action that the gesture's handlers go on with
  std::uint64_t actions_ = 0;
  std::map<std::string, std::uint64_t> newestActions_;  ///< by origin
};

/// The origin under which undo writes are journaled; they are not undone themselves.
inline constexpr const char* undoOrigin = "Undo";

}  // namespace krx
