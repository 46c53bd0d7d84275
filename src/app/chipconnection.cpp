// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/chipconnection.h"

#include <fmt/format.h>

#include <array>
#include <utility>

#include "app/jsontext.h"
#include "app/optiontexts.h"
#include "app/registerargument.h"
#include "link/chipsearch.h"

namespace krx {
namespace {

constexpr std::array<Named<ChipBus>, 2> busNames{{{"printer-port", ChipBus::PrinterPort}, {"smbus", ChipBus::Smbus}}};
constexpr std::uint8_t lowestAddress = 0x2C, highestAddress = 0x2E;

std::uint8_t ChipAddressOf(const std::string& text) {
  try {
    const std::uint8_t address = ByteFromArgument(text);
    if (address >= lowestAddress && address <= highestAddress) return address;
  } catch (const UsageError&) {  // its text is about a register's value; the one below fits
  }
  throw UsageError(fmt::format("--address takes 2Ch, 2Dh or 2Eh, not \"{}\"", text));
}

}  // namespace

void AddChipOptions(CLI::App& app, ChipChoice& choice) {
  AddTextOption(app, "--bus", "NAME", "use the chip on this bus: printer-port or smbus",
                [&](const std::string& text) { choice.Bus = ValueOf<ChipBus>("--bus", text, busNames); });
  AddTextOption(app, "--address", "ADDRESS", "use the chip at this 7-bit address: 2Ch, 2Dh or 2Eh",
                [&](const std::string& text) { choice.Address = ChipAddressOf(text); });
}

ChipConnection::ChipConnection(krx::Media media, CommandHost& host)
    : host_(host),
      media_(std::move(media)),
      root_(media_.Factory),
      link_(root_, host.ChipClock(), host.Pump()),
      search_(link_) {
  link_.EndAsked = [&host] { return host.StopRequested(); };
}

std::vector<ResultRow> ChipConnection::Search(const ChipChoice& choice) {
  if (!media_.Reason.empty()) host_.Err() << "krx5580: " << media_.Reason << '\n';

  const SearchMedia media{.PrinterPort = choice.Bus != ChipBus::Smbus, .Smbus = choice.Bus != ChipBus::PrinterPort};
  for (const SearchReport& report : search_.Search(media, 0, nullptr)) {
    searchedAll_ = false;
    host_.Err() << "krx5580: " << report.Line() << '\n';
  }
  if (host_.StopRequested()) throw Interrupted();
  std::vector<ResultRow> rows = search_.Rows();
  std::erase_if(rows, [&](const ResultRow& row) { return choice.Address && row.SevenBitAddress() != *choice.Address; });
  return rows;
}

void ChipConnection::Find(const ChipChoice& choice) {
  const std::vector<ResultRow> rows = Search(choice);
  if (rows.empty()) throw NotFound(choice);
  const ResultRow& row = rows.front();
  search_.Finish(row);
  place_ = PlaceOf(row);
}

std::string ChipConnection::PlaceOf(const ResultRow& row) const {
  return media_.Kind == MediumKind::Simulated
             ? fmt::format("{}, chip at {:02X}h on {}", media_.Name, row.SevenBitAddress(), row.Bus)
             : fmt::format("{}, chip at {:02X}h", row.Bus, row.SevenBitAddress());
}

void ChipConnection::TakeChip() {
  if (const auto holder = search_.TakeChip()) {
    throw CommandFailure(fmt::format("{} is in use by {} and can only be read", place_, *holder));
  }
}

std::string ChipConnection::Searched() const {
  if (media_.Kind == MediumKind::Simulated) return media_.Name;
  const std::string buses = search_.Searched();
  return buses.empty() ? "no bus" : buses;
}

CommandFailure ChipConnection::NotFound(const ChipChoice& choice) const {
  const std::string address = choice.Address ? fmt::format(" at {:02X}h", *choice.Address) : "";
  const bool none = search_.Searched().empty();
  return CommandFailure(
      fmt::format("no KRX5580 found{}{}", address, none ? ": this computer has no such bus" : " on: " + Searched()));
}

std::string FoundChipLine(const ResultRow& row, bool json, const std::string& place) {
  const int address = row.SevenBitAddress();
  if (!json) {
    if (row.Find) return fmt::format("{:02X}h  {}, bus mode {}", address, row.Bus, row.Find->BusMode ? 1 : 0);
    return fmt::format("{:02X}h  {}", address, row.Adapter ? row.Bus : "SMBus");
  }
  std::string bus = R"("smbus")";
  if (row.Adapter) bus += fmt::format(R"(,"adapter":"i2c-{}")", row.Adapter->Number);
  if (row.Find) {
    bus = fmt::format(R"("printer-port","port":{},"busMode":{})", row.Find->Number, row.Find->BusMode ? 1 : 0);
  }
  return fmt::format(R"({{"address":"0x{:02X}","bus":{},"source":{}}})", address, bus, JsonText(place));
}

}  // namespace krx
