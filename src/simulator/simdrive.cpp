// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simdrive.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "registers/codes.h"

namespace krx {
namespace {

using Reg = SimRegisters;

/// By Trange code, % per °C.
constexpr std::array<double, 16> slopes{33.5, 26.8, 20.12, 16.75, 13.4, 10.04, 8.38, 6.7,
                                        5.03, 4.19, 3.35,  2.51,  2.09, 1.68,  1.26, 0.84};
/// By spin-up code: none, 100, 250, 400, 667 ms, 1, 2, 4 s.
constexpr std::array<int, 8> spinUpSteps{0, 10, 25, 40, 67, 100, 200, 400};
/// By ramp-rate code; times eight in counts per second.
constexpr std::array<int, 8> rampRates{1, 2, 3, 5, 8, 12, 24, 48};

std::size_t Behaviour(const Reg& registers, std::size_t pwm) {
  return registers[chip::Outputs[pwm].Configuration] >> chip::BehaviourShift;
}

bool DrivenBy(const Reg& registers, std::size_t pwm, std::size_t zone) {
  return ((behaviourZones[Behaviour(registers, pwm)] >> zone) & 1) != 0;
}

/// The largest change of a duty per step.
double RampPerStep(const Reg& registers, std::size_t pwm) {
  const chip::Output& row = chip::Outputs[pwm];
  if (!registers.Has(row.Acoustics, row.AcousticsEnable)) return 255;
  const auto code = static_cast<std::size_t>((registers[row.Acoustics] >> row.RampShift) & chip::RampMask);
  return 8.0 * rampRates[code] * SimPlant::stepSeconds;
}

}  // namespace

void SimDrive::Settle(SimRegisters& registers, bool measured) {
  for (std::size_t pwm = 0; pwm < outputs_.size(); ++pwm) {
    SettleOutput(registers, pwm, measured);
    Show(registers, pwm);
  }
}

void SimDrive::Show(SimRegisters& registers, std::size_t pwm) const {
  const bool fullSpeed = registers.Has(chip::Configuration1, chip::FullSpeed);
  registers[chip::Outputs[pwm].Duty] = fullSpeed ? std::uint8_t{255} : outputs_[pwm].Duty;
}

bool SimDrive::SettleOutput(const SimRegisters& registers, std::size_t pwm, bool measured) {
  const std::size_t behaviour = Behaviour(registers, pwm);
  const bool automatic = behaviourZones[behaviour] != 0;
  if (automatic && registers.Monitoring() && measured) return false;
  Output& output = outputs_[pwm];
  // An automatic output without valid temperatures runs at full duty.
  if (automatic || behaviour == alwaysOnBehaviour) output.Duty = 255;
  if (behaviour == alwaysOffBehaviour) output.Duty = 0;
  if (behaviour == manualBehaviour) output.Duty = std::exchange(output.Written, std::nullopt).value_or(output.Duty);
  output.Ramp = output.Duty;
  output.On.fill(output.Duty > 0);
  output.SpinUpSteps = 0;
  return true;
}

void SimDrive::Step(SimRegisters& registers, const SimMeasure& measure) {
  for (std::size_t pwm = 0; pwm < outputs_.size(); ++pwm) {
    if (!SettleOutput(registers, pwm, measure.Measured())) StepAutomatic(registers, measure, pwm);
    Show(registers, pwm);
  }
}

void SimDrive::StepAutomatic(const SimRegisters& registers, const SimMeasure& measure, std::size_t pwm) {
  Output& output = outputs_[pwm];
  double target = 0;
  bool full = false;
  for (std::size_t zone = 0; zone < chip::Zones.size(); ++zone) {
    if (!DrivenBy(registers, pwm, zone)) continue;
    target = std::max(target, ZoneDuty(registers, measure.Celsius(zone), pwm, zone));
    full = full || measure.Overheated(zone) || measure.DiodeOpen(zone);
  }
  std::uint8_t& duty = output.Duty;
  if (full) {
    // For an overheated zone or an unknown temperature the ramp is skipped.
    output.Ramp = 255;
    output.SpinUpSteps = 0;
    duty = 255;
    return;
  }
  if (target <= 0) {
    output.SpinUpSteps = 0;
  } else if (duty == 0) {
    output.SpinUpSteps = spinUpSteps[registers[chip::Outputs[pwm].Configuration] & chip::SpinUpMask];
    // Not below the present ramp value: a slow ramp takes several steps to its first whole count.
    output.Ramp = std::max(output.Ramp, std::min<double>(target, registers[chip::Outputs[pwm].MinimumDuty]));
  }
  if (registers.Has(chip::Configuration1, chip::DisableSpinUp)) output.SpinUpSteps = 0;
  const double most = RampPerStep(registers, pwm);
  output.Ramp += std::clamp(target - output.Ramp, -most, most);
  if (output.SpinUpSteps > 0) {
    --output.SpinUpSteps;
    duty = 255;
  } else {
    duty = static_cast<std::uint8_t>(std::lround(output.Ramp));
  }
}

double SimDrive::ZoneDuty(const SimRegisters& registers, double celsius, std::size_t pwm, std::size_t zone) {
  const chip::Zone& row = chip::Zones[zone];
  const int tmin = registers.Signed(row.Tmin);
  const double minimum = registers[chip::Outputs[pwm].MinimumDuty];
  bool& on = outputs_[pwm].On[zone];
  if (celsius >= tmin) {
    on = true;
    const double slope = slopes[registers[row.Trange] >> chip::TrangeShift];
    return std::min(255.0, minimum + slope * 2.55 * (celsius - tmin));
  }
  if (celsius < tmin - registers.HysteresisOf(row)) on = false;
  const bool neverOff = registers.Has(chip::Acoustics1, chip::Outputs[pwm].StayAtMinimum);
  return on || neverOff ? minimum : 0;
}

void SimDynamicTmin::Step(SimRegisters& registers, const SimMeasure& measure, const std::array<bool, 3>& fanRunning) {
  const int cycles = registers[chip::DynamicTmin1] * 256 + registers[chip::DynamicTmin2];
  for (std::size_t z = 0; z < zones_.size(); ++z) {
    const chip::Zone& row = chip::Zones[z];
    const int opPoint = registers.Signed(row.OperatingPoint);
    const bool prochot = measure.Prochot() && registers.Has(chip::DynamicTmin1, row.Prochot);
    const auto running = [&] {
      for (std::size_t pwm = 0; pwm < fanRunning.size(); ++pwm) {
        if (DrivenBy(registers, pwm, z) && fanRunning[pwm]) return true;
      }
      return false;
    };
    int direction = 0;
    // With an open diode the temperature is unknown.
    const bool known = measure.Measured() && !measure.DiodeOpen(z);
    if (registers.Monitoring() && known && registers.Has(chip::DynamicTmin1, row.DynamicTmin)) {
      if (prochot || measure.Celsius(z) > opPoint) {
        direction = -1;
      } else if (measure.Celsius(z) < opPoint && running()) {
        direction = +1;
      }
    }
    Zone& zone = zones_[z];
    if (direction != zone.Direction) zone = {direction, 0};
    if (direction == 0) continue;
    const int code = cycles >> row.CycleShift & chip::CycleMask;
    const int period = (direction < 0 ? 50 : 100) << code;  // 0.5 s and 1 s, doubled by each code
    if (++zone.Steps < period) continue;
    zone.Steps = 0;
    const int tmin = registers.Signed(row.Tmin);
    const bool room = direction < 0 ? tmin > registers.Signed(row.LowLimit) : tmin < opPoint;
    if (room) registers[row.Tmin] = static_cast<std::uint8_t>(tmin + direction);
  }
}

}  // namespace krx
