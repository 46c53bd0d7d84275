// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "link/commsmodule.h"
#include "link/linux/kernel.h"

namespace krx {

/// The PC's SMBus through /dev/i2c-N. The node is opened at the first transfer and kept, since opening and closing
/// cost ten times a transfer. Nothing is retried. On a hung bus a transfer blocks 0.2 to 1 s inside the kernel.
///
/// Errors carry the kernel's error number and a text that says what to do; NoAcknowledge when no device answered.
class I2cDevSmbus : public SmbusController {
 public:
  /// number: the bus to use; none takes the first host SMBus adapter. force: also use an address that a kernel
  /// driver holds.
  I2cDevSmbus(Kernel& kernel, KernelRoots roots, std::optional<int> number, bool force);

  std::string ChipsetReport() override;
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) override;
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) override;
  /// Opens the node and takes the address, so that one in use is told before the first transfer.
  void SetTargetAddress(std::uint8_t address) override;

  /// Gives the node back; the next transfer opens it again.
  void Close() { node_.Close(); }

 private:
  void OpenNode();
  void Transfer(std::uint8_t address, std::uint8_t reg, std::uint8_t direction, std::uint8_t& data);
  [[noreturn]] void FailedTransfer(int number, std::uint8_t address);

  KernelRoots roots_;
  std::optional<int> number_;
  bool force_;
  DeviceNode node_;
  int bus_ = -1;  ///< number of the open node
};

}  // namespace krx
