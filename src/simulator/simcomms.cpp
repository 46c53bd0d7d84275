// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simcomms.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "simulator/simbus.h"

namespace krx {
namespace {

constexpr std::int64_t longestGapSteps = std::int64_t{3600} * 100;

double ClockSeconds(Clock& clock) {
  const std::int64_t frequency = clock.Frequency();
  if (frequency == 0) return clock.FallbackSeconds();
  return static_cast<double>(clock.Counter()) / static_cast<double>(frequency);
}

}  // namespace

Simulation::Simulation(Clock& clock, SimOptions options) : clock_(clock), options_(std::move(options)) {
  options_.Speed = std::clamp(options_.Speed, 1.0, 1000.0);
  startSeconds_ = ClockSeconds(clock_);
  boards_.resize(options_.Ports);
  for (const SimOptions::BoardChip& place : options_.BoardChips) {
    auto unit = std::make_unique<Unit>(options_);
    unit->Address = static_cast<std::uint8_t>(place.Address << 1);
    unit->Modes = place.Modes;
    unit->Port = place.Port;
    if (place.Port < boards_.size()) unit->Board = &boards_[place.Port];
    boardSide_.Units.push_back(std::move(unit));
  }
  for (const SimOptions::SmbusChip& place : options_.SmbusChips) {
    auto unit = std::make_unique<Unit>(options_);
    unit->Address = place.Address;
    smbusSide_.Units.push_back(std::move(unit));
  }
}

Simulation::~Simulation() = default;

std::unique_ptr<CommsModule> Simulation::MakeCommsModule() {
  return MakeSimBus(*this);
}

double Simulation::Seconds() {
  return ClockSeconds(clock_) - startSeconds_;
}

void Simulation::Advance(Side& side) {
  // First, so that the steps use the present board settings.
  for (const auto& unit : side.Units) RefreshPins(*unit);
  const double steps = Seconds() * options_.Speed / SimPlant::stepSeconds;
  const auto target = static_cast<std::int64_t>(std::floor(steps + 1e-6));
  side.Step = std::max(side.Step, target - longestGapSteps);
  while (side.Step < target) {
    ++side.Step;
    for (const auto& unit : side.Units) Step(*unit, plantFaults_, side.Step);
  }
}

void Simulation::Step(Unit& unit, const PlantFaults& faults, std::int64_t step) {
  PlantDrive drive{unit.Chip.FanDuty(), {}};
  if (unit.Board != nullptr) drive.Heater = {unit.Board->HeaterOn(1), unit.Board->HeaterOn(2)};
  unit.Plant.Step(drive, faults, step);
  unit.Chip.Step(unit.Plant.State(), step);
}

void Simulation::RefreshPins(Unit& unit) const {
  ChipPins pins = unit.Board == nullptr ? ChipPins{} : unit.Board->Pins(options_.VidFollowsU3);
  for (std::size_t diode = 0; diode < openDiode_.size(); ++diode) {
    pins.DiodeOpen[diode] = pins.DiodeOpen[diode] || openDiode_[diode];
  }
  unit.Chip.Surround(pins, unit.Plant.State());
}

void Simulation::AddFault(const Fault& fault) {
  Advance(boardSide_);
  Advance(smbusSide_);
  const auto index = static_cast<std::size_t>(std::max(fault.Index, 1) - 1);
  switch (fault.What) {
    case Fault::Kind::FailTransfer:
      plan_.Add(fault);
      break;
    case Fault::Kind::ExtraTime:
      extraSeconds_ += fault.Seconds;
      break;
    case Fault::Kind::ChipAbsent:
      absentFrom_ = std::min(fault.Seconds, absentFrom_.value_or(fault.Seconds));
      break;
    case Fault::Kind::StalledFan:
      plantFaults_.StalledFan.at(index) = true;
      break;
    case Fault::Kind::RunawayFan:
      plantFaults_.RunawayFan.at(index) = true;
      break;
    case Fault::Kind::HuntingFan:
      plantFaults_.HuntingFan.at(index) = true;
      break;
    case Fault::Kind::OpenDiode:
      openDiode_.at(index) = true;
      break;
    case Fault::Kind::WrongCompanyId:
      companyId_ = fault.Value;
      break;
    case Fault::Kind::StuckBits:
      stuckBits_[fault.Register.value_or(0)] |= fault.Value;
      break;
  }
}

void Simulation::ClearFaults() {
  Advance(boardSide_);
  Advance(smbusSide_);
  plan_.Clear();
  extraSeconds_ = 0;
  absentFrom_.reset();
  plantFaults_ = {};
  openDiode_ = {};
  companyId_.reset();
  stuckBits_ = {};
}

Simulation::Unit& Simulation::UnitNow(Side& side, std::size_t index) {
  Advance(side);
  return *side.Units.at(index);
}

SimChip& Simulation::BoardChip(std::size_t index) {
  return UnitNow(boardSide_, index).Chip;
}
SimChip& Simulation::SmbusChip(std::size_t index) {
  return UnitNow(smbusSide_, index).Chip;
}
SimPlant& Simulation::BoardPlant(std::size_t index) {
  return UnitNow(boardSide_, index).Plant;
}
SimPlant& Simulation::SmbusPlant(std::size_t index) {
  return UnitNow(smbusSide_, index).Plant;
}

SimBoard& Simulation::Board(std::size_t port) {
  Advance(boardSide_);
  return boards_.at(port);
}

}  // namespace krx
