// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "link/commserror.h"

namespace krx {

struct Workbench;

/// What went wrong in a sequence whose steps go on past a failing one; empty when all went well. A line is
/// "Programmed pulses: Error: 7, text".
using StepProblems = std::vector<std::string>;

/// As a box shows them: a line each.
std::string ProblemText(const StepProblems& problems);

/// Which steps of the start-up have not succeeded yet.
struct StartUpState {
  std::set<std::string> Owed;  ///< by name
  /// Told of every try that failed, of one that succeeded afterwards too.
  std::function<void(const std::string& step, const CommsError& error)> Faulted;
};

/// The main window's start-up, from the chosen chip to the shown window: heaters off, log column titles, programmed
/// pulses, power mode, manual flags; then the VID-drive probe and the board's switches brought in line with the chip.
/// A failing step is tried once more at once; one that fails again is a problem, and owed from then on.
StepProblems StartUp(Workbench& bench);

/// Tries what is owed again, and with it the pin settings that follow a probe or a routing. Run it before the reading
/// cycle is started, never inside a tick.
void RetryOwed(Workbench& bench);

/// Repeats the reading steps of the start-up, for a chip that was changed behind the console's back, and what is owed.
StepProblems ReReadChip(Workbench& bench);

}  // namespace krx
