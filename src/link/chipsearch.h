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

/// The media that the user ticked.
struct SearchMedia {
  bool PrinterPort = false;
  bool Smbus = false;
  bool Usb = false;
  bool Any() const { return PrinterPort || Smbus || Usb; }
};

/// A message box of a routine that went on past failing operations.
struct SearchReport {
  std::string Title;
  std::string Text;
  /// Both where there is no box: "Search SMBus: Error: 57, Device I/O error".
  std::string Line() const;
};

/// Finds the chip on the media and hands the chosen one to the link. Probes through the CommsModule directly, since
/// the link has no medium yet.
class ChipSearch {
 public:
  /// Called with the progress value, 0 to ProgressMaximum.
  using Progress = std::function<void(int)>;

  explicit ChipSearch(Link& link);

  /// Creates the CommsModule and puts the board's control byte to 0. Goes on past failing operations.
  void Load();

  /// Asks the SMBus host for its report. A failure is returned in `report`.
  std::optional<MediumReport> ReadChipset(std::optional<SearchReport>& report);

  /// 33 for each ticked medium; the printer port counts only when the adapter reports a port.
  int ProgressMaximum(const SearchMedia& media);

  /// Searches printer port, SMBus and USB in this order; appends to the finds. The progress ends at `maximum`, as
  /// ProgressMaximum gave it. Returns the message boxes to show, one per routine that had a failing operation. An
  /// address that no device acknowledges is no failure. Given up between two transfers when the program is to end.
  std::vector<SearchReport> Search(const SearchMedia& media, int maximum, const Progress& progress);

  void ClearFinds();
  /// The ports and adapters that the last search asked: "SMBus I801 adapter at 0700, i2c-1 and printer port 0"; empty
  /// when there were none.
  std::string Searched() const;

  /// Printer rows first, then SMBus rows, each in order of finding.
  std::vector<ResultRow> Rows() const;

  /// Applies port, bus mode, device address and medium of the row and writes the link state. Goes on past failing
  /// operations: the link state is set in any case.
  void Finish(const ResultRow& row);

  /// The bus of the chip that Finish chose, as its row names it.
  const std::string& ChosenBus() const { return chosenBus_; }

  /// After Finish, before anything is written: takes the right to write to the chip for this program. Returns the
  /// program that has it, if it is another one. A read-only run leaves it alone. Throws CommsError when the bus cannot
  /// be opened.
  std::optional<std::string> TakeChip();

  /// Searches and finishes with the first row. Throws CommsError when there is none, saying what was searched and what
  /// went wrong there; GivenUp when the program is to end. Returns what TakeChip returns.
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
