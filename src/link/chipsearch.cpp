// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/chipsearch.h"

#include <fmt/format.h>

#include <algorithm>

#include "link/bushost.h"
#include "registers/chip.h"

namespace krx {
namespace {

// The three addresses at which the chip can answer, in their 8-bit form.
constexpr std::array<std::uint8_t, 3> candidateAddresses{0x58, 0x5A, 0x5C};

constexpr int noChipFound = 5;  // "Invalid procedure call"

constexpr int progressPerMedium = 33;
constexpr int progressPerPort = progressPerMedium / 4;
constexpr int progressPerAddress = progressPerMedium / (static_cast<int>(candidateAddresses.size()) - 1);

/// Runs operations one after the other, keeps the first failure and continues.
class Routine {
 public:
  explicit Routine(std::string title) : title_(std::move(title)) {}

  template <typename Operation>
  bool Try(Operation operation) {
    try {
      operation();
      return true;
    } catch (const CommsError& error) {
      if (!text_) text_ = error.BoxText();
      return false;
    }
  }

  /// Whether the company ID matches; false when no device answers or the transfer fails.
  template <typename Read>
  bool IsChip(Read read) {
    bool found = false;
    Try([&] {
      try {
        found = read() == chip::ExpectedCompanyId;
      } catch (const NoAcknowledge&) {
        // The normal case in a search.
      }
    });
    return found;
  }

  std::optional<SearchReport> Report() const {
    if (!text_) return std::nullopt;
    return SearchReport{title_, *text_};
  }

