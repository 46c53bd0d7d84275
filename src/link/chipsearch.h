// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "link/commserror.h"
#include "link/linknewcomport06.h"
#include "link/mediumreport.h"
#include "link/resultrow.h"

namespace krx {

/// The media selected for the search.
struct SearchMedia {
  bool PrinterPort = false;
  bool Smbus = false;
  bool Usb = false;
  bool Any() const { return PrinterPort || Smbus || Usb; }
};

/// The message box of a routine that continued after failed operations.
struct SearchReport {
  std::string Title;
  std::string Text;
  /// Both as one line, for programs without boxes: "Search SMBus: Error: 57, Device I/O error".
  std::string Line() const;
};

/// Finds the chip on the media and hands the chosen one to the link. Probes through the CommsModule directly, since
/// the link has no medium yet.
class ChipSearch {
 public:
  /// Called with the progress value, 0 to ProgressMaximum.
  using Progress = std::function<void(int)>;

  explicit ChipSearch(Link& link);

  /// Creates the CommsModule and sets the board's control byte to 0. Continues after failed operations.
  void Load();

  /// Asks the SMBus host for its report. A failure is returned in `report`.
  std::optional<MediumReport> ReadChipset(std::optional<SearchReport>& report);

  /// 33 per selected medium; the printer port counts only when the adapter reports a port.
  int ProgressMaximum(const SearchMedia& media);

  /// Searches printer port, SMBus and USB in this order; appends to the finds. The progress ends at `maximum`, as
  /// returned by ProgressMaximum. Returns the message boxes to show, one per routine with a failed operation. An
  /// address that no device acknowledges is not a failure. Abandoned between two transfers when the program is asked to
  /// end.
  std::vector<SearchReport> Search(const SearchMedia& media, int maximum, const Progress& progress);

  void ClearFinds();
  /// The ports and adapters of the last search: "SMBus I801 adapter at 0700, i2c-1 and printer port 0"; empty when
  /// there were none.
  std::string Searched() const;

  /// Printer-port rows first, then SMBus rows, each in the order found.
  std::vector<ResultRow> Rows() const;

  /// Applies port, bus mode, device address and medium of the row and sets the link state. Continues after failed
  /// operations: the link state is set in any case.
  void Finish(const ResultRow& row);

  /// The bus of the chip chosen by Finish, as named in its row.
  const std::string& ChosenBus() const { return chosenBus_; }

  /// After Finish, before anything is written: acquires the write lock of the chip. Returns the other program that
  /// holds it, if any. A read-only run does not acquire it. Throws CommsError when the bus cannot be opened.
  std::optional<std::string> TakeChip();

  /// Searches and finishes with the first row. Throws CommsError when there is none, naming what was searched and what
  /// failed there; GivenUp when the program is asked to end. Returns what TakeChip returns.
  std::optional<std::string> ConnectFirst(const SearchMedia& media);

 private:
  void SearchPrinterPort(std::vector<SearchReport>& reports);
  void SearchSmbus(std::vector<SearchReport>& reports);
  void SearchUsb();
  void Advance(int step);
  std::uint8_t CountPorts();

  Link& link_;
  Progress progress_;
  int progressValue_ = 0;
  int progressMaximum_ = 0;
  std::vector<PrinterFind> printerFinds_;
  std::vector<SmbusFind> smbusFinds_;
  std::vector<std::string> searched_;
  std::string chosenBus_;
};

}  // namespace krx
