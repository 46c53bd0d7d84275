// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "journal/busjournal.h"
#include "link/commsmodule.h"

namespace krx {

/// A CommsModule that passes every operation on to another one and enters the transfers into a journal. With
/// `readOnly` no write reaches chip or board: it is entered as skipped and succeeds. The journal outlives the module.
std::unique_ptr<CommsModule> MakeJournalModule(std::unique_ptr<CommsModule> inner, BusJournal& journal, bool readOnly);

}  // namespace krx
