// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "link/bushost.h"

namespace krx {

/// A chip found through the printer-port adapter, with everything needed to access it again.
struct PrinterFind {
  std::uint8_t Address;  ///< 8-bit form
  std::int32_t Port;     ///< as reported by the adapter
  bool BusMode;          ///< as reported by the device
  int Number;            ///< N of /dev/parportN; equals Port when there are no such nodes
  std::string Holder;    ///< the other program that holds the write lock; empty: none
};

/// A chip found on the SMBus.
struct SmbusFind {
  std::uint8_t Address;                 ///< 7-bit form
  std::optional<SmbusAdapter> Adapter;  ///< set when there can be several adapters
  std::string Holder;                   ///< as in PrinterFind
};

/// One row of the result list. Finish uses the data; the text is for display only.
struct ResultRow {
  std::string Text;
  std::uint8_t Address = 0;                  ///< for ChipAddress: 8-bit or 7-bit form
  std::optional<PrinterFind> Find = {};      ///< set for a printer row
  std::optional<SmbusAdapter> Adapter = {};  ///< of an SMBus row
  std::string Bus = {};  ///< "printer port 0", "SMBus I801 adapter at 0700, i2c-1", "the SMBus" where there is only one
  std::string Holder = {};  ///< the other program that holds the write lock of the chip; empty: none

  std::uint8_t SevenBitAddress() const { return Find ? static_cast<std::uint8_t>(Address / 2) : Address; }
  /// "2Dh on printer port 0, in use by krx5580-console (process 4711)".
  std::string Place() const;
};

/// number: position among the printer-port rows, from 1.
ResultRow PrinterRow(const PrinterFind& find, int number);
ResultRow SmbusRow(const SmbusFind& find);

}  // namespace krx