 private:
  std::string title_;
  std::optional<std::string> text_;
};

/// A failure is ignored here: taking the chip will report it.
template <typename Ask>
std::string HolderText(Ask ask) {
  std::optional<std::string> holder;
  Routine("").Try([&] { holder = ask(); });
  return holder.value_or("");
}

void Append(std::vector<SearchReport>& reports, const Routine& routine) {
  if (auto report = routine.Report()) reports.push_back(*report);
}

}  // namespace

std::string SearchReport::Line() const {
  const std::size_t comma = Title.find(", ");
  return (comma == std::string::npos ? Title : Title.substr(comma + 2)) + ": " + Text;
}

ChipSearch::ChipSearch(Link& link) : link_(link) {}

void ChipSearch::Load() {
  Routine("").Try([&] { link_.Root().Get().ObtainPrinterPortAdapter()->ObtainBusDevice()->SetControlByte(0); });
}

std::optional<MediumReport> ChipSearch::ReadChipset(std::optional<SearchReport>& report) {
  Routine routine("InitFrm, SetupMediumSearchPanel");
  std::optional<MediumReport> described;
  routine.Try([&] { described = DescribeChipset(link_.Root().Get().ObtainSmbusController()->ChipsetReport()); });
  report = routine.Report();
  return described;
}

std::uint8_t ChipSearch::CountPorts() {
  return link_.Root().Get().ObtainPrinterPortAdapter()->PortCount();
}

int ChipSearch::ProgressMaximum(const SearchMedia& media) {
  std::uint8_t ports = 0;
  if (media.PrinterPort) {
    // The search itself reports an adapter that cannot count its ports.
    Routine("").Try([&] { ports = CountPorts(); });
  }
  return progressPerMedium * ((ports > 0 ? 1 : 0) + (media.Smbus ? 1 : 0) + (media.Usb ? 1 : 0));
}

std::vector<SearchReport> ChipSearch::Search(const SearchMedia& media, int maximum, const Progress& progress) {
  progress_ = progress;
  progressValue_ = 0;
  progressMaximum_ = maximum;
  searched_.clear();
  std::vector<SearchReport> reports;
  const Link::MayGiveUp probing(link_);
  try {
    if (media.PrinterPort) SearchPrinterPort(reports);
    if (media.Smbus) SearchSmbus(reports);
    if (media.Usb) SearchUsb();
  } catch (const GivenUp&) {  // the program ends; the rest is not needed
  }
  progress_ = nullptr;
  return reports;
}

void ChipSearch::SearchPrinterPort(std::vector<SearchReport>& reports) {
  Routine routine("InitFrm, Search Printer Port");
  std::unique_ptr<PrinterPortAdapter> adapter;
  BusHost* host = nullptr;
  std::uint8_t ports = 0;
  routine.Try([&] {
    host = link_.Root().Get().Host();
    adapter = link_.Root().Get().ObtainPrinterPortAdapter();
    ports = adapter->PortCount();
  });
  for (int port = 0; port < ports; ++port) {
    Advance(progressPerPort);
    std::unique_ptr<BusDevice> device;
    const int number = host != nullptr ? host->PortNumber(port) : port;
    searched_.push_back(fmt::format("printer port {}", number));
    // If selecting fails, the previous port would be searched again.
    if (!routine.Try([&] {
          adapter->SelectPort(static_cast<std::uint8_t>(port));
          device = adapter->ObtainBusDevice();
        })) {
      continue;
    }
    for (const bool mode : {false, true}) {
      routine.Try([&] { device->SetBusMode(mode); });
      for (const std::uint8_t address : candidateAddresses) {
        link_.ThrowIfGivenUp();
        if (!routine.IsChip([&] { return device->ReadByteData(address, chip::CompanyId); })) continue;
        // A chip that answered is listed even if reading back port and mode fails.
        PrinterFind find{address, port, mode, number, {}};
        routine.Try([&] { find.Port = adapter->CurrentPort(); });
        routine.Try([&] { find.BusMode = device->GetBusMode(); });
        if (host != nullptr) find.Holder = HolderText([&] { return host->PortHolder(WriteRight::Ask); });
        printerFinds_.push_back(find);
      }
    }
  }
  Append(reports, routine);
}

void ChipSearch::SearchSmbus(std::vector<SearchReport>& reports) {
  Routine routine("InitFrm, Search SMBus");
  BusHost* host = nullptr;
  std::vector<SmbusAdapter> adapters;
  routine.Try([&] {
    host = link_.Root().Get().Host();
    if (host != nullptr) adapters = host->SmbusAdapters();
  });
  // A library without BusHost has one SMBus.
  if (host == nullptr) adapters.emplace_back();
  for (const SmbusAdapter& adapter : adapters) searched_.push_back(host != nullptr ? adapter.Label : "the SMBus");
  for (const std::uint8_t candidate : candidateAddresses) {
    Advance(progressPerAddress);
    const auto address = static_cast<std::uint8_t>(candidate / 2);
    for (const SmbusAdapter& adapter : adapters) {
      const auto read = [&] {
        if (host != nullptr) host->UseSmbusAdapter(adapter.Number);
        return link_.Root().Get().ObtainSmbusController()->ReadByteData(address, chip::CompanyId);
      };
      link_.ThrowIfGivenUp();
      if (!routine.IsChip(read)) continue;
      SmbusFind find{address, {}, {}};
      if (host != nullptr) {
        find.Adapter = adapter;
        find.Holder = HolderText([&] { return host->SmbusHolder(address, WriteRight::Ask); });
      }
      smbusFinds_.push_back(find);
    }
  }
  Append(reports, routine);
}

void ChipSearch::SearchUsb() {
  // No USB device is supported: only the progress advances.
  for (std::size_t candidate = 0; candidate < candidateAddresses.size(); ++candidate) Advance(progressPerAddress);
}

void ChipSearch::Advance(int step) {
  progressValue_ = std::min(progressValue_ + step, progressMaximum_);
  if (progress_) progress_(progressValue_);
}

void ChipSearch::ClearFinds() {
  printerFinds_.clear();
  smbusFinds_.clear();
}

std::vector<ResultRow> ChipSearch::Rows() const {
  std::vector<ResultRow> rows;
  int number = 0;
  for (const PrinterFind& find : printerFinds_) {
    rows.push_back(PrinterRow(find, ++number));
  }
  for (const SmbusFind& find : smbusFinds_) rows.push_back(SmbusRow(find));
  return rows;
}

std::string ChipSearch::Searched() const {
  return fmt::format("{}", fmt::join(searched_, " and "));
}

void ChipSearch::Finish(const ResultRow& row) {
  Routine silent("");
  CommsModule* module = nullptr;
  silent.Try([&] { module = &link_.Root().Get(); });
  if (module != nullptr && row.Find) {
    std::unique_ptr<BusDevice> device;
    silent.Try([&] {
      const auto adapter = module->ObtainPrinterPortAdapter();
      silent.Try([&] { adapter->SelectPort(static_cast<std::uint8_t>(row.Find->Port)); });
      device = adapter->ObtainBusDevice();
    });
    if (device) {
      silent.Try([&] { device->SetBusMode(row.Find->BusMode); });
      silent.Try([&] { device->SetDeviceAddress(row.Find->Address); });
    }
  } else if (module != nullptr) {
    if (module->Host() != nullptr && row.Adapter) module->Host()->UseSmbusAdapter(row.Adapter->Number);
    silent.Try([&] { module->ObtainSmbusController()->SetTargetAddress(row.Address); });
  }
  const std::uint8_t medium = row.Find ? 1 : 0;
  if (module != nullptr) silent.Try([&] { module->SelectMedium(medium); });
  link_.CommsMedium = medium;
  link_.EvalBoardMedium = medium;
  link_.ChipAddress = row.Address;
  chosenBus_ = row.Bus;
}

std::optional<std::string> ChipSearch::TakeChip() {
  BusHost* const host = link_.WritesHeldBack ? nullptr : link_.Root().Get().Host();
  if (host == nullptr) return std::nullopt;
  if (link_.CommsMedium == 1) return host->PortHolder(WriteRight::Take);
  return host->SmbusHolder(static_cast<std::uint8_t>(link_.ChipAddress), WriteRight::Take);
}

std::optional<std::string> ChipSearch::ConnectFirst(const SearchMedia& media) {
  const auto reports = Search(media, 0, nullptr);
  const auto rows = Rows();
  if (rows.empty()) {
    const Link::MayGiveUp connecting(link_);
    link_.ThrowIfGivenUp();
    std::string text = "No KRX5580 found";
    text += searched_.empty() ? ": this computer has no such bus" : " on: " + Searched();
    for (const SearchReport& report : reports) text += ". " + report.Line();
    throw CommsError(noChipFound, text);
  }
  Finish(rows.front());
  return TakeChip();
}

}  // namespace krx
