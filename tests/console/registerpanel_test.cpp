// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/registerpanel.h"

#include <gtest/gtest.h>

#include "support/boardbench.h"

namespace krx {
namespace {

constexpr int config1Row = 3, interrupt1Row = 4, duty1Row = 66, config4Row = 90;

struct PanelBench : TestBench {
  RegisterPanel Panel{Bus};
  /// Rows that are not plain: "3s 4h 5b" for selected, hovered, both.
  std::string Rows() const {
    std::string text;
    for (int row = 1; row <= RegisterPanel::rowCount; ++row) {
      if (Panel.State(row) != RowState::Plain) {
        text += (text.empty() ? "" : " ") + std::to_string(row) + "phsb"[static_cast<int>(Panel.State(row))];
      }
    }
    return text;
  }
  /// "30 FF 255 11111111".
  std::string Shown() const {
    const RegisterView& view = Panel.View();
    std::string bits;
    for (const bool bit : view.Bits) bits.insert(0, bit ? "1" : "0");
    return view.Address + " " + view.HexValue + " " + view.DecimalValue + " " + bits;
  }
};

TEST(RegisterPanel, RowsGoThroughTheirFourStatesAndOneStaysSelected) {
  PanelBench bench;
  RegisterPanel& panel = bench.Panel;
  // h hovers over a row and c clicks it, l leaves the list, r selects anew.
  const std::pair<std::string, const char*> steps[] = {{"h5", "5h"},      {"c5", "5b"}, {"c5", "5b"}, {"h7", "5s 7h"},
                                                       {"h5", "5b"},      {"l", "5s"},  {"c9", "9b"}, {"l", "9s"},
                                                       {"h12", "9s 12h"}, {"r", "9s"},  {"c9", "9b"}};
  for (const auto& [step, rows] : steps) {
    const int row = std::atoi(step.c_str() + 1);
    if (step[0] == 'h') panel.Hover(row);
    if (step[0] == 'c') panel.Click(row);
    if (step[0] == 'l') panel.LeaveList();
    if (step[0] == 'r') panel.Reselect();
    EXPECT_EQ(bench.Rows(), rows) << step;
  }
}

TEST(RegisterPanel, ReadsWhatIsSelectedAndTheLastRowWhenNothingIs) {
  PanelBench bench;
  bench.Panel.ReadSelected();
  EXPECT_EQ(bench.Traffic(), "R7D");
  bench.Poke(0x40, 0x05);
  bench.Panel.Click(config1Row);
  bench.Panel.ReadSelected();
  EXPECT_EQ(bench.Traffic(), "R40 R40");
  EXPECT_EQ(bench.Shown(), "40 5 5 00000101");
  EXPECT_EQ(bench.Panel.View().Name, "Configuration Reg. 1");
  EXPECT_FALSE(bench.Panel.View().Caution.empty());
}

TEST(RegisterPanel, ABitClickTurnsTheBitThatIsShownAndShowsWhatTheChipKeeps) {
  PanelBench bench;
  bench.Panel.Click(config4Row);
  bench.Panel.ClickBit(7);
  EXPECT_EQ(bench.Traffic(), "R7D R7D W7D:80 R7D");
  EXPECT_EQ(bench.Shown(), "7D 80 128 10000000");
  bench.Poke(0x7D, 0x83);
  bench.Panel.ClickBit(7);
  EXPECT_EQ(bench.Traffic(), "R7D W7D:03 R7D") << "in the byte read afresh";
  bench.Poke(0x7D, 0x80);
  bench.Panel.ClickBit(7);
  EXPECT_EQ(bench.Traffic(), "R7D W7D:80 R7D") << "the bit was shown as 0, so it is set";
  bench.Panel.Click(25);  // Extended Resolution 1, which the chip does not let write
  bench.Panel.ClickBit(0);
  EXPECT_EQ(bench.Shown(), "76 0 0 00000000");
}

TEST(RegisterPanel, TheEntryRulesToTheLetter) {
  const struct {
    bool Hex;
    const char* Entry;
    const char* Traffic;  ///< empty: rejected
    const char* Other;    ///< text of the other box after a write
  } rows[] = {
      {false, "0", "", ""},          {false, "00", "W7D:00", "0"},
      {false, "", "W7D:00", "0"},    {false, "255", "W7D:FF", "FF"},
      {false, "256", "", ""},        {false, "010", "W7D:0A", "A"},
      {false, "-0", "", ""},         {false, " 5", "", ""},
      {false, "5 ", "", ""},         {true, "0", "", ""},
      {true, "00", "W7D:00", "0"},   {true, "", "", ""},
      {true, "100", "", ""},         {true, "FF", "W7D:FF", "255"},
      {true, "aB", "W7D:AB", "171"}, {true, "0x1", "", ""},
      {true, "1G", "", ""},          {true, "00000000000000000FF", "W7D:FF", "255"},
  };
  for (const auto& row : rows) {
    PanelBench bench;
    RegisterPanel& panel = bench.Panel;
    panel.Click(config4Row);
    bench.Traffic();
    row.Hex ? panel.SetHexEntry(row.Entry) : panel.SetDecimalEntry(row.Entry);
    row.Hex ? panel.WriteHexEntry() : panel.WriteDecimalEntry();
    EXPECT_EQ(bench.Traffic(), row.Traffic) << row.Entry;
    const bool written = row.Traffic[0] != '\0';
    EXPECT_EQ(panel.HexButton(), written ? EntryState::Written : EntryState::Unwritten) << row.Entry;
    EXPECT_EQ(panel.DecimalButton(), panel.HexButton());
    EXPECT_EQ(row.Hex ? panel.HexEntry() : panel.DecimalEntry(), written ? row.Entry : "00");
    EXPECT_EQ(row.Hex ? panel.DecimalEntry() : panel.HexEntry(), written ? row.Other : "00") << row.Entry;
  }
}

TEST(RegisterPanel, AWriteShowsTheWrittenBitsAndTheLastReadValueAndAReadOnlyRegisterTakesNone) {
  PanelBench bench;
  RegisterPanel& panel = bench.Panel;
  panel.Click(config4Row);
  panel.SetHexEntry("F0");
  panel.WriteHexEntry();
  EXPECT_EQ(bench.Shown(), "7D 0 0 11110000");
  EXPECT_EQ(panel.LastWritten(), 0xF0);
  panel.SetDecimalEntry("9");
  EXPECT_EQ(panel.HexButton(), EntryState::Written);
  EXPECT_EQ(panel.DecimalButton(), EntryState::Unwritten);
  panel.Click(interrupt1Row);
  bench.Traffic();
  panel.SetHexEntry("10");
  panel.WriteHexEntry();
  panel.WriteDecimalEntry();
  panel.ClickBit(0);
  EXPECT_EQ(bench.Traffic(), "");
  EXPECT_EQ(panel.HexButton(), EntryState::Unwritten);
}

TEST(RegisterPanel, AFailedTransferShowsNoValueThatIsNotTheRegisters) {
  const struct {
    const char* Traffic;
    std::function<void(RegisterPanel&)> Handler;
    const char* Shown;  ///< after any failure
  } rows[] = {
      {"R30", [](RegisterPanel& panel) { panel.Click(duty1Row); }, "30   00000000"},
      {"R7D", [](RegisterPanel& panel) { panel.ReadSelected(); }, "7D 81 129 10000001"},
      {"R7D W7D:80 R7D", [](RegisterPanel& panel) { panel.ClickBit(0); }, "7D 81 129 10000001"},
      {"W7D:22", [](RegisterPanel& panel) { panel.WriteHexEntry(); }, "7D 81 129 10000001"},
      {"W7D:22", [](RegisterPanel& panel) { panel.WriteDecimalEntry(); }, "7D 81 129 10000001"},
  };
  for (const auto& row : rows) {
    for (int nth = 1; nth <= WordCount(row.Traffic); ++nth) {
      PanelBench bench;
      bench.Poke(0x7D, 0x81);
      bench.Panel.Click(config4Row);
      bench.Panel.SetHexEntry("22");
      bench.Panel.SetDecimalEntry("34");
      EXPECT_EQ(UpToFailure(bench, nth, [&] { row.Handler(bench.Panel); }), FirstFailing(row.Traffic, nth));
      EXPECT_EQ(bench.Shown(), row.Shown);
    }
  }
}

}  // namespace
}  // namespace krx
