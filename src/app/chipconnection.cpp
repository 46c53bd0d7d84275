// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/chipconnection.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <map>
#include <utility>

#include "app/registerargument.h"
#include "link/chipsearch.h"

namespace krx {
namespace {

const std::map<std::string, ChipBus> busNames{{"printer-port", ChipBus::PrinterPort}, {"smbus", ChipBus::Smbus}};

std::uint8_t SevenBitAddress(const ResultRow& row) {
  return row.Find ? static_cast<std::uint8_t>(row.Address / 2) : row.Address;
}

std::string PlaceOf(const ResultRow& row) {
  const std::string bus = row.Find ? fmt::format("printer port {}", row.Find->Port) : std::string("the SMBus");
  return fmt::format("chip at {:02X}h on {}", SevenBitAddress(row), bus);
}

}  // namespace

void AddChipOptions(CLI::App& app, ChipChoice& choice) {
  app.add_option("--bus", choice.Bus, "take the chip on this bus: printer-port or smbus")
      ->transform(CLI::CheckedTransformer(busNames, CLI::ignore_case).description(""))
      ->type_name("NAME");
  app.add_option("--address", choice.Address, "take the chip at this 7-bit address: 2Ch, 2Dh or 2Eh")
      ->type_name("ADDRESS");
}

ChipConnection::ChipConnection(krx::Media media, CommandHost& host)
    : host_(host),
      media_(std::move(media)),
      root_(media_.Factory),
      link_(root_, host.ChipClock(), host.Pump()),
      search_(link_) {}

std::vector<ResultRow> ChipConnection::Search(const ChipChoice& choice) {
  std::optional<std::uint8_t> address;
  if (!choice.Address.empty()) address = ByteFromArgument(choice.Address);
  if (!media_.Reason.empty()) host_.Err() << "krx5580: " << media_.Reason << '\n';

  const SearchMedia media{.PrinterPort = choice.Bus != ChipBus::Smbus, .Smbus = choice.Bus != ChipBus::PrinterPort};
  for (const SearchReport& report : search_.Search(media, 0, nullptr)) {
    host_.Err() << "krx5580: " << report.Text << '\n';
  }
  std::vector<ResultRow> rows = search_.Rows();
  std::erase_if(rows, [&](const ResultRow& row) { return address && SevenBitAddress(row) != *address; });
  return rows;
}

void ChipConnection::Find(const ChipChoice& choice) {
  const std::vector<ResultRow> rows = Search(choice);
  if (rows.empty()) {
    throw CommandFailure(fmt::format("no KRX5580 answers{}{} on: {}", choice.Address.empty() ? "" : " at ",
                                     choice.Address, media_.Name));
  }
  search_.Finish(rows.front());
  place_ = media_.Name + ", " + PlaceOf(rows.front());
}

std::string FoundChipLine(const ResultRow& row, bool json) {
  const int address = SevenBitAddress(row);
  if (!row.Find) {
    return json ? fmt::format(R"({{"address":"0x{:02X}","bus":"smbus"}})", address)
                : fmt::format("{:02X}h  SMBus", address);
  }
  return json
             ? fmt::format(R"({{"address":"0x{:02X}","bus":"printer-port","port":{},"busMode":{}}})", address,
                           row.Find->Port, row.Find->BusMode ? 1 : 0)
             : fmt::format("{:02X}h  printer port {}, bus mode {}", address, row.Find->Port, row.Find->BusMode ? 1 : 0);
}

}  // namespace krx
