// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "journal/busjournal.h"
#include "link/commsmodule.h"

namespace krx {

/// A CommsModule that forwards every operation to another one and records the transfers in a journal. With `readOnly`
/// writes are suppressed: they are recorded as skipped and succeed. The journal must outlive the module.
std::unique_ptr<CommsModule> MakeJournalModule(std::unique_ptr<CommsModule> inner, BusJournal& journal, bool readOnly);

}  // namespace krx
