// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/readwritepage.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "support/scripteddialogs.h"
#include "support/testbench.h"

namespace krx {
namespace {

struct PageBench : TestBench {
  ChipTurns Turns{Bus};
  ScriptedDialogs Dialogs;
  RegisterPanel Panel{Bus};
  ReadWritePage Page{Panel, Turns, Dialogs, false};

  template <typename Widget>
  Widget& Find(const char* name) {
    return *Page.findChild<Widget*>(name);
  }
  std::string Text(const char* name) { return Find<QLabel>(name).text().toStdString(); }
  void Type(const char* name, const char* text) {
    auto& box = Find<QLineEdit>(name);
    box.selectAll();
    QTest::keyClicks(&box, text);
  }
};

TEST(ReadWritePage, ABitClickWritesTheBitAndShowsWhatTheChipKept) {
  PageBench bench;
  bench.Page.Enter();
  EXPECT_EQ(bench.Traffic(), "R3E") << "the first row, once";
  EXPECT_EQ(bench.Text("lblRegValHex"), "41");
  EXPECT_FALSE(bench.Find<QPushButton>("bit0").isEnabled()) << "read-only";

  QTest::mouseClick(&bench.Find<QLabel>("read_writedisplaytext_34"), Qt::LeftButton);  // Remote2 THERM limit
  bench.Poke(0x6C, 0);
  QTest::mouseClick(&bench.Find<QLabel>("read_writedisplaytext_34"), Qt::LeftButton);
  bench.Traffic();
  bench.Find<QPushButton>("bit7").click();
  EXPECT_EQ(bench.Traffic(), "R6C W6C:80 R6C");
  EXPECT_EQ(bench.Find<QPushButton>("bit7").text(), "1");
  EXPECT_EQ(bench.Text("lblRegValDec"), "128");
}

TEST(ReadWritePage, TheHexadecimalBoxTakesAndRefusesThreeDigits) {
  PageBench bench;
  bench.Page.Enter();
  QTest::mouseClick(&bench.Find<QLabel>("read_writedisplaytext_34"), Qt::LeftButton);
  bench.Traffic();
  bench.Type("Text6", "100");
  bench.Find<QPushButton>("Command4").click();
  EXPECT_EQ(bench.Traffic(), "") << "256 is no byte, and must not become 10";
  EXPECT_EQ(bench.Find<QLineEdit>("Text6").text(), "00");
  EXPECT_EQ(bench.Find<QLineEdit>("Text7").text(), "00");
  bench.Type("Text6", "FF");
  bench.Find<QPushButton>("Command4").click();
  EXPECT_EQ(bench.Traffic(), "W6C:FF");
  EXPECT_EQ(bench.Find<QLineEdit>("Text7").text(), "255");
}

TEST(ReadWritePage, TheArrowKeysMoveThroughTheList) {
  PageBench bench;
  bench.Page.Enter();
  QTest::keyClick(&bench.Find<QWidget>("lstRegisterRows"), Qt::Key_Down);
  EXPECT_EQ(bench.Text("current_reg_type_label"), "Revision");
  QTest::keyClicks(&bench.Find<QLineEdit>("txtFindRegister"), "op point");
  QTest::keyClick(&bench.Find<QLineEdit>("txtFindRegister"), Qt::Key_Return);
  EXPECT_EQ(bench.Text("current_reg_type_label"), "Local Op Point") << "the first match from the top";
}

}  // namespace
}  // namespace krx
