// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "simulator/simmeasure.h"
#include "simulator/simregisters.h"

namespace krx {

/// The three outputs: behaviour, slope, minimum duty, hysteresis, spin-up, enhanced acoustics, full speed (FSPD), and
/// the written duty. The duty register holds the present duty of an output.
class SimDrive {
 public:
  /// A byte written to a duty register: it takes effect as soon as the output is under manual control. An output that
  /// is switched to manual control without such a byte keeps its duty.
  void WriteDuty(std::size_t pwm, std::uint8_t value) { outputs_[pwm].Written = value; }

  /// Updates the outputs that do not follow a temperature, so that a write takes effect at once.
  void Settle(SimRegisters& registers, bool measured);
  /// One step of 10 ms of all outputs.
  void Step(SimRegisters& registers, const SimMeasure& measure);

 private:
  struct Output {
    std::uint8_t Duty = 255;                   ///< as set by the behaviour
    std::optional<std::uint8_t> Written;       ///< not yet in effect
    double Ramp = 255;                         ///< duty, followed slowly with enhanced acoustics
    std::array<bool, 3> On{true, true, true};  ///< by zone: above Tmin, or not yet below Tmin - hysteresis
    int SpinUpSteps = 0;
  };

  bool SettleOutput(const SimRegisters& registers, std::size_t pwm, bool measured);
  void StepAutomatic(const SimRegisters& registers, const SimMeasure& measure, std::size_t pwm);
  double ZoneDuty(const SimRegisters& registers, double celsius, std::size_t pwm, std::size_t zone);
  void Show(SimRegisters& registers, std::size_t pwm) const;

  std::array<Output, 3> outputs_;
};

/// Dynamic Tmin: moves the zones' Tmin registers around their operating points.
class SimDynamicTmin {
 public:
  void Step(SimRegisters& registers, const SimMeasure& measure, const std::array<bool, 3>& fanRunning);

 private:
  struct Zone {
    int Direction = 0;
    int Steps = 0;  ///< spent in this direction since Tmin moved
  };
  std::array<Zone, 3> zones_;
};

}  // namespace krx
