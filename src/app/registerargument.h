// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

#include "registers/registermap.h"

namespace krx {

/// The register that a word of the command line names: an address (0x5C, 5Ch), a panel name or a save label, whatever
/// the case. Throws UsageError for everything else; a bare number is refused, since it could be meant either way.
const RegisterEntry& RegisterFromArgument(const std::string& text);

/// The byte that a word names: 0x28, 28h, or one decimal digit. Throws UsageError for everything else.
std::uint8_t ByteFromArgument(const std::string& text);

}  // namespace krx
