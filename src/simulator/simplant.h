// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace krx {

/// Zones and voltage channels are numbered as everywhere: Local, Remote1, Remote2; 5V, 12V, Vccp, Vcc, 2.5V.
struct PlantState {
  std::array<double, 4> Rpm{};
  std::array<double, 3> Celsius{};
  std::array<double, 5> Volts{};
  double ProchotShare = 0;  ///< share of the time in which the processor-hot signal is asserted
};

/// What acts on the plant.
struct PlantDrive {
  std::array<double, 3> Duty{};  ///< of PWM1 to PWM3 as the fans see it, 0..1
  std::array<bool, 2> Heater{};
};

/// What is broken in it.
struct PlantFaults {
  std::array<bool, 4> StalledFan{};
  std::array<bool, 4> RunawayFan{};
  std::array<bool, 4> HuntingFan{};
};

/// The fans and the heat around one chip, in steps of 10 ms. It starts as a board that has been on for a while: fans
/// at full speed, temperatures settled.
class SimPlant {
 public:
  static constexpr double stepSeconds = 0.01;

  explicit SimPlant(double loadPeakWatts);
  /// One step; `step` numbers it from the start of the simulation and sets the phase of the processor's load.
  void Step(const PlantDrive& drive, const PlantFaults& faults, std::int64_t step);
  const PlantState& State() const { return state_; }

  /// Keeps a zone at a temperature, for tests; nullopt lets it go again.
  void HoldTemperature(int zone, std::optional<double> celsius);

 private:
  void StepFans(const PlantDrive& drive, const PlantFaults& faults, std::int64_t step);
  void StepHeat(const PlantDrive& drive, double loadWatts);

  double loadPeakWatts_;
  PlantState state_;
  std::array<bool, 4> running_{true, true, true, true};
  std::array<std::optional<double>, 3> held_;
};

}  // namespace krx
