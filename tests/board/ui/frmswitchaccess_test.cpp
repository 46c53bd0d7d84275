// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/ui/frmswitchaccess.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include "board/switches.h"
#include "support/scripteddialogs.h"
#include "support/testbench.h"

namespace krx {
namespace {

TEST(FrmSwitchAccess, ReadsTheBoardTogglesWholeBytesAndFollowsOtherWriters) {
  TestBench bench;
  BoardState flags;
  Board board(bench.Bus, flags);
  ScriptedDialogs dialogs;
  FrmSwitchAccess form(board, dialogs, false, nullptr);
  board.SwitchesChanged = [&] { form.ShowLamps(); };
  const auto lamp = [&](const char* name) { return form.findChild<QLabel*>(name)->text().toStdString(); };

  form.Open();
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(bench.BusTraffic(), "V96 V94 V90 V92 V90 V92 V94 V96");
  EXPECT_EQ(lamp("lmpSwitchU4E"), "● closed");
  EXPECT_EQ(lamp("lmpSwitchU5A"), "○ open");

  form.findChild<QPushButton*>("cmdSwitchU4E")->click();
  EXPECT_EQ(bench.BusTraffic(), "S96:00 S94:2F S90:00 S92:00");
  EXPECT_EQ(lamp("lmpSwitchU4E"), "○ open");

  WriteSwitchDevice(board, 0, 0x05);
  EXPECT_EQ(lamp("lmpSwitchU5A"), "● closed");

  bench.FailTransfer(1);
  form.findChild<QPushButton*>("cmdReadAll")->click();
  ASSERT_EQ(dialogs.Shown.size(), 1U);
  EXPECT_EQ(lamp("lmpSwitchU5A"), "● closed") << "what could not be read stays as it was known";

  form.close();
  EXPECT_FALSE(form.isVisible());
  form.Open();
  QTest::keyClick(&form, Qt::Key_Escape);
  EXPECT_FALSE(form.isVisible());
}

TEST(FrmSwitchAccess, AReadOnlyRunShowsTheSwitchesThatAreNotTheOnesWanted) {
  TestBench bench;
  bench.Bus.WritesHeldBack = true;
  BoardState flags;
  Board board(bench.Bus, flags);
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
