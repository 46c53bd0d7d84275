// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/registerchanges.h"

#include <utility>

#include "registers/registermap.h"

namespace krx {

RegisterChanges::RegisterChanges(Link& link)
    : subscription_(
          link.Seen.Subscribe([this](std::uint8_t reg, std::optional<std::uint8_t> byte) { Saw(reg, byte); })) {
  for (const RegisterEntry& entry : Registers()) Saw(entry.Address, link.Seen.Byte(entry.Address));
}

std::optional<std::uint8_t> RegisterChanges::Was(std::uint8_t reg) const {
  return last_.at(reg) && last_.at(reg) != first_.at(reg) ? first_.at(reg) : std::nullopt;
}

void RegisterChanges::Saw(std::uint8_t reg, std::optional<std::uint8_t> byte) {
  if (!first_.at(reg)) first_.at(reg) = byte;
  if (std::exchange(last_.at(reg), byte) != byte && Changed) Changed(reg);
}

}  // namespace krx
