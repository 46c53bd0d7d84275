// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "journal/undo.h"

namespace krx {

struct Workbench;

/// After an undo: updates the console's state derived from the restored registers. Programmed pulses, behaviours and
/// readings are taken from those bytes; pin functions are refreshed, including board switches, as after a click on a
/// pin setting; a tach input whose source changed is routed as in the fan dialog. Manual flags and power mode stay as
/// the chip was found. Throws what the link throws.
void RenewAfterUndo(Workbench& bench, const std::vector<UndoStep>& steps);

}  // namespace krx
