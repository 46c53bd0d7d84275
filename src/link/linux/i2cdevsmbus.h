// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "link/commsmodule.h"
#include "link/linux/i2cbus.h"
#include "link/linux/kernel.h"

namespace krx {

/// The PC's SMBus through i2c-dev; errors as I2cBus has them. A PC may have several host adapters (chip sets with a
/// multiplexed one do). Without a number, the first transfer with an address goes to each in turn; the bus on which a
/// device acknowledged keeps that address to the end, so that a vanished device is not mistaken for another one.
class I2cDevSmbus : public SmbusController {
 public:
  /// number: the only bus to use; none: the host SMBus adapters. force: also use an address that a kernel driver holds.
  /// `kernel` must outlive it.
  I2cDevSmbus(Kernel& kernel, KernelRoots roots, std::optional<int> number, bool force);

  std::string ChipsetReport() override;
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) override;
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) override;
  /// Gives back the other buses.
  void SetTargetAddress(std::uint8_t address) override;

  /// Gives the nodes back; the next transfer opens its own again.
  void Close();

 private:
  using Work = std::function<void(I2cBus&)>;
  I2cBus& Bus(int number);
  void OnBusOf(std::uint8_t address, const Work& work);

  Kernel& kernel_;
  KernelRoots roots_;
  std::optional<int> number_;
  bool force_;
  std::map<int, I2cBus> buses_;
  std::map<std::uint8_t, int> busOf_;  ///< by device address
};

}  // namespace krx
