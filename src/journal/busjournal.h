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

/// One transfer as seen by the bus-access library.
struct JournalEntry {
  std::uint64_t Number = 0;  ///< counts from 1 over the whole run
  double Seconds = 0;        ///< since the start of the journal
  BusOperation Operation = BusOperation::ReadRegister;
  bool PrinterPort = false;  ///< the board's bus; otherwise the PC's SMBus
  std::uint8_t Address = 0;  ///< bus address in the form of the medium; 0 for control and status byte
  std::uint8_t Register = 0;
  std::optional<std::uint8_t> OldValue = {};  ///< last known value before a write
  std::uint8_t Value = 0;                     ///< read or written
  std::string Origin = {};                    ///< the handler that requested the transfer
  std::uint64_t Action = 0;                   ///< the user action it belongs to; 0: made by the console itself
  std::string Failure = {};                   ///< empty: succeeded
  bool Skipped = false;                       ///< a write suppressed by read-only operation
};

/// True for writes to a register, a switch device or the control byte.
bool IsWrite(const JournalEntry& entry);

/// The combined writes of an action to one register, as long as they have not been undone.
struct UndoRecord {
  std::uint64_t Number = 0;  ///< of the first write's entry
  std::uint64_t Action = 0;
  std::string Origin = {};
  std::uint8_t Address = 0;  ///< bus address of the chip
  std::uint8_t Register = 0;
  std::optional<std::uint8_t> Before = {};  ///< empty if it was never seen
  std::optional<std::uint8_t> After = {};   ///< empty if the last write failed, since it may have reached the chip
};

/// Ring buffers of the last transfers and of the user's writes. Adds no traffic; its knowledge of a register comes from
/// the transfers it has seen.
class BusJournal {
 public:
  static constexpr std::size_t capacity = 10'000;

  /// The originator of transfers.
  struct Actor {
    std::string Origin = {};
    std::uint64_t Action = 0;
  };

  explicit BusJournal(Clock& clock);

  /// Seconds since the journal began, as its entries carry them.
  double Seconds() { return Now() - start_; }

  /// Fills in number, time, old value and origin, and stores the entry.
  void Add(JournalEntry entry);
  const std::deque<JournalEntry>& Entries() const { return entries_; }
  /// The last `capacity` writes of user actions, kept separately since the reading cycle fills the other buffer within
  /// seconds.
  const std::deque<JournalEntry>& UserWrites() const { return userWrites_; }
  /// Number of transfers of the whole run, including dropped entries.
  std::uint64_t Count() const { return count_; }
  std::uint64_t SkippedCount() const { return skipped_; }

  void SetMark();
  /// The number of the last entry before the mark; empty if no mark is set.
  std::optional<std::uint64_t> Mark() const { return mark_; }

  /// The user's writes to the chip that can be undone, in the order of the first writes. The writes of an action are
  /// adjacent unless another one came in between; an action is never kept in part.
  std::vector<UndoRecord> UndoableWrites(std::uint8_t chipAddress) const;
  /// Number of records since the mark that were dropped and can no longer be undone.
  std::size_t ForgottenSinceMark() const { return forgottenSinceMark_; }
  /// Removes a record from those that can be undone.
  void SetUndone(std::uint64_t number);

  /// A button or key was pressed. Until the end of the gesture all handlers run under the same name are one action, for
  /// example a drag. `control` names the control with the input; returns the gesture's number.
  std::uint64_t BeginGesture(std::string control);
  void EndGesture(std::uint64_t number);

  /// A run of a user handler: its writes are one action, whatever the user does meanwhile. Nested in another one it is
  /// part of that action.
  class ActionScope {
   public:
    enum class Run { New, Continued };
    /// origin: the handler's name; empty: the name of the last used control. Continued: continues the newest action of
    /// that name, for a handler that works in steps.
    explicit ActionScope(BusJournal& journal, const std::string& origin = {}, Run run = Run::New);
    ~ActionScope();
    ActionScope(const ActionScope&) = delete;
    ActionScope& operator=(const ActionScope&) = delete;

   private:
    BusJournal& journal_;
    std::optional<Actor> former_;
  };

  /// Names transfers made by the console itself: not a user action.
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
  /// Bus, kind of byte, and its addresses.
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

  std::optional<Actor> running_;  ///< of the running handler
  std::string control_;           ///< the control that last had the user's input
  std::uint64_t gestures_ = 0;
  bool gestureOpen_ = false;
  Actor ofGesture_;  ///< the action continued by the gesture's handlers
  std::uint64_t actions_ = 0;
  std::map<std::string, std::uint64_t> newestActions_;  ///< by origin
};

/// The origin of undo writes; they are recorded, but cannot be undone themselves.
inline constexpr const char* undoOrigin = "Undo";

}  // namespace krx
