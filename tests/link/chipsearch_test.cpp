// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/chipsearch.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "link/searchwizard.h"
#include "simulator/simwords.h"
#include "support/testbench.h"

namespace krx {
namespace {

constexpr SearchMedia printerPort{true}, smbus{false, true}, both{true, true}, usb{false, false, true};

struct SearchBench : TestBench {
  explicit SearchBench(SimOptions options = {}) : TestBench(Medium::Board, std::move(options)) {
    Bus.CommsMedium = 7;
    Bus.EvalBoardMedium = 7;
    Bus.ChipAddress = 0;
  }
  std::vector<SearchReport> Run(const SearchMedia& media) {
    if (Wizard.CurrentPage() == SearchWizard::Page::Welcome) Wizard.Next(media);
    EXPECT_EQ(Wizard.Next(media), SearchWizard::NextStep::Search);
    Wizard.BeginSearch(media);
    return Wizard.RunSearch(media, [this](int value) { Steps.push_back(value); });
  }
  std::string Row(std::size_t index) { return Wizard.Rows().at(index).Text; }
  /// "1/1/5A": the link's two media and its chip.
  std::string Chosen() const {
    return fmt::format("{}/{}/{:02X}", Bus.CommsMedium, Bus.EvalBoardMedium, Bus.ChipAddress);
  }
  ChipSearch Search{Bus};
  SearchWizard Wizard{Search};
  std::vector<int> Steps;
};

std::string PrinterRow(const char* address, const char* port, const char* number) {
  return fmt::format("Found an KRX5580 at:{}h, on printer port:{}h{}Printer {}", address, port, std::string(50, ' '),
                     number);
}

TEST(ChipSearch, CallsTheLibraryInThisOrderAndFinishSetsUpTheChosenChip) {
  SearchBench bench({.BoardChips = {{0x2D, 0, BusModes::TrueOnly}}, .Wait = {}});
  bench.Wizard.Load();
  EXPECT_EQ(bench.All(), "A D C00 H I");
  bench.Run(both);
  EXPECT_EQ(bench.All(), "A N A N P0 D B0 R3E! R3E! R3E! B1 R3E! R3E Q B? R3E! H R3E! H R3E! H R3E");
  EXPECT_EQ(bench.Row(0), PrinterRow("2D", "0", "1"));
  EXPECT_EQ(bench.Row(1), "An KRX5580 was found at:2Eh, on the SMBus" + std::string(98, ' ') + "SMBus2E");
  EXPECT_EQ(bench.Steps, (std::vector<int>{8, 24, 40, 56}));
  EXPECT_TRUE(bench.Wizard.Finish());
  EXPECT_EQ(bench.All(), "A P0 D B1 T5A M1");
  EXPECT_EQ(bench.Chosen(), "1/1/5A");
  bench.Wizard.Select(1);
  EXPECT_TRUE(bench.Wizard.Finish());
  EXPECT_EQ(bench.All(), "H T2E M0");
  EXPECT_EQ(bench.Chosen(), "0/0/2E");
  EXPECT_EQ(bench.Sim.LiveHandles(), 0);
}

TEST(ChipSearch, FinishSetsTheLinkHoweverManyOperationsFail) {
  for (const bool onPort : {true, false}) {
    SearchBench bench;
    bench.Run(onPort ? printerPort : smbus);
    bench.All();
    for (const Operation op : {Operation::ObtainPrinterPortAdapter, Operation::ObtainSmbusController,
                               Operation::SelectPort, Operation::SetBusMode, Operation::SelectMedium}) {
      bench.Sim.AddFault({.Op = op, .Register = {}});
      bench.Bus.ChipAddress = 0;
      EXPECT_TRUE(bench.Wizard.Finish());
      EXPECT_EQ(bench.Chosen(), onPort ? "1/1/5A" : "0/0/2E");
      bench.Sim.ClearFaults();
    }
    EXPECT_EQ(bench.All(), onPort ? "A! M1 A P0 D B0 T5A M1 A P0! D B0 T5A M1 A P0 D B0! T5A M1 A P0 D B0 T5A M1!"
                                  : "H T2E M0 H! M0 H T2E M0 H T2E M0 H T2E M0!");
  }
}

TEST(ChipSearch, AChipInBothModesIsListedTwiceAndTheTenthRowStillReachesItsFind) {
  SimOptions options{.Ports = 6, .BoardChips = {}, .Wait = {}};
  for (std::uint8_t port = 0; port < 5; ++port) options.BoardChips.push_back({0x2C, port, BusModes::Both});
  SearchBench bench(options);
  bench.Run(printerPort);
  EXPECT_EQ(bench.Row(1), PrinterRow("2C", "0", "2"));
  EXPECT_EQ(bench.Row(9), PrinterRow("2C", "4", "10"));
  EXPECT_EQ(bench.Steps, (std::vector<int>{8, 16, 24, 32, 33, 33})) << "never beyond the maximum";
  bench.All();
  bench.Wizard.Select(9);
  bench.Wizard.Finish();
  EXPECT_EQ(bench.All(), "A P4 D B1 T58 M1");
}

TEST(ChipSearch, ContinuesAfterFailuresAndReportsOneBoxPerRoutineWhileAnEmptyAddressIsNotAFailure) {
  const std::string port = "Search Printer Port", bus = "Search SMBus";
  const std::tuple<Operation, int, std::string, std::size_t> rows[] = {
      {Operation::ReadByteData, 1, port, 2}, {Operation::ReadByteData, 2, port, 1},
      {Operation::SetBusMode, 1, port, 2},   {Operation::SetBusMode, 2, port, 3},
      {Operation::SelectPort, 1, port, 1},   {Operation::CurrentPort, 1, port, 2},
      {Operation::GetBusMode, 1, port, 2},   {Operation::PortCount, 2, port, 1},
      {Operation::ReadByteData, 9, bus, 1},  {Operation::ObtainSmbusController, 1, bus, 2},
  };
  for (const auto& [op, nth, routine, found] : rows) {
    SearchBench bench;
    bench.Sim.AddFault({.Nth = nth, .Op = op, .Register = {}});
    const auto reports = bench.Run(both);
    ASSERT_EQ(reports.size(), 1U) << routine;
    EXPECT_EQ(reports[0].Title + reports[0].Text, "InitFrm, " + routine + "Error: 57, Device I/O error");
    EXPECT_EQ(bench.Wizard.Rows().size(), found) << static_cast<int>(op) << " " << nth;
  }
  SearchBench bench;
  bench.FailTransfer(1, true);
  EXPECT_EQ(bench.Run(both).size(), 2U);
}

TEST(ChipSearch, OnlyTheCompanyIdIdentifiesTheChip) {
  for (const auto& [media, ports, id, found] :
       {std::tuple{both, 1, 0x41, 2U}, {both, 1, 0x42, 0U}, {printerPort, 0, 0x41, 0U}, {usb, 1, 0x41, 0U}}) {
    SearchBench bench({.Ports = static_cast<std::uint8_t>(ports), .Wait = {}});
    bench.Sim.AddFault(*ParseFault(fmt::format("company={:02X}", id)));
    EXPECT_TRUE(bench.Run(media).empty());
    EXPECT_EQ(bench.Wizard.Rows().size(), found);
    EXPECT_EQ(bench.Wizard.FinishEnabled(), found > 0);
    EXPECT_EQ(bench.Wizard.SearchResultsText() + bench.Wizard.SearchInstructionText(),
              found > 0 ? "Please select one of the KRX5580s found above.Click 'Finish' to Continue"
                        : "Sorry, no KRX5580s were found. Please check all connections and try again"
                          "Click Back to continue...");
    EXPECT_EQ(bench.Wizard.Finish(), found > 0);
  }
  SearchBench bench;
  EXPECT_EQ(bench.Search.ProgressMaximum({true, true, true}), 99);
  bench.Run(usb);
  EXPECT_EQ(bench.Steps, (std::vector<int>{16, 32, 33}));
}

TEST(ChipSearch, IsAbandonedBetweenTwoTransfersWhenTheProgramEnds) {
  SearchBench bench;
  int asked = 0;
  bench.Bus.EndAsked = [&asked] { return ++asked > 2; };
  for (const auto& [media, before] : {std::pair{printerPort, "R3E! R3E"}, {smbus, "R3E! R3E!"}}) {
    asked = 0;
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
  const auto buttons = [&] {
    return fmt::format("{} {}{}{}{}{}", static_cast<int>(wizard.CurrentPage()), wizard.BackEnabled() ? "B" : "",
                       wizard.NextEnabled() ? "N" : "", wizard.CancelEnabled() ? "C" : "",
                       wizard.FinishEnabled() ? "F" : "", wizard.MayClose() ? "x" : "");
  };
  wizard.Load();
  EXPECT_EQ(buttons() + wizard.SearchInstructionText(), "1 NCxClick 'Next' to Continue");
  const std::pair<std::function<void()>, const char*> steps[] = {
      {[&] { wizard.Next({}); }, "2 BNCx"},
      {[&] { EXPECT_EQ(wizard.Next({}), SearchWizard::NextStep::SelectMedium); }, "2 BNCx"},
      {[&] { EXPECT_EQ(wizard.BeginSearch(both), 66); }, "3 "},
      {[&] { EXPECT_EQ(wizard.Next(both), SearchWizard::NextStep::Shown); }, "3 "},
      {[&] { wizard.RunSearch(both, nullptr); }, "4 BCFx"},
      {[&] { wizard.Next(both); }, "4 BCFx"},
      {[&] { wizard.Select(-1); }, "4 BCx"},  // nothing selected
      {[&] { wizard.Back(); }, "2 BNCx"},
      {[&] { wizard.Back(); }, "1 NCx"},
  };
  for (const auto& [act, wanted] : steps) {
    act();
    EXPECT_EQ(buttons(), wanted);
  }
  bench.Run(smbus);
  EXPECT_EQ(wizard.Rows().size(), 1U) << "only the new finds";
}

TEST(MediumReport, TheBeginningOfTheReportDecides) {
  // A report's colour, whether the SMBus is offered, and the text; empty: the page is unchanged.
  const std::pair<const char*, const char*> rows[] = {
      {"Unsupported and unrecognised: x", "red no The available southbridge or ICH is currently unsupported."},
      {"ICH Type not in the list",
       "red yes The Intel chipset is not recognised click next to assume it is a standard ICH."},
      {"ICH4            (82801DB)       x", "green yes Found an ICH4  (82801DB)  x"},
      {"ALi M1535+,      x", "green yes Found an ALi M1535+,      x"},
      {"ALi M1535+,", ""},
      {"Unsupported and unrecognise", ""},
      {"A ICH", ""},
  };
  for (const auto& [report, text] : rows) {
    const auto shown = DescribeChipset(report);
    EXPECT_EQ(shown ? fmt::format("{} {} {}", shown->Colour == ReportColour::Red ? "red" : "green",
                                  shown->SmbusOffered ? "yes" : "no", shown->Description)
                    : "",
              text);
  }
  SearchBench bench;
  bench.Sim.AddFault(*ParseFault("fail=1,op=report"));
  EXPECT_EQ(bench.Wizard.Load().value_or(SearchReport{}).Title, "InitFrm, SetupMediumSearchPanel");
}

}  // namespace
}  // namespace krx
