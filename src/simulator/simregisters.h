// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "registers/chip.h"
#include "registers/conversions.h"

namespace krx {

/// The chip's register bytes.
struct SimRegisters {
  std::array<std::uint8_t, 256> Bytes{};

  std::uint8_t& operator[](std::size_t reg) { return Bytes[reg]; }
  std::uint8_t operator[](std::size_t reg) const { return Bytes[reg]; }
  int Signed(std::size_t reg) const { return SignedByte(Bytes[reg]); }
  bool Has(std::size_t reg, std::uint8_t mask) const { return (Bytes[reg] & mask) != 0; }
  int HysteresisOf(const chip::Zone& zone) const;  ///< °C
  bool Monitoring() const { return Has(chip::Configuration1, chip::Start); }
};

inline int SimRegisters::HysteresisOf(const chip::Zone& zone) const {
  return (Bytes[zone.Hysteresis] >> zone.HysteresisShift) & chip::HysteresisMask;
}

/// The zones that control an output, by behaviour code: bit 0 Local, bit 1 Remote1, bit 2 Remote2. No zone: the
/// behaviour is not automatic.
inline constexpr std::array<std::uint8_t, 8> behaviourZones{0b010, 0b001, 0b100, 0, 0, 0b101, 0b111, 0};

/// The bytes after power-on. Measured values read "not measured" (temperatures 0x80, counts 0xFFFF).
SimRegisters ResetRegisters();

/// The writable bits of a register: 0 for read-only and unlisted registers.
std::uint8_t WritableBits(std::uint8_t reg);

}  // namespace krx
