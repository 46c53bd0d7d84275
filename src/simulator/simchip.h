// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>

#include "simulator/simboard.h"
#include "simulator/simplant.h"
#include "simulator/simregisters.h"

namespace krx {

/// One chip: its registers as the bus sees them, and the measuring and driving behind them.
class SimChip {
 public:
  SimChip();

  /// A read on the bus. Unlisted registers read 0; reading 0x79 clears it.
  std::uint8_t Read(std::uint8_t reg);
  /// A write on the bus: read-only bits and unlisted registers keep what they hold.
  void Write(std::uint8_t reg, std::uint8_t value);

  /// Register bytes without side effects and without a trace, for tests. A poked measurement lasts until the chip
  /// measures again.
  std::uint8_t Peek(std::uint8_t reg) const;
  void Poke(std::uint8_t reg, std::uint8_t value) { registers_[reg] = value; }

  void SetPins(const ChipPins& pins) { pins_ = pins; }
  /// One step of 10 ms.
  void Step(const PlantState& plant, std::int64_t step);
  /// The outputs as the fans see them (0..1), polarity applied.
  std::array<double, 3> FanDuty() const;

 private:
  SimRegisters registers_ = ResetRegisters();
  ChipPins pins_;
};

}  // namespace krx
