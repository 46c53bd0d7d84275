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

/// The evaluation board on a printer port: what PrinterPortAdapter and BusDevice do, kept for handles that come and go.
/// Each bus operation is one transaction between claim and release of the port. Addresses are in their 8-bit form;
/// errors as TwoWireMaster and ParportNode have them. One that changes something takes the right to write first, and
/// throws CommsError EBUSY naming the program that has it.
class ParportBoard {
 public:
  /// port: the only port to offer, by its number N in /dev/parportN; none offers all. `kernel` and `clock` must outlive
  /// the board.
  ParportBoard(Kernel& kernel, Clock& clock, KernelRoots roots, const PortWiring& wiring, std::optional<int> port);

  /// Opens nothing.
  std::uint8_t PortCount() const;
  /// port: 0 to PortCount() - 1. Opens nothing; the port selected before is given back.
  void SelectPort(std::uint8_t port);
  std::int32_t CurrentPort() const { return selected_; }

  void SendByte(std::uint8_t address, std::uint8_t data);
  std::uint8_t ReceiveByte(std::uint8_t address);
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg);
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data);

  /// Bits 4 and 5 go to the heater lines, the others nowhere. While a port has not been used, a 0 is only remembered
  /// and goes to the lines with the first use, so that a printer that nobody mentioned is not disturbed. Heaters that
  /// were never set stay as they were found: who only reads must not switch them. So they do as long as another program
  /// has the right to write there.
  void SetControlByte(std::uint8_t value);
  /// The heater lines read back, in bits 4 and 5. A heater without a line to read: as it was set.
  std::uint8_t ReadStatusByte();

  /// N of /dev/parportN of a port that SelectPort takes; -1 for none.
  int PortNumber(int port) const;
  /// Another program that has the right to write to what is at the selected port.
  std::optional<std::string> Holder(WriteRight right);

  void SetBusMode(bool mode) { busMode_ = mode; }
  bool GetBusMode() const { return busMode_; }

  /// Gives the port back to others; the next operation takes it again.
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
