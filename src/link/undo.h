// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "link/busjournal.h"
#include "link/linknewcomport06.h"

namespace krx {

/// A register and the byte that it got back.
struct UndoStep {
  std::uint8_t Register = 0;
  std::uint8_t Value = 0;
};

/// A register that could not be put back.
struct UndoProblem {
  std::uint8_t Register = 0;
  std::string Reason;
};

struct UndoResult {
  std::vector<UndoStep> Written;  ///< in this order
  std::vector<UndoProblem> Problems;
  std::size_t Forgotten = 0;  ///< writes since the mark that the journal no longer knows
};

// Both write through the link as anybody else does, under the origin "Undo"; those writes are journaled, and not undone
// themselves. A failing transfer becomes a problem of its register; the others get their turn.

/// Gives the register of the newest write the byte that it held before; nothing at all when there is no such write.
/// A write whose old byte was never seen is a problem once: the next call goes further back.
UndoResult UndoLastWrite(Link& link, BusJournal& journal);

/// Gives every register written since the mark the byte that it held then, each with one write, in the reverse order
/// of their first writes.
UndoResult UndoToMark(Link& link, BusJournal& journal);

}  // namespace krx
