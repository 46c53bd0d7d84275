// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/chipsearch.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "link/searchwizard.h"
#include "support/testbench.h"

namespace krx {
namespace {

constexpr SearchMedia printerPort{true, false, false};
constexpr SearchMedia smbus{false, true, false};
constexpr SearchMedia both{true, true, false};
constexpr SearchMedia usb{false, false, true};

struct SearchBench : TestBench {
  explicit SearchBench(SimOptions options = {}) : TestBench(Medium::Board, std::move(options)) {
    Bus.CommsMedium = 7;
    Bus.EvalBoardMedium = 7;
    Bus.ChipAddress = 0;
  }
  /// Everything that was asked of the library, chip or not.
  std::string All() {
    std::string text = Sim.Trace().Text(TraceFilter::All);
    Sim.Trace().Clear();
    return text;
  }
  std::vector<SearchReport> Run(const SearchMedia& media) {
    if (Wizard.CurrentPage() == SearchWizard::Page::Welcome) Wizard.Next(media);
    EXPECT_EQ(Wizard.Next(media), SearchWizard::NextStep::Search);
    Wizard.BeginSearch(media);
    return Wizard.RunSearch(media, [this](int value) { Steps.push_back(value); });
  }
  std::vector<std::string> Texts() {
    std::vector<std::string> texts;
    for (const ResultRow& row : Wizard.Rows()) texts.push_back(row.Text);
    return texts;
  }
  ChipSearch Search{Bus};
  SearchWizard Wizard{Search};
  std::vector<int> Steps;
};

std::string PrinterRow(const char* address, const char* port, const char* number) {
  return fmt::format("Found an KRX5580 at:{}h, on printer port:{}h{}Printer {}", address, port, std::string(50, ' '),
                     number);
}
std::string SmbusRow(const char* address) {
  return fmt::format("An KRX5580 was found at:{0}h, on the SMBus{1}SMBus{0}", address, std::string(98, ' '));
}

TEST(ChipSearch, AsksTheLibraryInThisOrderAndFinishHandsTheChosenChipOver) {
  SimOptions options;
  options.BoardChips = {{0x2D, 0, BusModes::TrueOnly}};
  SearchBench bench(options);
  bench.Wizard.Load();
  EXPECT_EQ(bench.All(), "A D C00 H I");
  bench.Run(both);
  EXPECT_EQ(bench.All(), "A N A N P0 D B0 R3E! R3E! R3E! B1 R3E! R3E Q B? R3E! H R3E! H R3E! H R3E");
  EXPECT_EQ(bench.Texts(), (std::vector<std::string>{PrinterRow("2D", "0", "1"), SmbusRow("2E")}));
  EXPECT_EQ(bench.Steps, (std::vector<int>{8, 24, 40, 56}));
  EXPECT_TRUE(bench.Wizard.Finish());
  EXPECT_EQ(bench.All(), "A P0 D B1 T5A M1");
  EXPECT_EQ(std::tuple(bench.Bus.CommsMedium, bench.Bus.EvalBoardMedium, bench.Bus.ChipAddress),
            std::tuple(1, 1, 0x5A));
  bench.Wizard.Select(1);
  EXPECT_TRUE(bench.Wizard.Finish());
  EXPECT_EQ(bench.All(), "H T2E M0");
  EXPECT_EQ(std::tuple(bench.Bus.CommsMedium, bench.Bus.EvalBoardMedium, bench.Bus.ChipAddress),
            std::tuple(0, 0, 0x2E));
  EXPECT_EQ(bench.Sim.LiveHandles(), 0);
}

TEST(ChipSearch, FinishSetsTheLinkHoweverManyOperationsFail) {
  for (const bool onPort : {true, false}) {
    SearchBench bench;
    bench.Run(onPort ? printerPort : smbus);
    bench.All();
    for (const Operation op : {Operation::ObtainPrinterPortAdapter, Operation::ObtainSmbusController,
                               Operation::SelectPort, Operation::SetBusMode, Operation::SelectMedium}) {
      Fault fault;
      fault.Op = op;
      bench.Sim.AddFault(fault);
      bench.Bus.ChipAddress = 0;
      EXPECT_TRUE(bench.Wizard.Finish());
      EXPECT_EQ(bench.Bus.ChipAddress, onPort ? 0x5A : 0x2E);
      EXPECT_EQ(bench.Bus.EvalBoardMedium, onPort ? 1 : 0);
      bench.Sim.ClearFaults();
    }
    EXPECT_EQ(bench.All(), onPort ? "A! M1 A P0 D B0 T5A M1 A P0! D B0 T5A M1 A P0 D B0! T5A M1 A P0 D B0 T5A M1!"
                                  : "H T2E M0 H! M0 H T2E M0 H T2E M0 H T2E M0!");
  }
}

TEST(ChipSearch, AChipInBothModesIsListedTwiceAndTheTenthRowStillReachesItsFind) {
  SimOptions options;
  options.Ports = 6;
  options.BoardChips.clear();
  for (std::uint8_t port = 0; port < 5; ++port) options.BoardChips.push_back({0x2C, port, BusModes::Both});
  SearchBench bench(options);
  bench.Run(printerPort);
  EXPECT_EQ(bench.Texts().at(1), PrinterRow("2C", "0", "2"));
  EXPECT_EQ(bench.Texts().at(9), PrinterRow("2C", "4", "10"));
  EXPECT_EQ(bench.Steps, (std::vector<int>{8, 16, 24, 32, 33, 33})) << "never beyond the maximum";
  bench.All();
  bench.Wizard.Select(9);
  bench.Wizard.Finish();
  EXPECT_EQ(bench.All(), "A P4 D B1 T58 M1");
}

TEST(ChipSearch, GoesOnPastFailuresAndReportsOneBoxARoutineWhileAnEmptyAddressIsNone) {
  struct Row {
    Operation Op;
    int Nth;
    const char* Title;
    std::size_t Found;
  };
  const Row rows[] = {
      {Operation::ReadByteData, 1, "InitFrm, Search Printer Port", 2},
      {Operation::ReadByteData, 2, "InitFrm, Search Printer Port", 1},
      {Operation::SetBusMode, 1, "InitFrm, Search Printer Port", 2},
      {Operation::SetBusMode, 2, "InitFrm, Search Printer Port", 3},
      {Operation::SelectPort, 1, "InitFrm, Search Printer Port", 1},
      {Operation::CurrentPort, 1, "InitFrm, Search Printer Port", 2},
      {Operation::GetBusMode, 1, "InitFrm, Search Printer Port", 2},
      {Operation::PortCount, 2, "InitFrm, Search Printer Port", 1},
      {Operation::ReadByteData, 9, "InitFrm, Search SMBus", 1},
      {Operation::ObtainSmbusController, 1, "InitFrm, Search SMBus", 2},
  };
  for (const Row& row : rows) {
    SearchBench bench;
    Fault fault;
    fault.Op = row.Op;
    fault.Nth = row.Nth;
    bench.Sim.AddFault(fault);
    const auto reports = bench.Run(both);
    ASSERT_EQ(reports.size(), 1U) << row.Title;
    EXPECT_EQ(reports[0].Title, row.Title);
    EXPECT_EQ(reports[0].Text, "Error: 57, Device I/O error");
    EXPECT_EQ(bench.Wizard.Rows().size(), row.Found) << static_cast<int>(row.Op) << " " << row.Nth;
  }
  SearchBench bench;
  bench.FailTransfer(1, true);
  EXPECT_EQ(bench.Run(both).size(), 2U);
  EXPECT_EQ(bench.Wizard.CurrentPage(), SearchWizard::Page::Results);
}

TEST(ChipSearch, NothingElseThanTheCompanyIdIsTheChip) {
  for (const auto& [media, ports, id, found] :
       {std::tuple{both, 1, 0x41, 2U}, {both, 1, 0x42, 0U}, {printerPort, 0, 0x41, 0U}, {usb, 1, 0x41, 0U}}) {
    SimOptions options;
    options.Ports = static_cast<std::uint8_t>(ports);
    SearchBench bench(options);
    Fault fault;
    fault.What = Fault::Kind::WrongCompanyId;
    fault.Value = static_cast<std::uint8_t>(id);
    bench.Sim.AddFault(fault);
    EXPECT_TRUE(bench.Run(media).empty());
    EXPECT_EQ(bench.Wizard.Rows().size(), found);
    EXPECT_EQ(bench.Wizard.FinishEnabled(), found > 0);
    EXPECT_EQ(bench.Wizard.SearchResultsText(),
              found > 0 ? "Please select one of the KRX5580s found above."
                        : "Sorry, no KRX5580s were found. Please check all connections and try again");
    EXPECT_EQ(bench.Wizard.SearchInstructionText(),
              found > 0 ? "Click 'Finish' to Continue" : "Click Back to continue...");
    if (found == 0) {
      EXPECT_FALSE(bench.Wizard.Finish());
    }
  }
  SimOptions portless;
  portless.Ports = 0;
  try {
    SearchBench(portless).Search.ConnectFirst(printerPort);
    ADD_FAILURE() << "there is no port";
  } catch (const CommsError& error) {
    EXPECT_STREQ(error.what(), "No KRX5580 was found: there is no such bus to search");
  }
  SearchBench bench;
  EXPECT_EQ(bench.Search.ProgressMaximum({true, true, true}), 99);
  bench.Run(usb);
  EXPECT_EQ(bench.Steps, (std::vector<int>{16, 32, 33}));
}

TEST(ChipSearch, IsGivenUpBetweenTwoTransfersWhenTheProgramIsToEnd) {
  SearchBench bench;
  for (const auto& [media, before] : {std::pair{printerPort, "R3E! R3E"}, {smbus, "R3E! R3E!"}}) {
    int asked = 0;
    bench.Bus.EndAsked = [&asked] { return ++asked > 2; };
    bench.Search.ClearFinds();
    bench.Traffic();
    EXPECT_TRUE(bench.Search.Search(media, 33, nullptr).empty());
    EXPECT_EQ(bench.Traffic(), before);
  }
  EXPECT_THROW(bench.Search.ConnectFirst(smbus), GivenUp) << "no box";
}

TEST(SearchWizard, PagesAndButtonsFollowNextBackAndTheSearch) {
  SearchBench bench;
  SearchWizard& wizard = bench.Wizard;
  using Page = SearchWizard::Page;
  const auto buttons = [&] {
    return fmt::format("{} {}{}{}{}{}", static_cast<int>(wizard.CurrentPage()), wizard.BackEnabled() ? "B" : "",
                       wizard.NextEnabled() ? "N" : "", wizard.CancelEnabled() ? "C" : "",
                       wizard.FinishEnabled() ? "F" : "", wizard.MayClose() ? "x" : "");
  };
  wizard.Load();
  EXPECT_EQ(wizard.SearchInstructionText(), "Click 'Next' to Continue");
  EXPECT_EQ(buttons(), "1 NCx");
  wizard.Next({});
  EXPECT_EQ(buttons(), "2 BNCx");
  EXPECT_EQ(wizard.Next({}), SearchWizard::NextStep::SelectMedium);
  wizard.Back();
  EXPECT_EQ(buttons(), "1 NCx");
  wizard.Next({});
  EXPECT_EQ(wizard.BeginSearch(both), 66);
  EXPECT_EQ(buttons(), "3 ");
  EXPECT_EQ(wizard.Next(both), SearchWizard::NextStep::Shown);
  wizard.RunSearch(both, nullptr);
  EXPECT_EQ(buttons(), "4 BCFx");
  wizard.Next(both);
  EXPECT_EQ(buttons(), "4 BCFx");
  wizard.Select(-1);
  EXPECT_EQ(buttons(), "4 BCx") << "nothing selected";
  wizard.Back();
  EXPECT_EQ(buttons(), "2 BNCx");
  EXPECT_TRUE(wizard.Rows().empty());
  EXPECT_EQ(wizard.CurrentPage(), Page::Medium);
  bench.Run(smbus);
  EXPECT_EQ(bench.Texts(), (std::vector<std::string>{SmbusRow("2E")})) << "only the new finds";
}

TEST(MediumReport, TheBeginningOfTheReportDecides) {
  struct Row {
    const char* Report;
    const char* Description;  ///< null: the page stays as it is
    ReportColour Colour;
    bool Offered;
  };
  const Row rows[] = {
      {"Unsupported and unrecognised: x", "The available southbridge or ICH is currently unsupported.",
       ReportColour::Red, false},
      {"ICH Type not in the list", "The Intel chipset is not recognised click next to assume it is a standard ICH.",
       ReportColour::Red, true},
      {"ICH4            (82801DB)       x", "Found an ICH4  (82801DB)  x", ReportColour::Green, true},
      {"ALi M1535+,      x", "Found an ALi M1535+,      x", ReportColour::Green, true},
      {"ALi M1535+,", nullptr, ReportColour::Green, true},
      {"Unsupported and unrecognise", nullptr, ReportColour::Red, true},
      {"A ICH", nullptr, ReportColour::Red, true},
  };
  for (const Row& row : rows) {
    const auto report = DescribeChipset(row.Report);
    ASSERT_EQ(report.has_value(), row.Description != nullptr) << row.Report;
    if (!report) continue;
    EXPECT_EQ(report->Description, row.Description);
    EXPECT_EQ(report->Colour, row.Colour);
    EXPECT_EQ(report->SmbusOffered, row.Offered);
  }
  SearchBench bench;
  Fault fault;
  fault.Op = Operation::ChipsetReport;
  bench.Sim.AddFault(fault);
  const auto box = bench.Wizard.Load();
  ASSERT_TRUE(box);
  EXPECT_EQ(box->Title, "InitFrm, SetupMediumSearchPanel");
}

}  // namespace
}  // namespace krx
