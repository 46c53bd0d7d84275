// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>

#include "simulator/simcomms.h"

namespace krx {

/// A chip and its surroundings.
struct Simulation::Unit {
  explicit Unit(const SimOptions& options) : Chip(options), Plant(options.Load) {}

  std::uint8_t Address = 0;  ///< in the form used by the medium
  BusModes Modes = BusModes::Both;
  std::uint8_t Port = 0;
  SimBoard* Board = nullptr;  ///< null on the SMBus
  SimChip Chip;
  SimPlant Plant;
};

/// The bus operations shared by the objects handed out: each is traced, may fail as injected, and first advances the
/// model to the present time.
class SimBus {
 public:
  explicit SimBus(Simulation& simulation) : sim_(simulation) {}

  /// Traces the operation, applies injected delays and failures, then runs `action` with the trace entry.
  template <typename Action>
  void Perform(Operation op, std::uint8_t address, std::uint8_t reg, std::uint8_t data, Action action);

  std::uint8_t ReadChip(bool smbus, std::uint8_t port, std::uint8_t address, std::uint8_t reg);
  void WriteChip(bool smbus, std::uint8_t port, std::uint8_t address, std::uint8_t reg, std::uint8_t data);
  /// The board at a port; throws when there is none.
  SimBoard& Board(std::uint8_t port);
  std::uint8_t& SwitchDevice(std::uint8_t port, std::uint8_t address);

  const SimOptions& Options() const { return sim_.options_; }
  std::uint8_t& SelectedPort() { return sim_.selectedPort_; }
  int& LiveHandles() { return sim_.liveHandles_; }

 private:
  SimChip& Find(bool smbus, std::uint8_t port, std::uint8_t address);
  void Wait(double seconds);

  Simulation& sim_;
};

std::unique_ptr<CommsModule> MakeSimBus(Simulation& simulation);

}  // namespace krx
