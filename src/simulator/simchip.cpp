// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simchip.h"

#include <algorithm>
#include <optional>

#include "registers/chip.h"

namespace krx {
namespace {

using Reg = SimRegisters;

constexpr double holdSeconds = 1;
constexpr std::uint8_t firstValue = 0x20, lastValue = 0x2F;

/// Below this speed a fan counts as stopped.
constexpr double turningRpm = 83;

/// The output whose duty register this is.
std::optional<std::size_t> DutyOf(std::uint8_t reg) {
  const auto row = std::ranges::find(chip::Outputs, reg, &chip::Output::Duty);
  if (row == chip::Outputs.end()) return std::nullopt;
  return static_cast<std::size_t>(row - chip::Outputs.begin());
}

}  // namespace

SimChip::SimChip(const SimOptions& options)
    : measure_(SimNoise(options.Seed, options.Noise), options.RealPulses, options.Speed) {}

std::uint8_t SimChip::Read(std::uint8_t reg, double seconds) {
  HoldUpperBytes(reg, seconds);
  std::uint8_t value = Peek(reg);
  if (reg >= firstValue && reg <= lastValue) {
    HeldByte& held = held_[reg - std::size_t{firstValue}];
    if (seconds <= held.UntilSeconds) value = held.Value;
    held.UntilSeconds = -1;
  }
  if (reg == chip::ThermTimer) registers_[reg] = 0;
  return value;
}

void SimChip::HoldUpperBytes(std::uint8_t reg, double seconds) {
  const auto hold = [&](std::size_t first, std::size_t last) {
    for (std::size_t upper = first; upper <= last; ++upper) {
      held_[upper - firstValue] = {registers_[upper], seconds + holdSeconds};
    }
  };
  if (reg == chip::ExtendedResolution1) hold(0x20, 0x23);
  if (reg == chip::ExtendedResolution2) hold(0x24, 0x27);
  if (reg >= 0x28 && reg <= lastValue && reg % 2 == 0) hold(reg + 1u, reg + 1u);
}

void SimChip::Write(std::uint8_t reg, std::uint8_t value) {
  const bool monitored = registers_.Monitoring();
  if (const auto output = DutyOf(reg)) {
    drive_.WriteDuty(*output, value);
  } else {
    const int mask = WritableBits(reg);
    registers_[reg] = static_cast<std::uint8_t>((registers_[reg] & ~mask) | (value & mask));
  }
  measure_.NoticePulses(registers_, plant_, pins_, step_);
  if (registers_.Monitoring() && !monitored) measure_.Start(registers_, plant_, pins_, step_);
  drive_.Settle(registers_, measure_.Measured());
}

std::uint8_t SimChip::Peek(std::uint8_t reg) const {
  const std::uint8_t value = registers_[reg];
  if (reg == chip::Vid) return static_cast<std::uint8_t>((value & ~chip::VidInputs) | pins_.Vid);
  const bool ready = reg == chip::Configuration1 && registers_.Monitoring() && measure_.Measured();
  return ready ? static_cast<std::uint8_t>(value | chip::Ready) : value;
}

void SimChip::Poke(std::uint8_t reg, std::uint8_t value) {
  registers_[reg] = value;
  if (const auto output = DutyOf(reg)) drive_.WriteDuty(*output, value);
}

void SimChip::Surround(const ChipPins& pins, const PlantState& plant) {
  pins_ = pins;
  plant_ = plant;
  measure_.NoticePulses(registers_, plant_, pins_, step_);
}

void SimChip::Step(const PlantState& plant, std::int64_t step) {
  plant_ = plant;
  step_ = step;
  measure_.Step(registers_, plant, pins_, step);
  drive_.Step(registers_, measure_);
  dynamicTmin_.Step(registers_, measure_,
                    {plant.Rpm[0] > turningRpm, plant.Rpm[1] > turningRpm, plant.Rpm[2] > turningRpm});
}

std::array<double, 3> SimChip::FanDuty() const {
  std::array<double, 3> duty{};
  for (std::size_t pwm = 0; pwm < duty.size(); ++pwm) {
    const double share = registers_[chip::Outputs[pwm].Duty] / 255.0;
    duty[pwm] = registers_.Has(chip::Outputs[pwm].Configuration, chip::PolarityMask) ? 1 - share : share;
  }
  if (registers_.Has(chip::Configuration3, chip::AlertOnPwm2)) duty[1] = 1;
  return duty;
}

}  // namespace krx
