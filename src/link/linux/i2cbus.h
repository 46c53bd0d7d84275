// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "link/bushost.h"
#include "link/linux/kernel.h"

namespace krx {

/// One bus through /dev/i2c-N. The node is opened at the first transfer and kept, since opening and closing cost ten
/// times a transfer. Nothing is retried. On a hung bus a transfer blocks 0.2 to 1 s inside the kernel.
///
/// Errors carry the kernel's error number and a text that says what to do; NoAcknowledge when no device answered.
class I2cBus {
 public:
  /// force: also use an address that a kernel driver holds. `kernel` and `roots` must outlive the bus.
  I2cBus(Kernel& kernel, const KernelRoots& roots, int number, bool force);

  std::uint8_t Read(std::uint8_t address, std::uint8_t reg);
  /// Takes the right to write to the address before the first byte; throws CommsError EBUSY naming the program that has
  /// it. Close gives it back.
  void Write(std::uint8_t address, std::uint8_t reg, std::uint8_t data);
  /// Another program that has the right to write to the address.
  std::optional<std::string> Holder(std::uint8_t address, WriteRight right);
  /// Opens the node and takes the address, so that one in use is told before the first transfer.
  void Select(std::uint8_t address);

  /// Gives the node back; the next transfer opens it again.
  void Close();

 private:
  void OpenNode();
  bool Registered() const;
  void Transfer(std::uint8_t address, std::uint8_t reg, std::uint8_t direction, std::uint8_t& data);
  [[noreturn]] void FailedTransfer(int error, std::uint8_t address);
  [[noreturn]] void Gone(int error) const;

  const KernelRoots& roots_;
  int number_;
  bool force_;
  DeviceNode node_;
  std::set<std::uint8_t> taken_;  ///< addresses that this program has the right to write to
  bool wasRegistered_ = false;    ///< the kernel had this adapter when the node was opened
};

}  // namespace krx
