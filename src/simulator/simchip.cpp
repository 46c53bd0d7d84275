// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simchip.h"

namespace krx {

SimChip::SimChip() = default;

std::uint8_t SimChip::Read(std::uint8_t reg) {
  return Peek(reg);
}

void SimChip::Write(std::uint8_t reg, std::uint8_t value) {
  const int mask = WritableBits(reg);
  registers_[reg] = static_cast<std::uint8_t>((registers_[reg] & ~mask) | (value & mask));
}

std::uint8_t SimChip::Peek(std::uint8_t reg) const {
  if (reg == SimRegisters::Vid) return static_cast<std::uint8_t>((registers_[reg] & 0xC0) | pins_.Vid);
  return registers_[reg];
}

void SimChip::Step(const PlantState&, std::int64_t) {}

std::array<double, 3> SimChip::FanDuty() const {
  return {1, 1, 1};
}

}  // namespace krx
