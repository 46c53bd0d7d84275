// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/media.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <map>
#include <utility>

#include "link/commserror.h"
#include "link/linux/linuxcomms.h"
#include "registers/numerics.h"
#include "simulator/simcomms.h"
#include "simulator/simwords.h"

namespace krx {
namespace {

// "Invalid procedure call": what was asked for makes no sense.
constexpr int invalidCall = 5;
// The kernel has 20 bits for the number of a device node.
constexpr double highestNode = 1048575;

const std::map<std::string, MediumKind> mediumNames{
    {"auto", MediumKind::Auto}, {"simulated", MediumKind::Simulated}, {"linux", MediumKind::Linux}};

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
  SimOptions options;
  options.Seed = choice.Seed;
  options.Speed = choice.Speed;
  std::vector<Fault> faults;
  for (const std::string& text : choice.Faults) {
    const auto fault = ParseFault(text);
    if (!fault) throw CommsError(invalidCall, fmt::format("The fault \"{}\" cannot be read", text));
    faults.push_back(*fault);
  }
  return {.Kind = MediumKind::Simulated, .Name = "Simulated board", .Reason = {}, .Factory = [=, &clock] {
            return std::make_unique<SimulatedComms>(clock, options, faults);
          }};
}

LinuxOptions LinuxOptionsOf(const MediaOptions& choice) {
  LinuxOptions options;
  options.Smbus = choice.Smbus;
  options.PrinterPort = choice.PrinterPort;
  if (choice.Wiring) options.Wiring = ReadWiringFile(choice.Wiring->string());
  options.Force = choice.Force;
  options.Roots = KernelRoots::FromEnvironment();
  return options;
}

Media LinuxMedia(const LinuxOptions& options, Clock& clock) {
  return {.Kind = MediumKind::Linux,
          .Name = FindLinuxBus(options).value_or("This computer's buses"),
          .Reason = {},
          .Factory = [=, &clock] { return MakeLinuxComms(options, clock); }};
}

bool NamesHardware(const MediaOptions& options) {
  return options.Smbus || options.PrinterPort || options.Wiring || options.Force;
}

/// Our own number rules, because the parser's range check lets "nan" pass.
CLI::Validator NumberBetween(double minimum, double maximum) {
  return {[=](std::string& text) {
            const double value = Val(text);
            if (IsNumber(text) && value >= minimum && value <= maximum) return std::string();
            return fmt::format("must be a number from {} to {}", minimum, maximum);
          },
          ""};
}

}  // namespace

void AddMediaOptions(CLI::App& app, MediaOptions& options) {
  app.add_option("--medium", options.Medium, "bus to use: simulated (default), linux, or auto for what is there")
      ->transform(CLI::CheckedTransformer(mediumNames, CLI::ignore_case).description(""))
      ->type_name("NAME")
      ->take_last();
  app.add_option("--smbus", options.Smbus, "linux: use the bus /dev/i2c-N")
      ->type_name("N")
      ->check(NumberBetween(0, highestNode))
      ->take_last();
  app.add_option("--printer-port", options.PrinterPort, "linux: use the printer port /dev/parportN")
      ->type_name("N")
      ->check(NumberBetween(0, highestNode))
      ->take_last();
  app.add_option("--wiring", options.Wiring, "linux: which printer-port line carries what")
      ->type_name("FILE")
      ->take_last();
  app.add_flag("--force", options.Force, "linux: also use a chip that a kernel driver holds");
  app.add_option("--speed", options.Simulator.Speed, "simulated: model seconds a second, 1 to 1000")
      ->type_name("X")
      ->check(NumberBetween(1, 1000))
      ->take_last();
  app.add_option("--seed", options.Simulator.Seed, "simulated: seed of the noise")->type_name("N")->take_last();
  app.add_option("--fault", options.Simulator.Faults,
                 "simulated: plan a fault, such as fail=20, fail=20+, slow=0.1, absent=5, stall=1, runaway=2, diode=1, "
                 "company=55; may be repeated")
      ->type_name("FAULT")
      ->take_all()
      ->allow_extra_args(false);
}

Media ChooseMedia(const MediaOptions& options, Clock& clock) {
  if (options.Medium == MediumKind::Simulated) {
    // Whoever names a bus must not take the simulated values for those of that bus.
    if (NamesHardware(options)) {
      throw CommsError(invalidCall, "--smbus, --printer-port, --wiring and --force need --medium linux");
    }
    return SimulatedMedia(options.Simulator, clock);
  }
  const LinuxOptions buses = LinuxOptionsOf(options);
  if (options.Medium == MediumKind::Linux) return LinuxMedia(buses, clock);
  if (FindLinuxBus(buses) || NamesHardware(options)) {
    Media media = LinuxMedia(buses, clock);
    media.Reason = "This computer has a bus to search: " + media.Name;
    return media;
  }
  Media media = SimulatedMedia(options.Simulator, clock);
  media.Reason = "This computer has no SMBus adapter and no printer port: this is the simulated board";
  return media;
}

}  // namespace krx
