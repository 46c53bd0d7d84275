// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/readwritepage.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>

#include "controls/ui/chiptimer.h"
#include "controls/ui/copyrows.h"
#include "journal/busjournal.h"
#include "link/registeraccess.h"
#include "support/registerrows.h"
#include "support/scripteddialogs.h"
#include "support/testbench.h"
#include "support/words.h"

namespace krx {
using namespace Qt::StringLiterals;
namespace {

struct PageBench : TestBench {
  explicit PageBench(bool readOnly = false) : Page(Panel, Bus, Journal, Turns, Dialogs, readOnly) {}
  ChipTurns Turns{Bus};
  ScriptedDialogs Dialogs;
  RegisterPanel Panel{Bus};
  BusJournal Journal{Time};
  ReadWritePage Page;

  template <typename Widget>
  Widget& Find(const char* name) {
    return *Page.findChild<Widget*>(name);
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
      Press(bench.Page, "read_writedisplaytext_34");
      EXPECT_EQ(bench.Traffic(), "R3E R6C") << "the first row, and the one that was clicked";
      EXPECT_EQ(bench.Text("lblRegValDec"), "15");
      if (!row.Typed.isEmpty())
        QTest::keyClicks(&bench.Find<QLineEdit>(row.Typed.first(5).toLatin1()), row.Typed.sliced(6));
      if (row.Control.starts_with("Text")) {
        QTest::keyClick(&bench.Find<QWidget>(row.Control.c_str()), Qt::Key_Return);
      } else {
        ASSERT_TRUE(Press(bench.Page, row.Control));
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

TEST(ReadWritePage, ShowsBitsFieldsAndEntriesInWordsAsWellAsInColour) {
  PageBench bench;
  bench.Poke({{0x5C, 0xC2}, {0x42, 0x00}});
  bench.Page.resize(1300, 760);
  bench.Page.show();
  bench.Page.Enter();
  Press(bench.Page, "read_writedisplaytext_8");
  EXPECT_EQ(Flaws(bench.Page), "");
  EXPECT_EQ(bench.Find<QWidget>("bit7").accessibleName(), u"Bit 7 BHVR2: 1"_s);
  EXPECT_EQ(bench.Find<QWidget>("lblRegValHex").accessibleName(), u"Register Value (Hex) C2"_s);
  EXPECT_EQ(bench.Find<QWidget>("pnlFields").accessibleName(),
            u"PWM1 behaviour: 110 · Fastest of all Temps; PWM1 polarity: 0 · active low; PWM1 SLOW: 0; "
            "PWM1 spin-up: 010 · 250 ms"_s);
  const auto cells = [&](const char* name) {
    const QAbstractItemModel& model = *bench.Find<QTableView>(name).model();
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < model.columnCount(); ++column) cells << model.index(row, column).data().toString();
      rows << cells.join(u'|');
    }
    return rows.join(u' ').toStdString();
  };
  EXPECT_EQ(cells("tblFields"),
            "7–5|Behaviour|110|Fastest of all Temps 4|Polarity|0|active low "
            "3|SLOW|0|not interpreted 2–0|Spin-up|010|250 ms");
  EXPECT_EQ(bench.Text("lblCodes"), "Behaviour codes");
  bench.Find<QTableView>("tblFields").setCurrentIndex(bench.Find<QTableView>("tblFields").model()->index(3, 0));
  EXPECT_EQ(bench.Text("lblCodes"), "Spin-up codes");
  EXPECT_TRUE(bench.Text("lblRegisterFacts").find("<b>62h</b>") != std::string::npos);
  bench.Page.resize(1020, 620);
  QTest::qWait(10);
  EXPECT_FALSE(bench.Find<QWidget>("lblCodes").isVisible());
  EXPECT_EQ(RegisterRow(bench.Page, "read_writedisplaytext_8").data().toString(), u"PWM1 Configuration Register"_s);
  EXPECT_LE(bench.Page.minimumSizeHint().width(), 1024);
  bench.Page.resize(1300, 760);

  // The arrow keys move between the bits and go no further; Space changes one.
  bench.Find<QWidget>("bit1").setFocus();
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Left}) QTest::keyClick(bench.Page.focusWidget(), key);
  EXPECT_EQ(bench.Page.focusWidget()->objectName(), u"bit1"_s);
  bench.Traffic();
  QTest::keyClick(bench.Page.focusWidget(), Qt::Key_Space);
  EXPECT_EQ(bench.Traffic(), "R5C W5C:C0 R5C");
  EXPECT_FALSE(bench.Find<QPushButton>("bit1").isChecked());

