// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

#include "registers/registermap.h"

namespace krx {

/// Whether a register is found by what was typed: part of its name, or the first digits of its address, as "5", "5C"
/// and "0x5C"; "5Ch" is an address in whole. Case and the blanks around do not count; an empty text finds all.
bool IsFound(const RegisterEntry& entry, std::string_view typed);

}  // namespace krx
