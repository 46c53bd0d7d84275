// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "journal/busjournal.h"
#include "journal/undo.h"

namespace krx {

/// What the journal knows of one transfer of a register, or of several that told the same.
struct HistoryRow {
  std::uint64_t Number = 0;  ///< of the newest transfer
  double Seconds = 0;        ///< its time in the journal
  std::string Origin = {};
  bool Write = false;
  std::optional<std::uint8_t> Byte = {};  ///< nothing: it failed
  std::uint8_t Changed = 0;               ///< bits that differ from what was seen before
  std::uint64_t Action = 0;               ///< 0: the console's own doing
  int Count = 1;                          ///< readings one after the other that brought the same byte
  bool Skipped = false;                   ///< a write that read-only operation held back
  std::string Note = {};                  ///< why no byte arrived; empty: it did

  /// "hex box", "read", "Continuous reading", "read, Start-up"; what belongs to this page goes without its name.
  std::string OriginText() const;
  /// "bits 7, 5", "bit 4"; empty when none.
  std::string ChangedText() const;
};

/// Whether the action that wrote a row can be taken back, and what that does or why not.
struct UndoOffer {
  bool Allowed = false;
  std::string Words;
};

/// What passed of one register, newest first. An action's readings before and after its write are part of the write.
class RegisterHistory {
 public:
  static constexpr std::size_t mostRows = 100;

  RegisterHistory(const Link& link, const BusJournal& journal) : link_(link), journal_(journal) {}

  enum class News { None, SameRows, OtherRows };
  /// Takes over what the journal has got of the register since the last call, all that it has of another one. SameRows:
  /// only the newest row has become another.
  News Follow(std::uint8_t reg);
  const std::deque<HistoryRow>& Rows() const { return rows_; }

  /// For a row, or for the newest write that can be taken back. Undo goes by whole actions, newest first.
  UndoOffer OfferUndo(std::optional<std::size_t> row) const;

 private:
  bool IsOfRegister(const JournalEntry& entry) const;
  void LoadAll();
  News Add(const JournalEntry& entry);

  const Link& link_;
  const BusJournal& journal_;
  std::uint8_t register_ = 0;
  std::uint64_t followed_ = 0;  ///< number of the last entry that was looked at
  std::optional<std::uint8_t> last_;
  std::deque<HistoryRow> rows_;
};

}  // namespace krx
