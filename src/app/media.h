// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "link/clock.h"
#include "link/commsroot.h"
#include "simulator/simfaults.h"
#include "simulator/simoptions.h"

namespace CLI {
class App;
}

namespace krx {

enum class MediumKind { Auto, Simulated, Linux };

/// What the simulated computer has, and what is to fail in it.
struct SimulatorChoice : SimOptions {
  std::vector<Fault> Faults;
  std::string LastNamed;  ///< the last option that set one of these; empty: none did
};

/// What the command line says about the bus to use.
struct MediaOptions {
  MediumKind Medium = MediumKind::Simulated;
  std::optional<int> Smbus;                     ///< number N of /dev/i2c-N
  std::optional<int> PrinterPort;               ///< number N of /dev/parportN
  std::optional<std::filesystem::path> Wiring;  ///< which printer-port line carries what
  bool Force = false;                           ///< also where a kernel driver holds the chip
  SimulatorChoice Simulator;
};

/// The bus that was chosen.
struct Media {
  MediumKind Kind = MediumKind::Simulated;  ///< never Auto
  std::string Name;                         ///< "Simulated board", for title bars and status lines
  std::string Reason;                       ///< why `auto` took this one; empty when it was asked for by name
  CommsRoot::Factory Factory;
};

/// Adds --medium, --smbus, --printer-port, --wiring, --force and the simulator's options; both programs share them.
/// What is none of them, out of its range, or meant for another medium ends the parsing. `options` must outlive it.
void AddMediaOptions(CLI::App& app, MediaOptions& options);

/// Decides for a bus and says how to make it. `clock` must outlive what the factory makes. Throws CommsError when the
/// bus that was asked for cannot be had here, UsageError for a wiring file that cannot be read.
Media ChooseMedia(const MediaOptions& options, Clock& clock);

}  // namespace krx
