// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/resultrow.h"

#include <fmt/format.h>

namespace krx {
namespace {

// Blanks that move the key at the end of a row out of the visible part of the list.
constexpr int printerRowBlanks = 50;
constexpr int smbusRowBlanks = 98;

}  // namespace

std::string ResultRow::Place() const {
  return fmt::format("{:02X}h on {}{}{}", SevenBitAddress(), Bus, Holder.empty() ? "" : ", in use by ", Holder);
}

ResultRow PrinterRow(const PrinterFind& find, int number) {
  return {.Text = fmt::format("Found an KRX5580 at:{:X}h, on printer port:{:X}h{:{}}Printer {}", find.Address / 2,
                              find.Port, "", printerRowBlanks, number),
          .Address = find.Address,
          .Find = find,
          .Bus = fmt::format("printer port {}", find.Number),
          .Holder = find.Holder};
}

ResultRow SmbusRow(const SmbusFind& find) {
  return {.Text = fmt::format("An KRX5580 was found at:{0:X}h, on the SMBus{1:{2}}SMBus{0:X}", find.Address, "",
                              smbusRowBlanks),
          .Address = find.Address,
          .Adapter = find.Adapter,
          .Bus = find.Adapter ? find.Adapter->Label : "the SMBus",
          .Holder = find.Holder};
}

}  // namespace krx
