// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/registerhistory.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "journal/journalmodule.h"
#include "link/commserror.h"
#include "link/registeraccess.h"
#include "panel/readingrate.h"
#include "panel/registerpanel.h"
#include "support/testbench.h"

namespace krx {
namespace {

struct HistoryBench : TestBench {
  HistoryBench() {
    Root.Change([this] { return MakeJournalModule(Sim.MakeCommsModule(), Journal, false); });
    Poke({{0x5C, 0x62}, {0x5D, 0x62}});
  }
  /// Under a name, as an action of the user or as the console's own doing ("*" before it): r reads, w writes, u reads
  /// and writes, U undoes; then register and byte: "w5C:C2 r5D".
  void Do(std::string name, std::string_view steps) {
    std::optional<BusJournal::ActionScope> action;
    std::optional<BusJournal::OriginScope> origin;
    if (name[0] == '*') {
      origin.emplace(Journal, name.substr(1));
    } else {
      action.emplace(Journal, name);
    }
    while (!steps.empty()) {
      const std::string step(steps.substr(0, steps.find(' ')));
      steps.remove_prefix(std::min(steps.size(), step.size() + 1));
      const auto hex = [&](std::size_t at) {
        return static_cast<std::uint8_t>(std::stoi(step.substr(at, 2), nullptr, 16));
      };
      try {
        if (step[0] == 'r') ReadByte(Bus, hex(1));
        if (step[0] == 'w') WriteByte(Bus, hex(1), hex(4));
        if (step[0] == 'u') UpdateBits(Bus, hex(1), 0xFF, hex(4));
        if (step[0] == 'U') UndoLastAction(Bus, Journal);
      } catch (const CommsError&) {
      }
    }
  }
  /// "hex box C2 bits 7, 5; read 62", newest first.
  std::string Rows(std::uint8_t reg = 0x5C) {
    History.Follow(reg);
    std::string text;
    for (const HistoryRow& row : History.Rows()) {
      text += text.empty() ? "" : "; ";
      text += row.OriginText() + (row.Byte ? fmt::format(" {:02X}", *row.Byte) : " -");
      if (!row.ChangedText().empty()) text += " " + row.ChangedText();
      if (row.Count > 1) text += fmt::format(" x{}", row.Count);
    }
    return text;
  }
  std::string Offer(std::optional<std::size_t> row = {}) {
    History.Follow(0x5C);
    const UndoOffer offer = History.OfferUndo(row);
    return (offer.Allowed ? "+" : "-") + offer.Words;
  }

  BusJournal Journal{Time};
  RegisterHistory History{Bus, Journal};
};

TEST(RegisterHistory, IsWhatPassedOfTheRegisterNewestFirstWithAnActionsReadingsInItsWrite) {
  const struct {
    const char *Name, *Steps, *Rows;  ///< added in front; empty: none, "=...": instead of the first row
  } steps[] = {
      {"*Start-up", "r5C r5D", "read, Start-up 62"},
      {"Read/Write: list, row 8", "r5C", "read 62"},
      {"Read/Write: bit 7", "u5C:E2 r5C", "bit 7 E2 bit 7"},
      {"Easy Setup", "w5D:01 w5C:E3", "Easy Setup E3 bit 0"},
      {"Easy Setup", "w5D:02", ""},
      {"*Continuous reading", "r5C", "Continuous reading E3"},
      {"*Continuous reading", "r5C r5C", "=Continuous reading E3 x3"},
      {"Read/Write: hex box", "w5C:00", "hex box 00 bits 7, 6, 5, 1, 0"},
      {"Undo", "w5C:E3", "Undo E3 bits 7, 6, 5, 1, 0"},
  };
  HistoryBench bench;
  std::string expected;
  for (const auto& step : steps) {
    bench.Do(step.Name, step.Steps);
    const std::string row = step.Rows;
    if (row.starts_with("=")) {
      expected = row.substr(1) + expected.substr(expected.find(';'));
    } else if (!row.empty()) {
      expected = row + (expected.empty() ? "" : "; ") + expected;
    }
    EXPECT_EQ(bench.Rows(), expected) << step.Name;
  }
  EXPECT_EQ(bench.Rows(0x5D), "Easy Setup 02 bits 1, 0; Easy Setup 01 bits 6, 5, 1, 0; read, Start-up 62");
  EXPECT_EQ(bench.Rows(), expected) << "as it was followed before";
  bench.FailTransfer(1);
  bench.Do("Read/Write: hex box", "w5C:11");
  EXPECT_EQ(bench.Rows(), "hex box -; " + expected);
  EXPECT_NE(bench.History.Rows().front().Note, "");
  for (int i = 0; i < 150; ++i) bench.Do("A", i % 2 == 0 ? "w5C:01" : "w5C:02");
  bench.Rows();
  EXPECT_EQ(bench.History.Rows().size(), RegisterHistory::mostRows);
  for (std::size_t i = 0; i < BusJournal::capacity; ++i) bench.Journal.Add({});
  EXPECT_EQ(bench.Rows(0x5D).find("Easy Setup 02 bits 1, 0; Easy Setup 01 "), 0U)
      << "the user's writes are kept longer";
}

TEST(RegisterHistory, OffersTheUndoOfTheNewestActionOnly) {
  HistoryBench bench;
  EXPECT_EQ(bench.Offer(), "-Nothing to undo");
  bench.Do("*Start-up", "r5C r5D w5C:61");
  EXPECT_EQ(bench.Offer(), "-Nothing to undo");
  EXPECT_EQ(bench.Offer(0), "-Written by the console itself");
  EXPECT_EQ(bench.Offer(1), "-A reading changes nothing");
  bench.Do("A", "w5C:C2");
  EXPECT_EQ(bench.Offer(), "+Undoes \"A\"");
  bench.Do("B", "w5C:C3 w5D:01");
  EXPECT_EQ(bench.Offer(), "+Undoes \"B\" with 1 other register");
  EXPECT_EQ(bench.Offer(1), "-Undo \"B\" first, which came later");
  bench.Do("C", "w5D:02");
  EXPECT_EQ(bench.Offer(), "-Undo \"C\" first, which came later");
  bench.Do("D", "w5C:C3");
  EXPECT_EQ(bench.Offer(0), "-It left the register as it was");
  EXPECT_EQ(bench.Offer(), "-Undo \"C\" first, which came later") << "D changed nothing";
  bench.Do("Undo", "U");
  EXPECT_EQ(bench.Offer(), "+Undoes \"B\" with 1 other register");
  bench.Do("Undo", "U");
  EXPECT_EQ(bench.Offer(0), "-An undo is not undone itself");
  EXPECT_EQ(bench.Offer(2), "-Already undone");
  EXPECT_EQ(bench.Offer(), "+Undoes \"A\"");
}

TEST(ReadingRate, IsMeasuredOverASecond) {
  ReadingRate rate;
  rate.Start(10);
  for (int i = 0; i < 49; ++i) rate.Read();
  EXPECT_FALSE(rate.PerSecond(10.5));
  for (int i = 0; i < 49; ++i) rate.Read();
  EXPECT_DOUBLE_EQ(*rate.PerSecond(11), 98);
  rate.Read();
  EXPECT_DOUBLE_EQ(*rate.PerSecond(11.5), 98);
  EXPECT_DOUBLE_EQ(*rate.PerSecond(13), 0.5);
  rate.Start(20);
  EXPECT_FALSE(rate.PerSecond(20.9));
}

}  // namespace
}  // namespace krx
