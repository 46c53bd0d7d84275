// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/media.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <limits>

#include "app/commandhost.h"
#include "app/optiontexts.h"
#include "link/commserror.h"
#include "link/linux/linuxcomms.h"
#include "simulator/simcomms.h"
#include "simulator/simwords.h"

namespace krx {
namespace {

// The kernel's minor numbers have 20 bits.
constexpr long highestNode = 1048575;

constexpr std::array<Named<MediumKind>, 3> mediumNames{
    {{"simulated", MediumKind::Simulated}, {"linux", MediumKind::Linux}, {"auto", MediumKind::Auto}}};

/// The simulated computer and its bus-access library as one object.
class SimulatedComms : public CommsModule {
 public:
  SimulatedComms(Clock& clock, const SimOptions& options, const std::vector<Fault>& faults)
      : simulation_(clock, options), module_(simulation_.MakeCommsModule()) {
    for (const Fault& fault : faults) simulation_.AddFault(fault);
  }
  std::unique_ptr<PrinterPortAdapter> ObtainPrinterPortAdapter() override {
    return module_->ObtainPrinterPortAdapter();
  }
  std::unique_ptr<SmbusController> ObtainSmbusController() override { return module_->ObtainSmbusController(); }
  void SelectMedium(int medium) override { module_->SelectMedium(medium); }

 private:
  Simulation simulation_;
  std::unique_ptr<CommsModule> module_;
};

Media SimulatedMedia(const SimulatorChoice& choice, Clock& clock) {
  return {.Kind = MediumKind::Simulated, .Name = "Simulated board", .Reason = {}, .Factory = [=, &clock] {
            return std::make_unique<SimulatedComms>(clock, choice, choice.Faults);
          }};
}

LinuxOptions LinuxOptionsOf(const MediaOptions& choice) {
  LinuxOptions options;
  options.Smbus = choice.Smbus;
  options.PrinterPort = choice.PrinterPort;
  options.Force = choice.Force;
  try {
    if (choice.Wiring) options.Wiring = ReadWiringFile(choice.Wiring->string());
  } catch (const CommsError& error) {
    throw UsageError(error.what());
  }
  return options;
}

Media LinuxMedia(const LinuxOptions& options, Clock& clock) {
  return {.Kind = MediumKind::Linux,
          .Name = FindLinuxBus(options).value_or("no SMBus adapter and no printer port"),
          .Reason = {},
          .Factory = [=, &clock] { return MakeLinuxComms(options, clock); }};
}

bool NamesHardware(const MediaOptions& options) {
  return options.Smbus || options.PrinterPort || options.Wiring || options.Force;
}

/// A user who names a bus must not mistake simulated values for those of that bus, and one who injects faults must not
/// get a run on hardware without them.
void CheckMedium(const MediaOptions& options) {
  if (options.Medium == MediumKind::Linux && !options.Simulator.LastNamed.empty()) {
    throw UsageError(options.Simulator.LastNamed + " needs --medium simulated");
  }
  if (options.Medium != MediumKind::Simulated || !NamesHardware(options)) return;
  const char* name = options.Smbus ? "--smbus" : options.PrinterPort ? "--printer-port" : "--force";
  throw UsageError(fmt::format("{} needs --medium linux", options.Wiring ? "--wiring" : name));
}

std::vector<Fault> FaultsOf(const std::vector<std::string>& texts) {
  std::vector<Fault> faults;
  for (const std::string& text : texts) {
    std::string why;
    const auto fault = ParseFault(text, &why);
    if (!fault) throw UsageError(fmt::format("--fault {}: {}", text, why));
    faults.push_back(*fault);
  }
  return faults;
}

void AddSimulatorOptions(CLI::App& app, SimulatorChoice& choice) {
  AddTextOption(app, "--speed", "X", "simulated: simulated seconds per second, 1 to 1000",
                [&](const std::string& text) {
                  choice.LastNamed = "--speed";
                  choice.Speed = NumberOf("--speed", text, 1, 1000);
                });
  AddTextOption(app, "--seed", "N", "simulated: noise seed, 0 to 4294967295", [&](const std::string& text) {
    choice.LastNamed = "--seed";
    constexpr long highest = std::numeric_limits<std::uint32_t>::max();
    choice.Seed = static_cast<std::uint32_t>(WholeNumberOf("--seed", text, 0, highest));
  });
  AddTextOption(
      app, "--board", "LIST",
      "simulated: board options, separated by commas: vid (VID follows its switches), pulses=2, ports=2, load=5 (W), "
      "noise=0",
      [&](const std::string& text) {
        choice.LastNamed = "--board";
        std::string why;
        const auto options = ParseBoard(choice, text, &why);
        if (!options) throw UsageError(fmt::format("--board {}: {}", text, why));
        static_cast<SimOptions&>(choice) = *options;
      });
  AddTextsOption(
      app, "--fault", "FAULT",
      "simulated: inject a fault, such as fail=20, fail=20+, slow=0.1, absent=5, stall=1, runaway=2, hunt=1, "
      "diode=1, company=55, stuck=5C:E0; may be repeated",
      [&](const std::vector<std::string>& texts) {
        choice.LastNamed = "--fault";
        choice.Faults = FaultsOf(texts);
      });
}

}  // namespace

void AddMediaOptions(CLI::App& app, MediaOptions& options) {
  AddTextOption(app, "--medium", "NAME", "bus to use: simulated (default), linux, or auto (linux if a bus is found)",
                [&](const std::string& text) { options.Medium = ValueOf<MediumKind>("--medium", text, mediumNames); });
  const auto addNode = [&](const std::string& name, const std::string& description, std::optional<int>& number) {
    AddTextOption(app, name, "N", description, [name, &number](const std::string& text) {
      number = static_cast<int>(WholeNumberOf(name, text, 0, highestNode));
    });
  };
  addNode("--smbus", "linux: use the bus /dev/i2c-N", options.Smbus);
  addNode("--printer-port", "linux: use the printer port /dev/parportN", options.PrinterPort);
  AddTextOption(app, "--wiring", "FILE", "linux: file with the pin assignment of the printer port",
                [&](const std::string& text) { options.Wiring = text; });
  AddFlag(app, "--force", options.Force, "linux: use the chip even if a kernel driver is bound to it");
  AddSimulatorOptions(app, options.Simulator);
  AddCheck(app, [&options] { CheckMedium(options); });
}

Media ChooseMedia(const MediaOptions& options, Clock& clock) {
  if (options.Medium == MediumKind::Simulated) return SimulatedMedia(options.Simulator, clock);
  const LinuxOptions buses = LinuxOptionsOf(options);
  if (options.Medium == MediumKind::Linux) return LinuxMedia(buses, clock);
  if (FindLinuxBus(buses) || NamesHardware(options)) {
    Media media = LinuxMedia(buses, clock);
    media.Reason = FindLinuxBus(buses) ? "Using the buses of this computer: " + media.Name
                                       : "A hardware option was given: not using the simulated board";
    return media;
  }
  Media media = SimulatedMedia(options.Simulator, clock);
  media.Reason = "No SMBus adapter or printer port found: using the simulated board";
  return media;
}

}  // namespace krx
