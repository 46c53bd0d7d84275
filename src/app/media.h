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

/// Equipment of the simulated computer and the faults to inject.
struct SimulatorChoice : SimOptions {
  std::vector<Fault> Faults;
  std::string LastNamed;  ///< the last option that set one of these; empty: none was given
};

/// The command-line options that select the bus.
struct MediaOptions {
  MediumKind Medium = MediumKind::Simulated;
  std::optional<int> Smbus;                     ///< number N of /dev/i2c-N
  std::optional<int> PrinterPort;               ///< number N of /dev/parportN
  std::optional<std::filesystem::path> Wiring;  ///< pin assignment of the printer port
  bool Force = false;                           ///< also when a kernel driver is bound to the chip
  SimulatorChoice Simulator;
};

/// The bus that was chosen.
struct Media {
  MediumKind Kind = MediumKind::Simulated;  ///< never Auto
  std::string Name;                         ///< "Simulated board", for title bars and status lines
  std::string Reason;                       ///< why `auto` chose this one; empty when it was named
  CommsRoot::Factory Factory;
};

/// Adds --medium, --smbus, --printer-port, --wiring, --force and the simulator's options; both programs share them. An
/// unknown or out-of-range value, or an option of another medium, fails the parsing. `options` must outlive it.
void AddMediaOptions(CLI::App& app, MediaOptions& options);

/// Chooses the bus and returns its factory. `clock` must outlive what the factory makes. Throws CommsError when the
/// requested bus is not available here, UsageError for a wiring file that cannot be read.
Media ChooseMedia(const MediaOptions& options, Clock& clock);

}  // namespace krx
