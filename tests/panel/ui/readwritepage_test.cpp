// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/readwritepage.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>

#include "support/scripteddialogs.h"
#include "support/testbench.h"
#include "support/words.h"

namespace krx {
namespace {

struct PageBench : TestBench {
  explicit PageBench(bool readOnly = false) : Page(Panel, Turns, Dialogs, readOnly) {}
  ChipTurns Turns{Bus};
  ScriptedDialogs Dialogs;
  RegisterPanel Panel{Bus};
  ReadWritePage Page;

  template <typename Widget>
  Widget& Find(const char* name) {
    return *Page.findChild<Widget*>(name);
  }
  /// The row of the list that stands for the register in sight.
  QLabel& Selected() {
    return Find<QLabel>(("read_writedisplaytext_" + std::to_string(Panel.LastSelectedRow())).c_str());
  }
  std::string Text(const char* name) { return Find<QLabel>(name).text().toStdString(); }
};

/// What the user types ("Text6=FF") and presses on the page of register 0x6C, which holds 0x0F; the traffic, and what
/// hexadecimal box, decimal box and bits then show.
struct PressRow {
  QString Typed;
  std::string Control, Traffic, Shown;
};

TEST(ReadWritePage, EachControlDoesItsOwnAndNothingElse) {
  std::vector<PressRow> rows{
      {"Text6=12", "Command4", "W6C:12", "12/18/ 00010010"},
      {"Text6=12", "Text6", "W6C:12", "12/18/ 00010010"},
      {"Text6=12", "Command5", "W6C:00", "0// 00000000"},  // the decimal box is empty: zero
      {"Text7=12", "Command5", "W6C:0C", "C/12/ 00001100"},
      {"Text7=12", "Text7", "W6C:0C", "C/12/ 00001100"},
      {"Text7=12", "Command4", "", "00/00/ 00001111"},  // the hexadecimal box is empty: refused
      {"Text7=000000255", "Command5", "W6C:FF", "FF/000000255/ 11111111"},
      {"", "read_writedisplaytext_3", "R40", "// 00000001"},
      {"", "read_writedisplaytext_90", "R7D", "// 00000000"},
  };
  for (int bit = 0; bit < 8; ++bit) {
    const int byte = 0x0F ^ 1 << bit;
    rows.push_back(
        {"", fmt::format("bit{}", bit), fmt::format("R6C W6C:{:02X} R6C", byte), fmt::format("// {:08b}", byte)});
  }
  for (const PressRow& row : rows) {
    for (const bool readOnly : {false, true}) {
      SCOPED_TRACE(row.Control + " " + row.Typed.toStdString() + (readOnly ? " read-only" : ""));
      PageBench bench(readOnly);
      bench.Poke(0x6C, 0x0F);
      bench.Poke(0x40, 0x01);
      bench.Page.Enter();
      QTest::mouseClick(&bench.Find<QLabel>("read_writedisplaytext_34"), Qt::LeftButton);
      EXPECT_EQ(bench.Traffic(), "R3E R6C") << "the first row, and the one that was clicked";
      EXPECT_EQ(bench.Text("lblRegValDec"), "15");
      if (!row.Typed.isEmpty())
        QTest::keyClicks(&bench.Find<QLineEdit>(row.Typed.first(5).toLatin1()), row.Typed.sliced(6));
      auto& control = bench.Find<QWidget>(row.Control.c_str());
      if (qobject_cast<QLineEdit*>(&control) != nullptr) {
        QTest::keyClick(&control, Qt::Key_Return);
      } else {
        QTest::mouseClick(&control, Qt::LeftButton);
      }
      EXPECT_EQ(bench.Traffic(), readOnly && !row.Control.starts_with("read_") ? "" : row.Traffic);
      if (readOnly) continue;
      QString shown = bench.Find<QLineEdit>("Text6").text() + '/' + bench.Find<QLineEdit>("Text7").text() + "/ ";
      for (int bit = 7; bit >= 0; --bit) shown += bench.Find<QPushButton>(("bit" + std::to_string(bit)).c_str()).text();
      EXPECT_EQ(shown.toStdString(), row.Shown);
    }
  }
}

TEST(ReadWritePage, AReadOnlyRegisterTakesNothingAndContinuousReadingReadsUntilItIsSwitchedOff) {
  PageBench bench;
  bench.Page.Enter();
  for (const char* name : {"bit0", "bit7", "Text6", "Text7"}) EXPECT_FALSE(bench.Find<QWidget>(name).isEnabled());
  bench.Traffic();
  bench.Find<QPushButton>("SSRibbon5").click();
  EXPECT_EQ(bench.Text("continuous_reading_label"), "Continuous Reading is On");
  std::string traffic;
  EXPECT_TRUE(QTest::qWaitFor([&] { return (traffic += bench.Traffic()).size() > 5; }));
  EXPECT_EQ(traffic.find_first_not_of("R3E "), std::string::npos) << traffic;
  bench.Find<QPushButton>("SSRibbon5").click();
  EXPECT_EQ(bench.Text("continuous_reading_label"), "Continuous Reading is Off");
  bench.Traffic();
  QTest::qWait(40);
  EXPECT_EQ(bench.Traffic(), "");
}

TEST(ReadWritePage, KeysAndTheSearchMoveThroughTheListAndTheMouseLightsItsRow) {
  PageBench bench;
  bench.Page.resize(900, 400);
  bench.Page.show();
  bench.Page.Enter();
  EXPECT_EQ(Flaws(bench.Page), "");
  auto& list = bench.Find<QWidget>("lstRegisterRows");
  auto& find = bench.Find<QLineEdit>("txtFindRegister");
  const struct {
    const char* Search;  ///< typed, then Return; empty: nothing
    Qt::Key Key;         ///< in the list
    const char *Traffic, *Selected;
  } rows[] = {
      {"", Qt::Key_Up, "", "Company ID"},
      {"", Qt::Key_Down, "R3F", "Revision"},
      {"", Qt::Key_PageDown, "R29", "Tach1 High Byte"},
      {"", Qt::Key_PageUp, "R3F", "Revision"},
      {"", Qt::Key_End, "R7D", "Configuration Reg. 4"},
      {"", Qt::Key_Down, "", "Configuration Reg. 4"},
      {"", Qt::Key_PageUp, "R66", "PWM3 Min. Duty Cycle"},
      {"", Qt::Key_Home, "R3E", "Company ID"},
      {"op point", Qt::Key_Up, "R34", "Local Op Point"},
      {"OP point", Qt::Key_PageDown, "R34 R35", "Remote2 Op Point"},
      {" 0X7d ", Qt::Key_A, "R7D", "Configuration Reg. 4"},
      {"3eH", Qt::Key_Down, "R3E", "Company ID"},
      {"no such", Qt::Key_A, "", "Company ID"},
  };
  for (const auto& row : rows) {
    find.clear();
    bench.Traffic();
    if (*row.Search != 0) QTest::keyClicks(&find, row.Search), QTest::keyClick(&find, Qt::Key_Return);
    QTest::keyClick(&list, row.Key);
    SCOPED_TRACE(row.Search + std::string(" ") + row.Selected);
    EXPECT_EQ(bench.Traffic(), row.Traffic);
    EXPECT_EQ(bench.Text("current_reg_type_label"), row.Selected);
    EXPECT_EQ(bench.Page.focusWidget(), *row.Search == 0 ? bench.Page.focusWidget() : &list);
    QTest::qWait(10);
    EXPECT_EQ(bench.Selected().visibleRegion().isEmpty(), bench.Selected().isHidden());
  }
  find.clear();
  QTest::qWait(10);
  auto& row = bench.Find<QLabel>("read_writedisplaytext_2");
  const auto colour = [&] { return row.palette().color(row.foregroundRole()).name().toStdString(); };
  const std::string plain = colour();
  QTest::mouseMove(bench.Page.windowHandle(), row.mapTo(&bench.Page, QPoint(9, 5)));
  EXPECT_EQ(colour(), "#00ff00");
  QTest::mouseClick(&row, Qt::RightButton);
  EXPECT_EQ(bench.Text("current_reg_type_label"), "Company ID");
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(&list, &leave);
  EXPECT_EQ(colour(), plain);
}

}  // namespace
}  // namespace krx
