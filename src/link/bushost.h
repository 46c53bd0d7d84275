// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace krx {

/// One of the SMBus adapters of a computer.
struct SmbusAdapter {
  int Number = 0;     ///< N of /dev/i2c-N
  std::string Label;  ///< "SMBus I801 adapter at 0700, i2c-1"
};

/// Ask: only look who has the right to write. Take: where nobody has it, it is this program's to its end. A write takes
/// it by itself.
enum class WriteRight { Ask, Take };

/// What a bus-access library over the buses of a real computer does beside its operations: it tells several SMBus
/// adapters apart, and keeps two programs from writing to one chip. The simulated computer has one of each bus and
/// nobody to share it with.
class BusHost {
 public:
  virtual ~BusHost() = default;

  /// The adapters that a search has to ask, one after the other. Throws CommsError when there is none.
  virtual std::vector<SmbusAdapter> SmbusAdapters() = 0;
  /// All SMBus transfers from now on go to this adapter. Opens nothing.
  virtual void UseSmbusAdapter(int number) = 0;
  /// N of /dev/parportN for a port of the printer-port adapter.
  virtual int PortNumber(int port) = 0;

  /// The program that has the right to write, "krx5580-console (process 4711)", if it is another one. On the SMBus: to
  /// this 7-bit address of the adapter in use; on a printer port: to whatever is at the selected one, since a board's
  /// heaters and switches go with its chip. Nothing is transferred. Throws CommsError when the bus cannot be opened.
  virtual std::optional<std::string> SmbusHolder(std::uint8_t address, WriteRight right) = 0;
  virtual std::optional<std::string> PortHolder(WriteRight right) = 0;
};

}  // namespace krx