  const auto state = [&](const char* button) {
    auto& face = bench.Find<QPushButton>(button);
    const QImage picture = face.grab().toImage();
    return (picture.pixelColor(picture.width() / 2, 4).name() + u' ' + face.accessibleDescription()).toStdString();
  };
  auto& hex = bench.Find<QLineEdit>("Text6");
  QTest::keyClicks(&hex, u"E2"_s);
  EXPECT_EQ(state("Command4"), "#ff0000 not written");
  QTest::keyClick(&hex, Qt::Key_Return);
  EXPECT_EQ(state("Command4") + ", " + state("Command5"), "#00ff00 written E2, #00ff00 written E2");
  hex.clear();
  QTest::keyClicks(&hex, u"100"_s);
  QTest::keyClick(&hex, Qt::Key_Return);
  EXPECT_EQ(state("Command4") + ", " + state("Command5"), "#ff0000 not written, #ff0000 not written");
  EXPECT_NE(Words(bench.Page).find("|Above FF: a byte is 00 to FF|"), std::string::npos);
  QTest::keyClicks(&hex, u"1"_s);
  EXPECT_EQ(Words(bench.Page).find("Above FF"), std::string::npos);
}

TEST(ReadWritePage, KeysAndTheSearchMoveThroughTheListAndTheMouseLightsItsRow) {
  PageBench bench;
  bench.Page.resize(1100, 600);
  bench.Page.show();
  bench.Page.Enter();
  EXPECT_EQ(Flaws(bench.Page), "");
  auto& list = bench.Find<QTableView>("lstRegisterRows");
  auto& find = bench.Find<QLineEdit>("txtFindRegister");
  const struct {
    const char* Search;  ///< typed into the box; empty: nothing
    Qt::Key Leave;       ///< then pressed there
    Qt::Key Key;         ///< in the list
    const char *Traffic, *Selected, *Count;
  } rows[] = {
      {"", Qt::Key_A, Qt::Key_Up, "", "Company ID", "90 of 90"},
      {"", Qt::Key_A, Qt::Key_Down, "R3F", "Revision", "90 of 90"},
      {"", Qt::Key_A, Qt::Key_PageDown, "R29", "Tach1 High Byte", "90 of 90"},
      {"", Qt::Key_A, Qt::Key_PageUp, "R3F", "Revision", "90 of 90"},
      {"", Qt::Key_A, Qt::Key_End, "R7D", "Configuration Reg. 4", "90 of 90"},
      {"", Qt::Key_A, Qt::Key_Down, "", "Configuration Reg. 4", "90 of 90"},
      {"", Qt::Key_A, Qt::Key_PageUp, "R66", "PWM3 Min. Duty Cycle", "90 of 90"},
      {"", Qt::Key_A, Qt::Key_Home, "R3E", "Company ID", "90 of 90"},
      {"op point", Qt::Key_Return, Qt::Key_Up, "R34", "Local Op Point", "3 of 90"},
      {"OP point", Qt::Key_Return, Qt::Key_PageDown, "R34 R35", "Remote2 Op Point", "3 of 90"},
      {" 0X7d ", Qt::Key_Return, Qt::Key_A, "R7D", "Configuration Reg. 4", "1 of 90"},
      {"3eH", Qt::Key_Return, Qt::Key_Down, "R3E", "Company ID", "1 of 90"},
      {"no such", Qt::Key_Return, Qt::Key_A, "", "Company ID", "0 of 90"},
      {"op point", Qt::Key_Down, Qt::Key_A, "", "Company ID", "3 of 90"},
      {"op point", Qt::Key_Down, Qt::Key_Return, "R34", "Local Op Point", "3 of 90"},
      {"7D", Qt::Key_Escape, Qt::Key_A, "", "Local Op Point", "90 of 90"},
  };
  for (const auto& row : rows) {
    find.clear();
    find.setFocus();
    bench.Traffic();
    if (*row.Search != 0) QTest::keyClicks(&find, row.Search), QTest::keyClick(&find, row.Leave);
    SCOPED_TRACE(row.Search + std::string(" ") + row.Selected);
    const bool leads =
        row.Leave != Qt::Key_Escape && row.Leave != Qt::Key_A && bench.Text("lblRegisterCount")[0] != '0';
    EXPECT_EQ(bench.Page.focusWidget() == &list, leads);
    bench.Page.ShowWrittenElsewhere(0x00, 0);  // any renewal of the page, as a reading brings
    QTest::keyClick(&list, row.Key);
    EXPECT_EQ(bench.Traffic(), row.Traffic);
    EXPECT_EQ(bench.Text("current_reg_type_label"), row.Selected);
    EXPECT_EQ(bench.Text("lblRegisterCount"), row.Count);
    EXPECT_EQ(bench.Find<QLabel>("lblNoMatch").isVisible(), row.Count[0] == '0');
    const QRect place = list.visualRect(list.currentIndex());
    EXPECT_TRUE(place.isEmpty() || list.viewport()->rect().contains(place));
  }
  find.clear();
  const QModelIndex row = RegisterRow(bench.Page, "read_writedisplaytext_2");
  list.scrollTo(row);
  /// The bar at the row's left edge, and the row in words.
  const auto shown = [&] {
    const QRect place = list.visualRect(row.siblingAtColumn(0));
    const QImage picture = list.viewport()->grab(place).toImage();
    return picture.pixelColor(4, place.height() / 2).name().toStdString() + ' ' +
           row.data(Qt::AccessibleTextRole).toString().toStdString();
  };
  const auto pointAt = [&](int panelRow) {
    QTest::mouseMove(list.viewport(), list.visualRect(row.siblingAtRow(panelRow - 1)).center());
  };
  const std::string plain = shown();
  pointAt(2);
  EXPECT_EQ(shown(), "#00ff00 Revision, 10h, read-only");
  QTest::mouseClick(list.viewport(), Qt::RightButton, {}, list.visualRect(row).center());
  EXPECT_EQ(bench.Text("current_reg_type_label"), "Local Op Point");
  Press(bench.Page, "read_writedisplaytext_2");
  EXPECT_EQ(shown(), "#ffff00 Revision, 10h, selected, read-only");
  pointAt(3);
  EXPECT_EQ(shown(), "#008000 Revision, 10h, selected, read-only");
  Press(bench.Page, "read_writedisplaytext_3");
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(list.viewport(), &leave);
  EXPECT_EQ(shown(), plain);
}

TEST(ReadWritePage, TheListShowsWhatPassedOnTheBusAndWhatHasChangedSinceTheStart) {
  PageBench bench;
  bench.Poke({{0x5C, 0x62}, {0x68, 0x5A}});
  bench.Page.resize(1300, 700);
  bench.Page.show();
  const auto row = [&](int panelRow) {
    const QModelIndex first = RegisterRow(bench.Page, fmt::format("read_writedisplaytext_{}", panelRow));
    QStringList cells;
    for (int column = 0; column < 5; ++column) cells << first.siblingAtColumn(column).data().toString();
    return cells.join('|').toStdString();
  };
  EXPECT_EQ(row(8), "5C|PWM1 Configuration Register|–||");
  const auto steps = std::to_array<std::pair<std::function<void()>, const char*>>({
      {[&] { ReadByte(bench.Bus, 0x5C); }, "5C|PWM1 Configuration Register|62||"},
      {[&] { WriteByte(bench.Bus, 0x5C, 0xC2); }, "5C|PWM1 Configuration Register|C2|was 62|"},
      {[&] {
         bench.FailTransfer(1);
         EXPECT_THROW(WriteByte(bench.Bus, 0x5C, 0xC3), CommsError);
       },
       "5C|PWM1 Configuration Register|–||"},
      {[&] { ReadByte(bench.Bus, 0x5C); }, "5C|PWM1 Configuration Register|C2|was 62|"},
      {[&] { WriteByte(bench.Bus, 0x5C, 0x62); }, "5C|PWM1 Configuration Register|62||"},
      {[&] { WriteByte(bench.Bus, 0x5C, 0xC2); }, "5C|PWM1 Configuration Register|C2|was 62|"},
  });
  for (const auto& [step, shown] : steps) {
    step();
    EXPECT_EQ(row(8), shown);
  }
  auto& table = bench.Find<QTableView>("lstRegisterRows");
  bench.Find<QCheckBox>("chkChangedOnly").click();
  EXPECT_EQ(bench.Text("lblRegisterCount"), "1 of 90");
  ReadByte(bench.Bus, 0x68);
  WriteByte(bench.Bus, 0x68, 0x28);
  EXPECT_EQ(bench.Text("lblRegisterCount"), "2 of 90");
  EXPECT_FALSE(table.isRowHidden(8));
  table.setCurrentIndex(table.model()->index(7, 1));
  EXPECT_EQ(RowsText(table), u"5C\tPWM1 Configuration Register\tC2\twas 62"_s);
  WriteByte(bench.Bus, 0x5C, 0x62);
  WriteByte(bench.Bus, 0x68, 0x5A);
  EXPECT_TRUE(bench.Find<QLabel>("lblNoMatch").isVisible());
  EXPECT_EQ(bench.Text("lblNoMatch"), "no register has changed");
  bench.Find<QCheckBox>("chkChangedOnly").click();
  QTest::qWait(20);
  bench.Traffic();
  EXPECT_FALSE(Repaints(*table.viewport(), [&] { ReadByte(bench.Bus, 0x5C); })) << "nothing new";
}

}  // namespace
}  // namespace krx
