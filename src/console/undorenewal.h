// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "journal/undo.h"

namespace krx {

struct Workbench;

/// After an undo: renews what the console keeps of the registers that got their bytes back. Programmed pulses,
/// behaviours and readings come from those bytes; a pin function is refreshed, board switches included, as after a
/// click on a pin setting; a tach input whose source changed is routed as the fan dialog does it. Manual flags and
/// power mode stay as the chip was found. Throws what the link throws.
void RenewAfterUndo(Workbench& bench, const std::vector<UndoStep>& steps);

}  // namespace krx
