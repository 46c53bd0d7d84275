// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace krx {

/// What a register is for, in one or two sentences. Empty for an address that the chip does not have.
std::string RegisterMeaning(int address);

}  // namespace krx
