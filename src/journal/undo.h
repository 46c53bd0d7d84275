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

/// A register and the byte restored to it.
struct UndoStep {
  std::uint8_t Register = 0;
  std::uint8_t Value = 0;
  std::optional<std::uint8_t> Replaced = {};  ///< value before the undo, if known
};

/// A register that could not be restored.
struct UndoProblem {
  std::uint8_t Register = 0;
  std::string Reason;
};

struct UndoResult {
  std::string Origin;             ///< of the undone action; empty: none, or all since the mark
  std::vector<UndoStep> Written;  ///< in order
  std::vector<UndoProblem> Problems;
  std::size_t Forgotten = 0;  ///< writes since the mark that are no longer in the journal
};

// Both write through the link like any other code, with the origin "Undo"; these writes are recorded, but cannot be
// undone themselves. Each register is restored with one write, in the reverse order of their first writes; one that
// already holds its old byte is skipped. A failed transfer is reported as a problem of its register, and the next call
// tries it again; a register whose old byte was never seen is reported once. The other registers are still restored.

/// An action that can be undone.
struct UndoTarget {
  std::uint64_t Action = 0;
  std::string Origin;
  std::size_t Registers = 0;  ///< number of registers that it changed
};

/// What UndoLastAction would undo next; nothing if there is none.
std::optional<UndoTarget> NextUndo(const Link& link, const BusJournal& journal);

/// Undoes the newest action that changed anything; does nothing if there is none.
UndoResult UndoLastAction(Link& link, BusJournal& journal);

/// Undoes everything since the mark; does nothing if no mark is set.
UndoResult UndoToMark(Link& link, BusJournal& journal);

}  // namespace krx
