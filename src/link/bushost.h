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

/// Ask: only query who holds the write lock. Take: acquire it, if it is free, until the program ends. A write acquires
/// it implicitly.
enum class WriteRight { Ask, Take };

/// What a bus-access library for the buses of a real computer does in addition to its transfers: it distinguishes
/// several SMBus adapters, and keeps two programs from writing to the same chip. The simulated computer has one bus of
/// each kind and no other programs.
class BusHost {
 public:
  virtual ~BusHost() = default;

  /// The adapters to search, in this order. Throws CommsError when there is none.
  virtual std::vector<SmbusAdapter> SmbusAdapters() = 0;
  /// Directs all further SMBus transfers to this adapter. Opens nothing.
  virtual void UseSmbusAdapter(int number) = 0;
  /// The N of /dev/parportN for a port of the printer-port adapter.
  virtual int PortNumber(int port) = 0;

  /// Another program that holds the write lock, "krx5580-console (process 4711)", if any. On the SMBus the lock covers
  /// this 7-bit address of the adapter in use; on a printer port everything on the selected port, since a board's
  /// heaters and switches go with its chip. Nothing is transferred. Throws CommsError when the bus cannot be opened.
  virtual std::optional<std::string> SmbusHolder(std::uint8_t address, WriteRight right) = 0;
  virtual std::optional<std::string> PortHolder(WriteRight right) = 0;
};

}  // namespace krx
