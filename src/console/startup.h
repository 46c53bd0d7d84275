// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "link/commserror.h"

namespace krx {

struct Workbench;

/// The failures of a sequence that continues after failed steps; empty if there were none. A line is "Programmed
/// pulses: Error: 7, text".
using StepProblems = std::vector<std::string>;

/// As shown in a box: one line per problem.
std::string ProblemText(const StepProblems& problems);

/// The start-up steps that have not succeeded yet.
struct StartUpState {
  std::set<std::string> Owed;  ///< by name
  /// Called for every failed try, also if a later one succeeded.
  std::function<void(const std::string& step, const CommsError& error)> Faulted;
};

/// The main window's start-up, from the chosen chip to the shown window: heaters off, log column titles, programmed
/// pulses, power mode, manual flags; then the VID-drive probe, and the board's switches are synchronised with the chip.
/// A failed step is retried once; if it fails again, it is reported and stays pending.
StepProblems StartUp(Workbench& bench);

/// Retries the pending steps, and with them the pin settings that follow a probe or a routing. Call it before the
/// reading cycle is started, never inside a tick.
void RetryOwed(Workbench& bench);

/// Repeats the reading steps of the start-up, for a chip that was changed by another program, and the pending steps.
StepProblems ReReadChip(Workbench& bench);

}  // namespace krx
