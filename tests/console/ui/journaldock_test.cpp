// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/journaldock.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include "console/ui/mainform.h"
#include "console/ui/originfilter.h"
#include "console/workbench.h"
#include "link/journalmodule.h"
#include "link/registeraccess.h"
#include "support/scripteddialogs.h"
#include "support/testbench.h"

namespace krx {
namespace {

/// The main window with its journal, over a chip that does not monitor: no tick comes between.
struct JournalWindow {
  explicit JournalWindow(bool readOnly = false) {
    Chip.Root.Change([this, readOnly] { return MakeJournalModule(Chip.Sim.MakeCommsModule(), Journal, readOnly); });
    Chip.Poke(0x5C, 0xE2);
    Turns.Around([this](const std::string& name, const std::function<void()>& tick) { RunTick(Journal, name, tick); });
    Form = std::make_unique<MainForm>(Bench, Turns, Dialogs, Journal, MainFormOptions{"Simulated board", readOnly});
    const BusJournal::OriginScope origin(Journal, "Start-up");
    Form->Start();
    Form->SelectTab(MainForm::VisualDisplay);
    Find<QDockWidget>("dockBusJournal")->show();
    if (!Find<QCheckBox>("chkJournalUser")->isChecked()) Press("chkJournalUser");
  }
  template <class Widget>
  Widget* Find(const char* name) const {
    auto* found = Form->findChild<Widget*>(QString::fromLatin1(name));
    if (found == nullptr) throw std::runtime_error(name);
    return found;
  }
  void Press(const char* name) { QTest::mouseClick(Find<QWidget>(name), Qt::LeftButton); }
  void Key(const char* name, Qt::Key key) { QTest::keyClick(Find<QWidget>(name), key); }
  std::string Notice() const { return Find<QLabel>("lblNotice")->text().remove("|  ").toStdString(); }
  /// The rows of the table, renewed as the window does it: "write 64h PWM1 Min. Duty Cycle 80h 10h Origin".
  QStringList Rows() {
    auto* const filter = Find<QLineEdit>("txtJournalFilter");
    emit filter->textChanged(filter->text());
    const QAbstractItemModel& model = *Find<QTableView>("tblBusJournal")->model();
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
      QStringList cells;
      for (int column = 2; column < 7; ++column) cells << model.index(row, column).data().toString();
      rows << cells.join(' ');
    }
    return rows;
  }

