// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simchip.h"

namespace krx {
namespace {

using Reg = SimRegisters;

constexpr std::int64_t holdSteps = 5;
constexpr std::uint8_t firstValue = 0x20, lastValue = 0x2F;

/// Below this a fan counts as standing.
constexpr double turningRpm = 83;

bool IsDuty(std::uint8_t reg) {
  return reg >= Reg::Duty && reg < Reg::Duty + 3;
}

}  // namespace

SimChip::SimChip(const SimOptions& options) : measure_(SimNoise(options.Seed, options.Noise), options.RealPulses) {}

std::uint8_t SimChip::Read(std::uint8_t reg) {
  HoldUpperBytes(reg);
  std::uint8_t value = Peek(reg);
  if (reg >= firstValue && reg <= lastValue) {
    HeldByte& held = held_[reg - std::size_t{firstValue}];
    if (step_ <= held.UntilStep) value = held.Value;
    held.UntilStep = -1;
  }
  if (reg == Reg::ProchotStatus) registers_[reg] = 0;
  return value;
}

void SimChip::HoldUpperBytes(std::uint8_t reg) {
  const auto hold = [this](std::size_t first, std::size_t last) {
    for (std::size_t upper = first; upper <= last; ++upper) {
      held_[upper - firstValue] = {registers_[upper], step_ + holdSteps};
    }
  };
  if (reg == Reg::Extended1) hold(0x20, 0x23);
  if (reg == Reg::Extended2) hold(0x24, 0x27);
  if (reg >= 0x28 && reg <= lastValue && reg % 2 == 0) hold(reg + 1u, reg + 1u);
}

void SimChip::Write(std::uint8_t reg, std::uint8_t value) {
  if (IsDuty(reg)) {
    drive_.Latch(static_cast<std::size_t>(reg - Reg::Duty), value);
  } else {
    const int mask = WritableBits(reg);
    registers_[reg] = static_cast<std::uint8_t>((registers_[reg] & ~mask) | (value & mask));
  }
  drive_.Settle(registers_, measure_.Measured());
}

std::uint8_t SimChip::Peek(std::uint8_t reg) const {
  const std::uint8_t value = registers_[reg];
  if (reg == Reg::Vid) return static_cast<std::uint8_t>((value & 0xC0) | pins_.Vid);
  const bool ready = reg == Reg::Config1 && registers_.Monitoring() && measure_.Measured();
  return ready ? static_cast<std::uint8_t>(value | Reg::Ready) : value;
}

void SimChip::Poke(std::uint8_t reg, std::uint8_t value) {
  registers_[reg] = value;
  if (IsDuty(reg)) drive_.Latch(static_cast<std::size_t>(reg - Reg::Duty), value);
}

void SimChip::Step(const PlantState& plant, std::int64_t step) {
  step_ = step;
  measure_.Step(registers_, plant, pins_, step);
  drive_.Step(registers_, measure_);
  dynamicTmin_.Step(registers_, measure_,
                    {plant.Rpm[0] > turningRpm, plant.Rpm[1] > turningRpm, plant.Rpm[2] > turningRpm});
}

std::array<double, 3> SimChip::FanDuty() const {
  std::array<double, 3> duty{};
  for (std::size_t pwm = 0; pwm < duty.size(); ++pwm) {
    const double share = registers_[Reg::Duty + pwm] / 255.0;
    duty[pwm] = registers_.Bit(Reg::PwmConfig + pwm, 4) ? 1 - share : share;
  }
  return duty;
}

}  // namespace krx
