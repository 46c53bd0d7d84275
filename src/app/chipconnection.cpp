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
    : host_(host), media_(std::move(media)), root_(media_.Factory), link_(root_, host.ChipClock(), host.Pump()) {}

void ChipConnection::Find(const ChipChoice& choice) {
  std::optional<std::uint8_t> address;
  if (!choice.Address.empty()) address = ByteFromArgument(choice.Address);
  if (!media_.Reason.empty()) host_.Err() << "krx5580: " << media_.Reason << '\n';

  ChipSearch search(link_);
  const SearchMedia media{.PrinterPort = choice.Bus != ChipBus::Smbus, .Smbus = choice.Bus != ChipBus::PrinterPort};
  for (const SearchReport& report : search.Search(media, 0, nullptr)) host_.Err() << "krx5580: " << report.Text << '\n';

  for (const ResultRow& row : search.Rows()) {
    if (address && SevenBitAddress(row) != *address) continue;
    search.Finish(row);
    place_ = media_.Name + ", " + PlaceOf(row);
    return;
  }
  throw CommandFailure(fmt::format("no KRX5580 {} on: {}",
                                   address ? fmt::format("answers at {:02X}h", *address) : std::string("answers"),
                                   media_.Name));
}

}  // namespace krx
