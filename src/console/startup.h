// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace krx {

struct Workbench;

/// What went wrong in a sequence whose steps go on past a failing one; empty when all went well. A line is
/// "Programmed pulses: Error: 7, text".
using StepProblems = std::vector<std::string>;

/// The main window's start-up, from the chosen chip to the shown window: heaters off, log column titles, programmed
/// pulses, power mode, manual flags; then the VID-drive probe and the board's switches brought in line with the chip.
StepProblems StartUp(Workbench& bench);

/// Repeats the reading steps of the start-up, for a chip that was changed behind the console's back.
StepProblems ReReadChip(Workbench& bench);

}  // namespace krx
