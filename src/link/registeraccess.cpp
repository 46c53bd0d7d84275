// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/registeraccess.h"

#include "link/commserror.h"

namespace krx {

std::uint8_t ReadByte(Link& link, std::uint8_t reg) {
  link.AddressPointer = reg;
  link.ReadRegister();
  return static_cast<std::uint8_t>(link.RegisterData);
}

void WriteByte(Link& link, std::uint8_t reg, int value) {
  if (value < 0 || value > 255) throw Overflow();
  link.AddressPointer = reg;
  link.WriteData = static_cast<std::int16_t>(value);
  link.WriteRegister();
}

void UpdateBits(Link& link, std::uint8_t reg, std::uint8_t mask, std::uint8_t bits) {
  const int kept = ReadByte(link, reg) & ~mask;
  WriteByte(link, reg, (kept | (bits & mask)) & 0xFF);
}

}  // namespace krx
