// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "simulator/simboard.h"
#include "simulator/simdrive.h"
#include "simulator/simmeasure.h"
#include "simulator/simoptions.h"
#include "simulator/simplant.h"
#include "simulator/simregisters.h"

namespace krx {

/// One chip: its registers as seen on the bus, and the measurement and fan control behind them.
///
/// RDY (0x40 bit 2) reads 1 while STRT is set and something has been converted, so after power-on 0x40 reads 0x00. A
/// value in two registers is read coherently: reading the low byte of a tachometer, or 0x76 or 0x77, latches the
/// corresponding upper bytes until they are read, for a second of the reader's time at most.
class SimChip {
 public:
  explicit SimChip(const SimOptions& options);

  /// A read on the bus; `seconds` is the reader's time, independent of the simulation speed. Unlisted registers read 0;
  /// reading 0x79 clears it.
  std::uint8_t Read(std::uint8_t reg, double seconds);
  /// A write on the bus: read-only bits and unlisted registers keep their values.
  void Write(std::uint8_t reg, std::uint8_t value);

  /// Direct register access without side effects or a trace, for tests. A poked measurement lasts until the next
  /// conversion, a poked duty as long as the output is under manual control.
  std::uint8_t Peek(std::uint8_t reg) const;
  void Poke(std::uint8_t reg, std::uint8_t value);

  /// Sets the chip's present surroundings.
  void Surround(const ChipPins& pins, const PlantState& plant);
  /// One step of 10 ms.
  void Step(const PlantState& plant, std::int64_t step);
  /// The outputs as the fans see them (0..1), polarity applied. Fan 2 is not driven while PWM2 is the alert output.
  std::array<double, 3> FanDuty() const;

 private:
  struct HeldByte {
    std::uint8_t Value = 0;
    double UntilSeconds = -1;
  };
  void HoldUpperBytes(std::uint8_t reg, double seconds);

  SimRegisters registers_ = ResetRegisters();
  ChipPins pins_;
  PlantState plant_;
  SimMeasure measure_;
  SimDrive drive_;
  SimDynamicTmin dynamicTmin_;
  std::array<HeldByte, 16> held_;  // 0x20 to 0x2F
  std::int64_t step_ = 0;
};

}  // namespace krx
