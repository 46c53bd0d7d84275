// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "link/linknewcomport06.h"

namespace krx {

// The link's calling convention in one place: set the pointer, call, take the result. All throw what the link throws.

/// Sets AddressPointer, reads, returns RegisterData.
std::uint8_t ReadByte(Link& link, std::uint8_t reg);

/// Sets AddressPointer and WriteData, writes. A value outside 0..255 throws Overflow before any wait or traffic.
void WriteByte(Link& link, std::uint8_t reg, int value);

/// Read-modify-write: sets the bits of `mask` to those of `bits`, the others are preserved.
void UpdateBits(Link& link, std::uint8_t reg, std::uint8_t mask, std::uint8_t bits);

}  // namespace krx
