// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simplant.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace krx {
namespace {

struct FanRow {
  double FullRpm;
  double StartsAt;     // duty
  double StallsBelow;  // duty
  std::size_t Pwm;     // fan 4 shares PWM3 with fan 3
};
constexpr std::array<FanRow, 4> fanRows{{
    {4800, 0.28, 0.18, 0},
    {3600, 0.22, 0.15, 1},
    {2600, 0.33, 0.25, 2},
    {2400, 0.30, 0.20, 2},
}};
constexpr double speedUpSeconds = 0.8;
constexpr double slowDownSeconds = 1.2;

// A hunting fan loses its supply for half of each period, long enough to disturb most one-second readings.
constexpr std::int64_t huntPeriodSteps = 600;
constexpr double huntShare = 0.2;

/// The heated zones: Remote1 is cooled by fan 1, Remote2 by fan 2.
struct HeatRow {
  std::size_t Zone;
  double JoulesPerDegree;
  std::size_t Fan;
};
constexpr std::array<HeatRow, 2> heatRows{{{1, 4.0, 0}, {2, 6.0, 1}}};
constexpr double ambientCelsius = 25.0;
constexpr double baseWatts = 1.6;
constexpr double heaterWatts = 5.0;
constexpr double stillConductance = 0.100;  // W/°C
constexpr double fanConductance = 0.0905;   // W/°C at full speed

constexpr double localCelsius = 30.0;
constexpr double localCooledBy = 4.0;  // by fan 3 at full speed
constexpr std::size_t localFan = 2;

constexpr std::int64_t loadPeriodSteps = 12'000;

constexpr double prochotFromCelsius = 72.0;
constexpr double prochotSpanCelsius = 8.0;

double Lag(double timeConstant) {
  return 1.0 - std::exp(-SimPlant::stepSeconds / timeConstant);
}

double LoadWatts(std::int64_t step, double peak) {
  const double phase = static_cast<double>(step % loadPeriodSteps) / static_cast<double>(loadPeriodSteps);
  return peak * (phase < 0.5 ? 2 * phase : 2 - 2 * phase);
}

std::array<double, 5> Volts(double load) {
  const double amperes = 8.0 + 11.0 * load;
  const double vccp = 1.475 - 0.0005 * amperes;
  return {5.04, 12.10, vccp, 3.31, vccp + 0.9 + 0.003 * amperes};
}

}  // namespace

SimPlant::SimPlant(double loadPeakWatts) : loadPeakWatts_(loadPeakWatts) {
  for (std::size_t fan = 0; fan < fanRows.size(); ++fan) state_.Rpm[fan] = fanRows[fan].FullRpm;
  const double settled = ambientCelsius + baseWatts / (stillConductance + fanConductance);
  state_.Celsius = {localCelsius - localCooledBy, settled, settled};
  state_.Volts = Volts(0);
}

void SimPlant::HoldTemperature(int zone, std::optional<double> celsius) {
  held_.at(static_cast<std::size_t>(zone)) = celsius;
  if (celsius) state_.Celsius.at(static_cast<std::size_t>(zone)) = *celsius;
}

void SimPlant::Step(const PlantDrive& drive, const PlantFaults& faults, std::int64_t step) {
  const double load = LoadWatts(step, loadPeakWatts_);
  StepFans(drive, faults, step);
  StepHeat(drive, load);
  state_.Volts = Volts(load);
  state_.ProchotShare = std::clamp((state_.Celsius[1] - prochotFromCelsius) / prochotSpanCelsius, 0.0, 1.0);
}

void SimPlant::StepFans(const PlantDrive& drive, const PlantFaults& faults, std::int64_t step) {
  static const double up = Lag(speedUpSeconds);
  static const double down = Lag(slowDownSeconds);
  for (std::size_t fan = 0; fan < fanRows.size(); ++fan) {
    const FanRow& row = fanRows[fan];
    const double duty = drive.Duty[row.Pwm];
    if (duty >= row.StartsAt || faults.RunawayFan[fan]) {
      running_[fan] = true;
    } else if (duty < row.StallsBelow) {
      running_[fan] = false;
    }
    if (faults.StalledFan[fan]) running_[fan] = false;
    double target = running_[fan] ? row.FullRpm * (0.1 + 0.9 * duty) : 0.0;
    if (faults.HuntingFan[fan] && step % huntPeriodSteps >= huntPeriodSteps / 2) target *= huntShare;
    double& rpm = state_.Rpm[fan];
    rpm += (target - rpm) * (target > rpm ? up : down);
  }
}

void SimPlant::StepHeat(const PlantDrive& drive, double loadWatts) {
  for (std::size_t i = 0; i < heatRows.size(); ++i) {
    const HeatRow& row = heatRows[i];
    const double watts = baseWatts + loadWatts + (drive.Heater[i] ? heaterWatts : 0.0);
    const double conductance = stillConductance + fanConductance * state_.Rpm[row.Fan] / fanRows[row.Fan].FullRpm;
    double& celsius = state_.Celsius[row.Zone];
    celsius += (watts - conductance * (celsius - ambientCelsius)) / row.JoulesPerDegree * stepSeconds;
  }
  state_.Celsius[0] = localCelsius - localCooledBy * state_.Rpm[localFan] / fanRows[localFan].FullRpm;
  for (std::size_t zone = 0; zone < held_.size(); ++zone) {
    if (held_[zone]) state_.Celsius[zone] = *held_[zone];
  }
}

}  // namespace krx
