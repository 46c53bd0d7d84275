// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/registerpanel.h"

#include <gtest/gtest.h>

#include "support/boardbench.h"

namespace krx {
namespace {

struct PanelBench : TestBench {
  RegisterPanel Panel{Bus};
  /// c clicks a row, h hovers over one, l leaves the list, r reselects, b clicks a bit, t is a tick; H and D type a
  /// text into a box and write it, d only types.
  void Do(const std::string& step) {
    const std::string text = step.substr(1);
    const int number = std::atoi(text.c_str());
    if (step[0] == 'c') Panel.Click(number);
    if (step[0] == 'h') Panel.Hover(number);
    if (step[0] == 'l') Panel.LeaveList();
    if (step[0] == 'r') Panel.Reselect();
    if (step[0] == 'b') Panel.ClickBit(number);
    if (step[0] == 't') Panel.ReadSelected();
    if (step[0] == 'H') Panel.SetHexEntry(text), Panel.WriteHexEntry();
    if (step[0] == 'd' || step[0] == 'D') Panel.SetDecimalEntry(text);
    if (step[0] == 'D') Panel.WriteDecimalEntry();
  }
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
  /// Hexadecimal and decimal box with their buttons: "FFw 255w" written, "00u 00u" unwritten, "- -" untouched.
  std::string Boxes() const {
    const auto button = [](EntryState state) { return "-uw"[static_cast<int>(state)]; };
    return Panel.HexEntry() + button(Panel.HexButton()) + " " + Panel.DecimalEntry() + button(Panel.DecimalButton());
  }
};

TEST(RegisterPanel, RowsGoThroughTheirFourStatesAndOneStaysSelected) {
  PanelBench bench;
  const std::pair<const char*, const char*> steps[] = {{"h5", "5h"},      {"c5", "5b"}, {"c5", "5b"}, {"h7", "5s 7h"},
                                                       {"h5", "5b"},      {"l", "5s"},  {"c9", "9b"}, {"l", "9s"},
                                                       {"h12", "9s 12h"}, {"r", "9s"},  {"c9", "9b"}};
  for (const auto& [step, rows] : steps) {
    bench.Do(step);
    EXPECT_EQ(bench.Rows(), rows) << step;
  }
}

TEST(RegisterPanel, ShowsWhatTheChipKeptOfABitAndTheLastReadValueWithAWrittenByte) {
  const struct {
    const char* Step;
    int Config4;  ///< initial value if 0 or more
    const char *Traffic, *Shown, *Boxes;
  } steps[] = {
      {"t", -1, "R7D", "7D 0 0 00000000", "- -"},  // nothing is selected: the last row
      {"c3", -1, "R40", "40 5 5 00000101", "- -"},
      {"t", -1, "R40", "40 5 5 00000101", "- -"},
      {"c90", -1, "R7D", "7D 0 0 00000000", "- -"},
      {"b7", -1, "R7D W7D:80 R7D", "7D 80 128 10000000", "- -"},
      {"b7", 0x83, "R7D W7D:03 R7D", "7D 3 3 00000011", "- -"},     // in the byte read again
      {"b7", 0x80, "R7D W7D:80 R7D", "7D 80 128 10000000", "- -"},  // it was shown as 0, so it is set
      {"c25", -1, "R76", "76 0 0 00000000", "- -"},
      {"b0", -1, "R76 W76:01 R76", "76 0 0 00000000", "- -"},  // read-only in the chip
      {"c90", -1, "R7D", "7D 80 128 10000000", "- -"},
      {"HF0", -1, "W7D:F0", "7D 80 128 11110000", "F0w 240w"},
      {"d9", -1, "", "7D 80 128 11110000", "F0w 9u"},
      {"c4", -1, "R41", "41 0 0 00000000", "F0w 9u"},  // read-only
      {"H10", -1, "", "41 0 0 00000000", "10u 9u"},
      {"D9", -1, "", "41 0 0 00000000", "10u 9u"},
      {"b0", -1, "", "41 0 0 00000000", "10u 9u"},
  };
  PanelBench bench;
  bench.Poke(0x40, 0x05);
  for (const auto& step : steps) {
    if (step.Config4 >= 0) bench.Poke(0x7D, step.Config4);
    bench.Do(step.Step);
    EXPECT_EQ(bench.Traffic(), step.Traffic) << step.Step;
    EXPECT_EQ(bench.Shown() + " " + bench.Boxes(), std::string(step.Shown) + " " + step.Boxes) << step.Step;
    EXPECT_EQ(bench.Panel.View().Caution.empty(), bench.Panel.View().Name != "Configuration Reg. 1");
  }
  EXPECT_EQ(bench.Panel.LastWritten(), 0xF0);
}

TEST(RegisterPanel, TheEntryRules) {
  const struct {
    const char *Step, *Traffic, *Boxes, *Refusal;
  } rows[] = {
      {"D0", "", "00u 00u", "A single 0 is not written: type 00"},
      {"D00", "W7D:00", "0w 00w", ""},
      {"D", "W7D:00", "0w w", ""},
      {"D255", "W7D:FF", "FFw 255w", ""},
      {"D256", "", "00u 00u", "Above 255: a byte is 0 to 255"},
      {"D010", "W7D:0A", "Aw 010w", ""},
      {"D-0", "", "00u 00u", "Not a number from 0 to 255"},
      {"D 5", "", "00u 00u", "Not a number from 0 to 255"},
      {"D5 ", "", "00u 00u", "Not a number from 0 to 255"},
      {"H0", "", "00u 00u", "A single 0 is not written: type 00"},
      {"H00", "W7D:00", "00w 0w", ""},
      {"H", "", "00u 00u", "Nothing typed: a byte is 00 to FF"},
      {"H100", "", "00u 00u", "Above FF: a byte is 00 to FF"},
      {"HFF", "W7D:FF", "FFw 255w", ""},
      {"HaB", "W7D:AB", "aBw 171w", ""},
      {"H0x1", "", "00u 00u", "Not hexadecimal: a byte is 00 to FF"},
      {"H1G", "", "00u 00u", "Not hexadecimal: a byte is 00 to FF"},
      {"H00000000000000000FF", "W7D:FF", "00000000000000000FFw 255w", ""},
  };
  for (const auto& row : rows) {
    PanelBench bench;
    bench.Do("c90");
    bench.Traffic();
    bench.Do(row.Step);
    EXPECT_EQ(bench.Traffic(), row.Traffic) << row.Step;
    EXPECT_EQ(bench.Boxes(), row.Boxes) << row.Step;
    EXPECT_EQ(bench.Panel.Refusal(), row.Refusal) << row.Step;
    bench.Do("d12");
    EXPECT_EQ(bench.Panel.Refusal(), "") << row.Step;
  }
}

TEST(RegisterPanel, AfterAFailedTransferNoValueOfAnotherRegisterIsShown) {
  const struct {
    const char *Traffic, *Step, *Shown;  ///< after any failure
  } rows[] = {
      {"R30", "c66", "30   00000000"},
      {"R7D", "t", "7D 81 129 10000001"},
      {"R7D W7D:80 R7D", "b0", "7D 81 129 10000001"},
      {"W7D:22", "H22", "7D 81 129 10000001"},
      {"W7D:22", "D34", "7D 81 129 10000001"},
  };
  for (const auto& row : rows) {
    for (int nth = 1; nth <= WordCount(row.Traffic); ++nth) {
      PanelBench bench;
      bench.Poke(0x7D, 0x81);
      bench.Do("c90");
      EXPECT_EQ(UpToFailure(bench, nth, [&] { bench.Do(row.Step); }), FirstFailing(row.Traffic, nth));
      EXPECT_EQ(bench.Shown(), row.Shown);
    }
  }
  PanelBench bench;
  bench.Poke(0x7D, 0x81);
  bench.Do("c90");
  bench.FailTransfer(1);
  EXPECT_THROW(bench.Do("c66"), CommsError);
  EXPECT_EQ(bench.Panel.View().Shown(), std::nullopt);
  bench.Do("H22");
  EXPECT_EQ(bench.Shown(), "30   00100010") << "written, but never read";
  EXPECT_EQ(bench.Boxes(), "22w 34w");
  bench.FailTransfer(1);
  EXPECT_THROW(bench.Do("H22"), CommsError);
  EXPECT_EQ(bench.Boxes(), "22u 34w") << "the same byte once more, and it is not known to have arrived";
}

}  // namespace
}  // namespace krx
