// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "link/bushost.h"

#include "link/linux/kernel.h"
#include "link/linux/twowiremaster.h"

namespace krx {

/// Numbers N of the PC's printer ports, ascending. Opens nothing.
std::vector<int> ListPrinterPorts(const KernelRoots& roots);

/// One printer port through /dev/parportN, claimed for one transaction at a time. A failed access closes the node, so
/// that the next Claim starts from scratch when the port is back.
class ParportNode : public PortRegisters {
 public:
  ParportNode(Kernel& kernel, KernelRoots roots);

  /// Opens the node of port `number`, if it is not open; does not claim the port, so that other programs can use it.
  /// Throws CommsError saying what to do when the node cannot be opened.
  void Open(int number);
  /// Another program that holds the write lock of the port, if any. Call Open first; Close releases the lock.
  std::optional<std::string> Holder(WriteRight right);
  /// Claims the open port until Release. Waits up to half a second for another program's transaction, but not for other
  /// drivers such as that of a printer. Throws CommsError EBUSY "printer port N is in use by X".
  void Claim();
  /// Ends the transaction; the node stays open and others may claim the port.
  void Release();
  void Close();

  std::uint8_t Read(PortRegister which) override;
  void Write(PortRegister which, std::uint8_t value) override;

 private:
  void Access(unsigned long request, std::uint8_t& value);
  [[noreturn]] void Used(const std::string& by);
  [[noreturn]] void Failed(int number);
  std::string Path() const;
  /// Empty while the port is idle or when the kernel does not report it.
  std::optional<std::string> ActiveDriver() const;

  KernelRoots roots_;
  DeviceNode node_;
  int number_ = -1;
  bool taken_ = false;   ///< this program holds the write lock
  bool worked_ = false;  ///< the port has been claimed in this run
};

}  // namespace krx
