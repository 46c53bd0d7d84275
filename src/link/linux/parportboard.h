// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "link/clock.h"
#include "link/linux/parportnode.h"
#include "link/linux/portwiring.h"

namespace krx {

/// The evaluation board on a printer port: the implementation behind PrinterPortAdapter and BusDevice, which are
/// short-lived handles. Each bus operation is one transaction between claim and release of the port. Addresses are in
/// their 8-bit form; errors as in TwoWireMaster and ParportNode. A writing operation acquires the write lock first and
/// throws CommsError EBUSY naming the program that holds it.
class ParportBoard {
 public:
  /// port: the only port to offer, by its number N in /dev/parportN; none offers all. `kernel` and `clock` must outlive
  /// the board.
  ParportBoard(Kernel& kernel, Clock& clock, KernelRoots roots, const PortWiring& wiring, std::optional<int> port);

  /// Opens nothing.
  std::uint8_t PortCount() const;
  /// port: 0 to PortCount() - 1. Opens nothing; the previously selected port is closed.
  void SelectPort(std::uint8_t port);
  std::int32_t CurrentPort() const { return selected_; }

  void SendByte(std::uint8_t address, std::uint8_t data);
  std::uint8_t ReceiveByte(std::uint8_t address);
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg);
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data);

  /// Bits 4 and 5 drive the heater lines, the others are ignored. On an unused port a 0 is only stored and goes to the
  /// lines with the first use, so that a printer on that port is not disturbed. Heaters that were never set are left as
  /// found, since reading must not switch them; so they are while another program holds the write lock.
  void SetControlByte(std::uint8_t value);
  /// The heater lines read back, in bits 4 and 5. Without a line to read, the bit is the value last set.
  std::uint8_t ReadStatusByte();

  /// The N of /dev/parportN for a port number as used by SelectPort; -1 when there is none.
  int PortNumber(int port) const;
  /// Another program that holds the write lock of the selected port, if any.
  std::optional<std::string> Holder(WriteRight right);

  void SetBusMode(bool mode) { busMode_ = mode; }
  bool GetBusMode() const { return busMode_; }

  /// Closes the port; the next operation opens it again.
  void Close() { node_.Close(); }

 private:
  using Work = std::function<void(LineDriver& driver, TwoWireMaster& bus)>;
  enum class Purpose { Read, Write };
  std::vector<int> Ports() const;
  const PortLines& Lines() const { return wiring_.Modes[busMode_ ? 1 : 0]; }
  void OpenSelected();
  void Transaction(Purpose purpose, const Work& work);

  Clock& clock_;
  KernelRoots roots_;
  PortWiring wiring_;
  std::optional<int> onlyPort_;
  ParportNode node_;
  std::int32_t selected_ = 0;
  std::optional<std::uint8_t> control_;
  bool used_ = false;  ///< the selected port has been claimed
  bool busMode_ = false;
};

}  // namespace krx
