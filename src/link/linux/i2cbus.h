// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "link/bushost.h"
#include "link/linux/kernel.h"

namespace krx {

/// One bus through /dev/i2c-N. The node is opened at the first transfer and kept open, since opening and closing take
/// ten times as long as a transfer. Nothing is retried. On a hung bus a transfer blocks for 0.2 to 1 s inside the
/// kernel.
///
/// Errors carry the kernel's error number and a text that says what to do; NoAcknowledge when no device responded.
class I2cBus {
 public:
  /// force: also use an address that a kernel driver is bound to. `kernel` and `roots` must outlive the bus.
  I2cBus(Kernel& kernel, const KernelRoots& roots, int number, bool force);

  std::uint8_t Read(std::uint8_t address, std::uint8_t reg);
  /// Acquires the write lock of the address before the first byte; throws CommsError EBUSY naming the program that
  /// holds it. Close releases it.
  void Write(std::uint8_t address, std::uint8_t reg, std::uint8_t data);
  /// Another program that holds the write lock of the address, if any.
  std::optional<std::string> Holder(std::uint8_t address, WriteRight right);
  /// Opens the node and sets the address, so that an address in use is reported before the first transfer.
  void Select(std::uint8_t address);

  /// Closes the node; the next transfer opens it again.
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
  std::set<std::uint8_t> taken_;  ///< addresses whose write lock this program holds
  bool wasRegistered_ = false;    ///< the adapter was registered when the node was opened
};

}  // namespace krx
