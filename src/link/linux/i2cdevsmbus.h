// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "link/bushost.h"
#include "link/commsmodule.h"
#include "link/linux/i2cbus.h"
#include "link/linux/kernel.h"

namespace krx {

/// The PC's SMBus through i2c-dev; errors as in I2cBus. A PC may have several host adapters (chipsets with a
/// multiplexed one do), each with its own devices at the same addresses. All transfers go to the selected adapter, so
/// that a missing device is never confused with one on another adapter.
class I2cDevSmbus : public SmbusController {
 public:
  /// number: the only bus to use; none: the host SMBus adapters. force: also use an address that a kernel driver is
  /// bound to. `kernel` must outlive it.
  I2cDevSmbus(Kernel& kernel, KernelRoots roots, std::optional<int> number, bool force);

  std::string ChipsetReport() override;
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) override;
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) override;
  /// Closes the buses that are not in use.
  void SetTargetAddress(std::uint8_t address) override;

  /// The adapters to search. Throws CommsError (ENODEV) when none is named and the PC has none.
  std::vector<SmbusAdapter> Adapters() const;
  /// Selects the adapter; before that the first of Adapters is in use.
  void Use(int number) { used_ = number; }
  /// As I2cBus::Holder, on the adapter in use.
  std::optional<std::string> Holder(std::uint8_t address, WriteRight right) { return Bus().Holder(address, right); }

  /// Closes the nodes; the next transfer opens its node again.
  void Close();

 private:
  I2cBus& Bus();

  Kernel& kernel_;
  KernelRoots roots_;
  std::optional<int> number_;
  bool force_;
  std::map<int, I2cBus> buses_;
  std::optional<int> used_;
};

}  // namespace krx
