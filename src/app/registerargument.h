// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

#include "registers/registermap.h"

namespace krx {

/// The register given by an argument: an address (0x5C, 5Ch), a panel name or a save label, ignoring case. Throws
/// UsageError for anything else; a number without a base mark is rejected as ambiguous.
const RegisterEntry& RegisterFromArgument(const std::string& text);

/// The byte given by an argument: 0x28, 28h, or one decimal digit. Throws UsageError for anything else.
std::uint8_t ByteFromArgument(const std::string& text);

}  // namespace krx
