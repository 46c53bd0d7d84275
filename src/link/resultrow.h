// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "link/bushost.h"

namespace krx {

/// A chip found through the printer-port adapter, with what it takes to reach it again.
struct PrinterFind {
  std::uint8_t Address;  ///< 8-bit form
  std::int32_t Port;     ///< as the adapter reported it
  bool BusMode;          ///< as the device reported it
  int Number;            ///< N of /dev/parportN; the port itself where there are no such nodes
  std::string Holder;    ///< the other program that has the right to write there; empty: none
};

/// A chip found on the SMBus.
struct SmbusFind {
  std::uint8_t Address;                 ///< 7-bit form
  std::optional<SmbusAdapter> Adapter;  ///< the one behind which it is, where there can be several
  std::string Holder;                   ///< as PrinterFind has it
};

/// One row of the result list. Finish goes by what was found; the text only shows it.
struct ResultRow {
  std::string Text;
  std::uint8_t Address = 0;                  ///< what ChipAddress becomes: 8-bit form or 7-bit form
  std::optional<PrinterFind> Find = {};      ///< set for a printer row
  std::optional<SmbusAdapter> Adapter = {};  ///< of an SMBus row
  std::string Bus = {};  ///< "printer port 0", "SMBus I801 adapter at 0700, i2c-1", "the SMBus" where there is only one
  std::string Holder = {};  ///< the other program that has the right to write to the chip; empty: none

  std::uint8_t SevenBitAddress() const { return Find ? static_cast<std::uint8_t>(Address / 2) : Address; }
  /// "2Dh on printer port 0, used by krx5580-console (process 4711)".
  std::string Place() const;
};

/// number: of the row among the printer rows, from 1.
ResultRow PrinterRow(const PrinterFind& find, int number);
ResultRow SmbusRow(const SmbusFind& find);

}  // namespace krx
