// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "link/bushost.h"
#include "link/clock.h"
#include "link/commsmodule.h"
#include "link/linux/kernel.h"
#include "link/linux/portwiring.h"

namespace krx {

/// Which of a PC's buses to use, and how.
struct LinuxOptions {
  std::optional<int> Smbus;        ///< N of /dev/i2c-N; none: all host SMBus adapters
  std::optional<int> PrinterPort;  ///< N of /dev/parportN; none: all ports
  PortWiring Wiring = DefaultWiring();
  bool Force = false;  ///< also use a chip that a kernel driver is bound to
  KernelRoots Roots = {};

  // Naming a bus of one kind excludes the other kind: a user who names an SMBus does not want a printer probed.
  bool UsesSmbus() const { return Smbus || !PrinterPort; }
  bool UsesPrinterPorts() const { return PrinterPort || !Smbus; }
};

/// The real buses of a Linux PC: its SMBus through i2c-dev, the evaluation board on a printer port through ppdev. The
/// constructor opens nothing. The objects it hands out must not outlive it.
class LinuxComms : public CommsModule, private BusHost {
 public:
  /// `kernel` and `clock` must outlive it.
  LinuxComms(const LinuxOptions& options, Kernel& kernel, Clock& clock);
  ~LinuxComms() override;

  std::unique_ptr<PrinterPortAdapter> ObtainPrinterPortAdapter() override;
  std::unique_ptr<SmbusController> ObtainSmbusController() override;
  /// Closes the medium that was not selected.
  void SelectMedium(int medium) override;
  BusHost* Host() override { return this; }

 private:
  std::vector<SmbusAdapter> SmbusAdapters() override;
  void UseSmbusAdapter(int number) override;
  int PortNumber(int port) override;
  std::optional<std::string> SmbusHolder(std::uint8_t address, WriteRight right) override;
  std::optional<std::string> PortHolder(WriteRight right) override;

  struct Buses;
  std::unique_ptr<Buses> buses_;
};

/// LinuxComms using the running kernel.
std::unique_ptr<CommsModule> MakeLinuxComms(const LinuxOptions& options, Clock& clock);

/// The buses selected by these options, for `--medium auto` and for titles: "SMBus I801 adapter at 0700, i2c-1",
/// "printer port 0", several joined by " and "; empty when none is named and this PC has none.
std::optional<std::string> FindLinuxBus(const LinuxOptions& options);

}  // namespace krx
