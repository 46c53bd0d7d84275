// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/ui/frmswitchaccess.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <map>

#include "board/switches.h"
#include "support/boardbench.h"
#include "support/scripteddialogs.h"
#include "support/testbench.h"

namespace krx {
namespace {

TEST(FrmSwitchAccess, ReadsTheBoardTogglesWholeBytesAndFollowsOtherWriters) {
  TestBench bench;
  BoardState flags;
  OwedWrites owed(bench.Bus);
  Board board(bench.Bus, flags, owed);
  ScriptedDialogs dialogs;
  FrmSwitchAccess form(board, dialogs, false, nullptr);
  board.SwitchesChanged = [&] { form.ShowLamps(); };
  const auto lamp = [&](const char* name) { return form.findChild<QLabel*>(name)->text().toStdString(); };

  form.Open();
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(bench.BusTraffic(), "V96 V94 V90 V92 V90 V92 V94 V96");
  EXPECT_EQ(lamp("lmpSwitchU4E"), "● closed");
  EXPECT_EQ(lamp("lmpSwitchU5A"), "○ open");

  std::map<std::string, int> bytes{{"U3", 0x00}, {"U4", 0x3F}, {"U5", 0x00}, {"U6", 0x00}};
  for (const std::string device : {"U3", "U4", "U5", "U6"}) {
    for (char letter = 'A'; letter <= 'H'; ++letter) {
      const std::string name = device + letter;
      bytes[device] ^= 1 << (letter - 'A');
      form.findChild<QPushButton*>(QString::fromStdString("cmdSwitch" + name))->click();
      EXPECT_EQ(bench.BusTraffic(), fmt::format("S96:{:02X} S94:{:02X} S90:{:02X} S92:{:02X}", bytes["U3"], bytes["U4"],
                                                bytes["U5"], bytes["U6"]))
          << name;
      const bool closed = (bytes[device] >> (letter - 'A') & 1) != 0;
      EXPECT_EQ(lamp(("lmpSwitch" + name).c_str()), closed ? "● closed" : "○ open") << name;
    }
  }
  form.findChild<QPushButton*>("cmdReadAll")->click();
  EXPECT_EQ(bench.BusTraffic(), "V96 V94 V90 V92");

  WriteSwitchDevice(board, 0, 0x04);
  EXPECT_EQ(lamp("lmpSwitchU5A"), "○ open");

  bench.FailTransfer(1);
  form.findChild<QPushButton*>("cmdReadAll")->click();
  ASSERT_EQ(dialogs.Shown.size(), 1U);
  EXPECT_EQ(lamp("lmpSwitchU5A"), "○ open") << "what could not be read stays as it was known";

  form.close();
  EXPECT_FALSE(form.isVisible());
  form.Open();
  QTest::keyClick(&form, Qt::Key_Escape);
  EXPECT_FALSE(form.isVisible());
}

TEST(FrmSwitchAccess, AReadOnlyRunShowsTheSwitchesThatAreNotTheOnesWanted) {
  BoardBench bench;
  bench.Bus.WritesHeldBack = true;
  Board& board = bench.Eval;
  ScriptedDialogs dialogs;
  FrmSwitchAccess form(board, dialogs, true, nullptr);
  const auto lamp = [&](const char* name) { return form.findChild<QLabel*>(name)->text().toStdString(); };
  WriteSwitchDevice(board, 0, 0x02);
  board.Device(SwitchDevice::U5).SetStatusByte(0x05);
  form.ShowLamps();
  EXPECT_EQ(lamp("lmpSwitchU5A"), "– not read");
  form.Open();
  board.Device(SwitchDevice::U5).SetStatus(0, true);
  form.ShowLamps();
  EXPECT_EQ(lamp("lmpSwitchU5A"), "○ open");
  EXPECT_EQ(lamp("lmpSwitchU5B"), "● closed");
}

}  // namespace
}  // namespace krx
