// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "journal/busjournal.h"
#include "link/linknewcomport06.h"

namespace krx {

/// A register and the byte that it got back.
struct UndoStep {
  std::uint8_t Register = 0;
  std::uint8_t Value = 0;
  std::optional<std::uint8_t> Replaced = {};  ///< what stood there before the undo, where that was seen
};

/// A register that could not be put back.
struct UndoProblem {
  std::uint8_t Register = 0;
  std::string Reason;
};

struct UndoResult {
  std::string Origin;             ///< of the action that was taken back; empty: none, or all since the mark
  std::vector<UndoStep> Written;  ///< in this order
  std::vector<UndoProblem> Problems;
  std::size_t Forgotten = 0;  ///< writes since the mark that the journal no longer knows
};

// Both write through the link as anybody else does, under the origin "Undo"; those writes are journaled, and not undone
// themselves. Every register gets back with one write what it held before, in the reverse order of their first writes;
// one that holds it anyway is left alone. A failing transfer becomes a problem of its register, which the next call
// tries again; a register whose former byte was never seen is a problem once. The others get their turn.

/// Takes back the newest action that left anything changed; nothing at all when there is none.
UndoResult UndoLastAction(Link& link, BusJournal& journal);

/// Takes back everything since the mark; nothing when none was set.
UndoResult UndoToMark(Link& link, BusJournal& journal);

}  // namespace krx
