// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

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

  /// Makes port `number` ours until Release: alone when that is granted; when another driver is registered on the port
  /// (the printer driver usually is), shared with it, but only while it is idle. Throws CommsError: what to do about a
  /// node that cannot be opened, EBUSY "printer port N is used by X".
  void Claim(int number);
  /// Ends the transaction; the node stays open.
  void Release();
  void Close();

  std::uint8_t Read(PortRegister which) override;
  void Write(PortRegister which, std::uint8_t value) override;

 private:
  void Open();
  void ClaimAlone();
  void ClaimShared();
  void Access(unsigned long request, std::uint8_t& value);
  [[noreturn]] void Used(const std::string& by);
  std::string ActiveDriver() const;
  std::string RegisteredDrivers() const;

  KernelRoots roots_;
  DeviceNode node_;
  int number_ = -1;
  bool shared_ = false;
};

}  // namespace krx
