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

/// One printer port through /dev/parportN, claimed for a transaction at a time. A failing access closes the node, so
/// that the next Claim starts afresh when the port is back.
class ParportNode : public PortRegisters {
 public:
  ParportNode(Kernel& kernel, KernelRoots roots);

  /// Opens the node of port `number`, if it is not open; claims nothing, so that other programs go on. Throws
  /// CommsError: what to do about a node that cannot be opened.
  void Open(int number);
  /// Another program that has the right to write to what is at the port. Open first; Close gives the right back.
  std::optional<std::string> Holder(WriteRight right);
  /// Makes the opened port ours until Release. Waits up to half a second for another program's transaction; a driver
  /// that is no program's, such as that of a printer, is not waited for. Throws CommsError EBUSY "printer port N is
  /// used by X".
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
  /// Nothing while the port is idle, or where the kernel does not tell.
  std::optional<std::string> ActiveDriver() const;

  KernelRoots roots_;
  DeviceNode node_;
  int number_ = -1;
  bool taken_ = false;   ///< this program has the right to write
  bool worked_ = false;  ///< the port has been claimed in this run
};

}  // namespace krx