  TestBench Chip;
  BusJournal Journal{Chip.Time};
  OriginFilter Origins{Journal};
  ChipTurns Turns{Chip.Bus};
  ScriptedDialogs Dialogs;
  Workbench Bench{Chip.Bus};
  std::unique_ptr<MainForm> Form;
};

TEST(JournalDock, NamesEveryControlThatWritesAsAPersonWould) {
  JournalWindow window;
  EXPECT_TRUE(window.Rows().isEmpty()) << "the start-up's writes are not the user's";
  const auto press = [&](const char* name) { return [&window, name] { window.Press(name); }; };
  const auto key = [&](const char* name, Qt::Key which) { return [&window, name, which] { window.Key(name, which); }; };
  const auto tab = [&](MainForm::Tab page) { return [&window, page] { window.Form->SelectTab(page); }; };
  const auto type = [&](const char* name, const char* text) {
    return [&window, name, text] {
      window.Find<QLineEdit>(name)->selectAll();
      QTest::keyClicks(window.Find<QLineEdit>(name), text);
      window.Key(name, Qt::Key_Return);
    };
  };
  const struct {
    std::function<void()> Do;
    QStringList Rows;
  } steps[] = {
      {press("visualdisplaytext_0"), {}},
      {key("limits_gauge", Qt::Key_Down),
       {"write 50h Local Temp. Low Limit 81h 81h Visual Display: high limit",
        "write 51h Local Temp. High Limit 7Fh 7Eh Visual Display: high limit"}},
      {key("analog_output_slider", Qt::Key_Left),
       {"write 30h PWM1 Current Duty Cycle  FCh Visual Display: duty slider"}},
      {press("cmdFanTest"),
       {"write 5Ch PWM1 Configuration Register E2h E2h Fan Test Setup",
        "write 5Dh PWM2 Configuration Register 62h E2h Fan Test Setup",
        "write 78h Configuration Reg. 3 00h 30h Fan Test Setup"}},
      {press("cmdGlitchTest"),
       {"write 5Eh PWM3 Configuration Register 62h E2h Glitch test",
        "write 5Dh PWM2 Configuration Register E2h E2h Glitch test",
        "write 32h PWM3 Current Duty Cycle  00h Glitch test", "write 31h PWM2 Current Duty Cycle FFh 00h Glitch test"}},
      {tab(MainForm::ReadWrite), {}},
      {press("read_writedisplaytext_78"), {}},
      {press("bit0"), {"write 64h PWM1 Min. Duty Cycle 80h 81h Read/Write: bit 0"}},
      {type("Text6", "10"), {"write 64h PWM1 Min. Duty Cycle 81h 10h Read/Write: hex box"}},
      {type("Text7", "255"), {"write 64h PWM1 Min. Duty Cycle 10h FFh Read/Write: decimal box"}},
      {tab(MainForm::Control),
       {"send byte  8Eh 8Eh Tab \"Control\"", "send byte  52h 52h Tab \"Control\"",
        "send byte  8Eh 8Eh Tab \"Control\""}},
      {press("chkPROCHOT"),
       {"write 78h Configuration Reg. 3 30h 32h Control: EnableTHERM", "send byte  8Eh 4Eh Control: EnableTHERM"}},
      {press("opt5V"),
       {"write 7Dh Configuration Reg. 4 00h 02h Control: Input on 5V pin",
        "send byte  4Eh 9Ah Control: Input on 5V pin"}},
      {press("chkSensor2"), {"send byte  3Fh 07h Control: Diode2 Enabled"}},
      {press("chkHeater1"), {"set control byte   10h Control: Heater1 Enabled"}},
      {press("cmdSwitchAccess"), {}},
      {press("cmdSwitchU4E"),
       {"send byte  9Ah 9Ah Switch Control: U4E", "send byte  07h 17h Switch Control: U4E",
        "send byte  52h 52h Switch Control: U4E", "send byte  42h 42h Switch Control: U4E"}},
      {press("cmdConfigureFans"), {}},
      {[&] {
         auto& list = *window.Find<QComboBox>("cmbSpinUp_0");
         list.setCurrentIndex(0);
         emit list.activated(0);
         window.Press("cmdApply");
       },
       {"write 5Ch PWM1 Configuration Register E2h E0h Fan Configuration: Apply"}},
  };
  qsizetype known = 0;
  for (const auto& step : steps) {
    step.Do();
    const QStringList rows = window.Rows();
    EXPECT_EQ(rows.mid(known).join('\n').toStdString(), step.Rows.join('\n').toStdString());
    known = rows.size();
  }
  window.Form->SelectTab(MainForm::VisualDisplay);
  EXPECT_FALSE(window.Form->VisualTimerRunning());
  window.Press("Command1");
  EXPECT_TRUE(window.Form->VisualTimerRunning());
  EXPECT_EQ(window.Rows().filter(QRegularExpression("^write .* Easy Setup$")).size(), 13);
  window.Press("cmdUndoLast");
  EXPECT_EQ(window.Notice(), "Undo of \"Easy Setup\": 51h = 7Eh, 50h = 81h, 40h = 00h");
  EXPECT_EQ(window.Dialogs.Shown.back(),
            "exclamation|Not undone:\n35h, 33h, 34h, 69h, 67h, 68h, 53h, 4Fh, 52h, 4Eh: what it held before was never "
            "read|");
}

TEST(OriginFilter, AHeldKeyIsOneActionAndNoControlIsNamedByItsObjectName) {
  JournalWindow window;
  window.Press("visualdisplaytext_0");
  QWidget* const gauge = window.Find<QWidget>("limits_gauge");
  const auto key = [&](QEvent::Type type, quint64 timestamp) {
    QKeyEvent event(type, Qt::Key_Down, Qt::NoModifier);
    event.setTimestamp(timestamp);
    QApplication::sendEvent(gauge, &event);
  };
  // The system repeats a held key so: a release and a press of the same moment.
  for (const quint64 time : {1000, 1040, 1080}) key(QEvent::KeyPress, time), key(QEvent::KeyRelease, time + 40);
  key(QEvent::KeyPress, 1500);
  window.Press("cmdUndoLast");
  EXPECT_EQ(window.Notice(), "Undo of \"Visual Display: high limit\": 51h = 7Ch");
  window.Press("cmdUndoLast");
  EXPECT_EQ(window.Notice(), "Undo of \"Visual Display: high limit\": 51h = 7Fh");

  window.Form->SelectTab(MainForm::Control);
  for (const char* dialog : {"cmdSwitchAccess", "cmdConfigureFans"}) window.Press(dialog);
  for (const auto* button : window.Form->findChildren<QAbstractButton*>(QRegularExpression("^[^q]"))) {
    const std::string name = ControlName(*button);
    EXPECT_FALSE(name.empty()) << button->objectName().toStdString();
    EXPECT_EQ(name.find(button->objectName().toStdString()), std::string::npos) << name;
  }
}

TEST(JournalDock, AnUndoRenewsWhatTheWindowsShow) {
  JournalWindow window;
  EXPECT_FALSE(window.Find<QPushButton>("cmdUndoMark")->isEnabled()) << "there is no mark";
  window.Press("cmdUndoLast");
  EXPECT_EQ(window.Notice(), "Nothing to undo");
  window.Form->SelectTab(MainForm::ReadWrite);
  window.Press("read_writedisplaytext_78");
  window.Press("bit0");
  window.Press("cmdJournalMark");
  window.Press("bit1");
  window.Press("bit2");
  window.Chip.Traffic();
  window.Press("cmdUndoMark");
  EXPECT_EQ(window.Chip.Traffic(), "W64:81");
  EXPECT_EQ(window.Find<QLabel>("lblRegValHex")->text(), "81");
  EXPECT_EQ(window.Find<QPushButton>("bit1")->text(), "0");
  window.Press("cmdUndoLast");
  EXPECT_EQ(window.Notice(), "Undo of \"Read/Write: bit 0\": 64h = 80h");

  window.Form->SelectTab(MainForm::Control);
  window.Press("chkPROCHOT");
  window.Press("cmdUndoLast");
  EXPECT_FALSE(window.Find<QCheckBox>("chkPROCHOT")->isChecked());
  window.Press("cmdConfigureFans");
  auto& pulses = *window.Find<QComboBox>("cmbMeasure_0");
  pulses.setCurrentIndex(3);
  emit pulses.activated(3);
  window.Press("cmdApply");
  window.Chip.Traffic();
  window.Press("cmdUndoLast");
  EXPECT_EQ(window.Chip.Traffic(), "W7B:55") << "the dialog takes what passed on the bus";
  EXPECT_EQ(pulses.currentText(), "2");
  EXPECT_EQ(window.Bench.Fans.ProgrammedPulses[0], 2);
  EXPECT_EQ(window.Rows().last().toStdString(), "write 7Bh Fan Pulses Per Revolution 57h 55h Undo");
}

TEST(JournalDock, FiltersCopiesAndSavesWhatItShows) {
  JournalWindow window;
  window.Form->SelectTab(MainForm::ReadWrite);
  window.Press("read_writedisplaytext_78");
  window.Press("bit0");
  window.Press("bit1");
  window.Press("cmdJournalCopy");
  const QString copied = QGuiApplication::clipboard()->text();
  EXPECT_EQ(copied.count('\n'), 1);
  EXPECT_EQ(window.Notice(), "2 lines copied");
  for (const int row : {1, 0}) {
    QItemSelectionModel& selection = *window.Find<QTableView>("tblBusJournal")->selectionModel();
    selection.select(selection.model()->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
  }
  window.Press("cmdJournalCopy");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), copied) << "in the order of time";
  QTemporaryDir folder;
  window.Dialogs.Files = {folder.filePath("journal.txt").toStdString()};
  window.Press("cmdJournalSave");
  EXPECT_EQ(window.Dialogs.Shown.back(), "save|Text Files (*.txt)|*.txt|bus-journal.txt");
  QFile file(folder.filePath("journal.txt"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(QString::fromUtf8(file.readAll()),
            "Time (s)\tDevice\tTransfer\tRegister\tOld\tNew\tOrigin\tResult\n" + copied + '\n');
  QTest::keyClicks(window.Find<QLineEdit>("txtJournalFilter"), "BIT 1");
  EXPECT_EQ(window.Rows().join('\n').toStdString(), "write 64h PWM1 Min. Duty Cycle 81h 83h Read/Write: bit 1");
  window.Find<QLineEdit>("txtJournalFilter")->clear();
  window.Press("chkJournalUser");
  EXPECT_GT(window.Rows().filter("read").size(), 10) << "all transfers";
  window.Press("chkJournalWrites");
  EXPECT_TRUE(window.Rows().filter("read ").isEmpty());
  EXPECT_GT(window.Rows().filter("Start-up").size(), 5);
}

TEST(JournalModel, FollowsTheRingAsItTurns) {
  TestBench bench;
  BusJournal journal(bench.Time);
  JournalModel model(journal);
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  const auto add = [&](std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) journal.Add({});
  };
  add(10);
  model.Follow();
  add(BusJournal::capacity - 7);
  EXPECT_TRUE(model.data(model.index(2, 0), Qt::DisplayRole).isNull()) << "dropped, and not yet followed";
  model.Follow();
  EXPECT_EQ(model.rowCount(), static_cast<int>(BusJournal::capacity));
  EXPECT_EQ(model.Entry(0).Number, 4U);
}

TEST(JournalDock, AReadOnlyRunHasNothingToUndo) {
  JournalWindow window(true);
  window.Press("cmdJournalMark");
  for (const char* name : {"cmdUndoLast", "cmdUndoMark"}) EXPECT_FALSE(window.Find<QPushButton>(name)->isEnabled());
}

}  // namespace
}  // namespace krx
