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
  double ProchotShare = 0;  ///< fraction of time for which the processor-hot signal is asserted
};

/// The inputs of the plant.
struct PlantDrive {
  std::array<double, 3> Duty{};  ///< PWM1 to PWM3 as seen by the fans, 0..1
  std::array<bool, 2> Heater{};
};

/// Faults of the plant.
struct PlantFaults {
  std::array<bool, 4> StalledFan{};
  std::array<bool, 4> RunawayFan{};
  std::array<bool, 4> HuntingFan{};
};

/// Fans and temperatures around one chip, in steps of 10 ms. The initial state is that of a board that has been on for
/// a while: fans at full speed, temperatures settled.
class SimPlant {
 public:
  static constexpr double stepSeconds = 0.01;

  explicit SimPlant(double loadPeakWatts);
  /// One step; `step` numbers it from the start of the simulation and sets the phase of the processor's load.
  void Step(const PlantDrive& drive, const PlantFaults& faults, std::int64_t step);
  const PlantState& State() const { return state_; }

  /// Holds a zone at a temperature, for tests; nullopt releases it.
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
