// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/commandhost.h"
#include "app/media.h"
#include "link/chipsearch.h"
#include "link/commsroot.h"
#include "link/linknewcomport06.h"

namespace CLI {
class App;
}

namespace krx {

enum class ChipBus { PrinterPort, Smbus };

/// Selects one of the chips found; an unset member matches any chip.
struct ChipChoice {
  std::optional<ChipBus> Bus;
  std::optional<std::uint8_t> Address;  ///< 7-bit form
};

/// Adds --bus and --address. `choice` must outlive the parsing.
void AddChipOptions(CLI::App& app, ChipChoice& choice);

/// The user stopped the program before the command had begun.
class Interrupted : public CommandFailure {
 public:
  Interrupted() : CommandFailure("interrupted") {}
};

/// The bus and the link of one command. Nothing is touched before Find.
class ChipConnection {
 public:
  ChipConnection(krx::Media media, CommandHost& host);

  /// Searches the buses; returns every chip that matches the choice, those on printer ports first. Messages of the
  /// search go to the host's Err. Throws Interrupted when the user stops the program; the search is then abandoned
  /// between two transfers.
  std::vector<ResultRow> Search(const ChipChoice& choice);
  /// False when one of the searched buses failed.
  bool SearchedAll() const { return searchedAll_; }

  /// Before a command writes: acquires the write lock and keeps it to the end. Throws CommandFailure naming the program
  /// that holds it, CommsError when the bus cannot be opened.
  void TakeChip();

  /// Searches the buses for the chip and points the link to the first one that matches the choice. Throws
  /// CommandFailure when there is none, and what Search throws.
  void Find(const ChipChoice& choice);

  Link& ChipLink() { return link_; }
  const krx::Media& Media() const { return media_; }
  /// What Find throws when no chip was found.
  CommandFailure NotFound(const ChipChoice& choice) const;
  /// What was searched: "Simulated board", "SMBus I801 adapter at 0700, i2c-1 and printer port 0".
  std::string Searched() const;
  /// "Simulated board, chip at 2Dh on printer port 0", "SMBus I801 adapter at 0700, i2c-1, chip at 2Dh", once a chip is
  /// found.
  const std::string& Place() const { return place_; }
  /// The same for a chip that the search has found.
  std::string PlaceOf(const ResultRow& row) const;

 private:
  CommandHost& host_;
  krx::Media media_;
  CommsRoot root_;
  Link link_;
  ChipSearch search_;
  std::string place_;
  bool searchedAll_ = true;
};

/// One found chip: "2Dh  printer port 0, bus mode 0", "2Eh  SMBus I801 adapter at 0700, i2c-1", or a JSON object
/// including its place.
std::string FoundChipLine(const ResultRow& row, bool json, const std::string& place);

}  // namespace krx
