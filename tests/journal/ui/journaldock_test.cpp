// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/ui/journaldock.h"

#include <gtest/gtest.h>

#include "journal/journalmodule.h"
#include "journal/ui/originfilter.h"
#include "support/formbench.h"
#include "support/fulldisk.h"
#include "support/registerrows.h"
#include "support/words.h"

namespace krx {
namespace {

/// The main window with its journal and a chip that is not monitoring, so that no ticks interfere.
struct JournalWindow : FormBench {
  JournalWindow() {
    Chip.Root.Change([this] { return MakeJournalModule(Chip.Sim.MakeCommsModule(), Journal, false); });
    Chip.Poke(0x5C, 0xE2);
    Turns.Around([this](const std::string& name, const std::function<void()>& tick) { RunTick(Journal, name, tick); });
    const BusJournal::OriginScope origin(Journal, "Start-up");
    Open();
    Find<QDockWidget>("dockBusJournal")->show();
    if (!Find<QCheckBox>("chkJournalUser")->isChecked()) Press("chkJournalUser");
  }
  void Press(const char* name) {
    if (!krx::Press(*Form, name)) Find<QWidget>(name);
  }
  void Key(const char* name, Qt::Key key) { QTest::keyClick(Find<QWidget>(name), key); }
  std::string Notice() const { return Find<QLabel>("lblNotice")->text().remove("|  ").toStdString(); }
  /// The rows of the table from `first`, updated like in the window: "Origin: write 64h 80h 10h, write ...".
  std::string Rows(int first = 0) {
    auto* const filter = Find<QLineEdit>("txtJournalFilter");
    emit filter->textChanged(filter->text());
    const QAbstractItemModel& model = *Find<QTableView>("tblBusJournal")->model();
    RowCount = model.rowCount();
    QString text, origin;
    for (int row = first; row < RowCount; ++row) {
      const auto cell = [&](int column) { return model.index(row, column).data().toString(); };
      text += row > first ? "; " : "";
      if (cell(7) != origin) text += (origin = cell(7)) + ": ";
      text += QStringList({cell(2), cell(3).section(' ', 0, 0), cell(4), cell(5)}).join(' ').simplified();
    }
    return text.toStdString();
  }
  int RowCount = 0;
  OriginFilter Origins{Journal};
};

TEST(JournalDock, NamesEveryWritingControlInWords) {
  JournalWindow window;
  EXPECT_EQ(window.Rows(), "") << "the start-up's writes are not the user's";
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
  const std::pair<std::function<void()>, const char*> steps[] = {
      {press("visualdisplaytext_0"), ""},
      {key("limits_gauge", Qt::Key_Down), "Visual Display: high limit: write 50h 81h 81h; write 51h 7Fh 7Eh"},
      {key("analog_output_slider", Qt::Key_Left), "Visual Display: duty slider: write 30h FCh"},
      {press("cmdFanTest"), "Fan Test Setup: write 5Ch E2h E2h; write 5Dh 62h E2h; write 78h 00h 30h"},
      {press("cmdGlitchTest"), "Glitch test: write 5Eh 62h E2h; write 5Dh E2h E2h; write 32h 00h; write 31h FFh 00h"},
      {tab(MainForm::ReadWrite), ""},
      {press("read_writedisplaytext_78"), ""},
      {press("bit0"), "Read/Write: bit 0: write 64h 80h 81h"},
      {type("Text6", "10"), "Read/Write: hex box: write 64h 81h 10h"},
      {type("Text7", "255"), "Read/Write: decimal box: write 64h 10h FFh"},
      {tab(MainForm::Control), "Tab \"Control\": send byte 8Eh 8Eh; send byte 52h 52h; send byte 8Eh 8Eh"},
      {press("chkPROCHOT"), "Control: EnableTHERM: write 78h 30h 32h; send byte 8Eh 4Eh"},
      {press("opt5V"), "Control: Input on 5V pin: write 7Dh 00h 02h; send byte 4Eh 9Ah"},
      {press("chkSensor2"), "Control: Diode2 Enabled: send byte 3Fh 07h"},
      {press("chkHeater1"), "Control: Heater1 Enabled: set control byte 10h"},
      {press("cmdSwitchAccess"), ""},
      {press("cmdSwitchU4E"),
       "Switch Control: U4E: send byte 9Ah 9Ah; send byte 07h 17h; send byte 52h 52h; send byte 42h 42h"},
      {press("cmdConfigureFans"), ""},
      {[&] {
         auto& list = *window.Find<QComboBox>("cmbSpinUp_0");
         list.setCurrentIndex(0);
         emit list.activated(0);
         window.Press("cmdApply");
       },
       "Fan Configuration: Apply: write 5Ch E2h E0h"},
  };
  for (const auto& [step, rows] : steps) {
    step();
    EXPECT_EQ(window.Rows(window.RowCount), rows);
  }
  window.Form->SelectTab(MainForm::VisualDisplay);
  window.Press("Command1");
  EXPECT_NE(window.Rows().find("Easy Setup: write 40h 00h 01h; write 50h 81h 0Ah; write 4Eh"), std::string::npos);
  window.Press("cmdUndoLast");
  EXPECT_EQ(window.Notice(), "Undo of \"Easy Setup\": 51h = 7Eh, 50h = 81h, 40h = 00h");
  EXPECT_EQ(window.Dialogs.Shown.back(),
            "exclamation|Not undone:\n35h, 33h, 34h, 69h, 67h, 68h, 53h, 4Fh, 52h, 4Eh: previous value unknown; the "
            "written value is kept|");
}

TEST(OriginFilter, AHeldKeyIsOneAction) {
  JournalWindow window;
  window.Press("visualdisplaytext_0");
  QWidget* const gauge = window.Find<QWidget>("limits_gauge");
  const auto key = [&](QEvent::Type type, quint64 timestamp) {
    QKeyEvent event(type, Qt::Key_Down, Qt::NoModifier);
    event.setTimestamp(timestamp);
    QApplication::sendEvent(gauge, &event);
  };
  // The system repeats a held key so: a release and a press of the same moment.
  for (const quint64 time : {1000, 1040, 1080}) {
    key(QEvent::KeyPress, time);
    if (time == 1040) QTest::qWait(600);  // longer than the hold time of a gesture after its release
    key(QEvent::KeyRelease, time + 40);
  }
  key(QEvent::KeyPress, 1500);
  window.Press("cmdUndoLast");
  EXPECT_EQ(window.Notice(), "Undo of \"Visual Display: high limit\": 51h = 7Ch");
  window.Press("cmdUndoLast");
  EXPECT_EQ(window.Notice(), "Undo of \"Visual Display: high limit\": 51h = 7Fh");
}

TEST(JournalDock, AnUndoUpdatesTheWindows) {
  JournalWindow window;
  EXPECT_FALSE(window.Find<QWidget>("cmdUndoMark")->isEnabled()) << "no mark is set";
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
  EXPECT_EQ(window.Find<QPushButton>("bit1")->text(), "0");
  // The page's own history, newest first, and its undo, which goes the same way.
  window.Press("bit3");
  const auto history = [&] {
    const QAbstractItemModel& model = *window.Find<QTableView>("tblRegisterHistory")->model();
    QStringList rows;
    for (int row = 0; row < 3; ++row)
      rows << model.index(row, 1).data().toString() + ' ' + model.index(row, 2).data().toString();
    return rows.join(", ").toStdString();
  };
  EXPECT_EQ(history(), "bit 3 89, Undo 81, bit 2 87");
  EXPECT_EQ(window.Text("lblUndoOffer"), "Undoes \"Read/Write: bit 3\"");
  window.Chip.Traffic();
  window.Press("cmdUndoWrite");
  EXPECT_EQ(window.Chip.Traffic(), "W64:81");
  EXPECT_EQ(window.Notice(), "Undo of \"Read/Write: bit 3\": 64h = 81h");
  EXPECT_EQ(window.Find<QPushButton>("bit3")->text() + window.Text("lblRegValHex").c_str(), "081");
  EXPECT_EQ(history(), "Undo 81, bit 3 89, Undo 81");
  window.Form->SelectTab(MainForm::Control);
  window.Press("chkPROCHOT");
  window.Chip.BusTraffic();
  window.Press("cmdUndoLast");
  EXPECT_EQ(window.Chip.BusTraffic(), "W78:00 R78 S96:8E R78 S90:52 R7D S96:8E") << "the switches follow the pins";
  EXPECT_FALSE(window.Find<QCheckBox>("chkPROCHOT")->isChecked());
  window.Press("cmdConfigureFans");
  auto& pulses = *window.Find<QComboBox>("cmbMeasure_0");
  pulses.setCurrentIndex(3);
  emit pulses.activated(3);
  window.Press("cmdApply");
  window.Chip.Traffic();
  window.Press("cmdUndoLast");
  EXPECT_EQ(window.Chip.Traffic(), "W7B:55") << "the dialog takes the bytes seen on the bus";
  EXPECT_EQ(pulses.currentText(), "2");

  window.Form->SelectTab(MainForm::VisualDisplay);
  window.Press("cmdGlitchTest");
  window.Find<QAction>("actStopGlitchTest")->trigger();
  EXPECT_EQ(window.Notice(), "Glitch test stopped: PWM2 and PWM3 in manual control at 0 %");
  window.Press("cmdGlitchTest");
  window.Press("cmdUndoLast");
  EXPECT_TRUE(window.Find<QWidget>("barGlitchTest")->isHidden()) << "the test does not raise a restored duty";
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
  EXPECT_TRUE(
      copied.contains("\t64h PWM1 Min. Duty Cycle\t80h\t81h\tPWM1 minimum duty: 50.2 % → 50.6 %\tRead/Write: bit 0"));
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
  EXPECT_EQ(QString::fromUtf8(Content(folder.filePath("journal.txt"))),
            "Time (s)\tDevice\tTransfer\tRegister\tOld\tNew\tChange\tOrigin\tResult\n" + copied + '\n');
  QTest::keyClicks(window.Find<QLineEdit>("txtJournalFilter"), "BIT 1");
  EXPECT_EQ(window.Rows(), "Read/Write: bit 1: write 64h 81h 83h");
  window.Find<QLineEdit>("txtJournalFilter")->clear();
  window.Press("chkJournalUser");
  EXPECT_EQ(window.Rows().find("Start-up: "), 0U);
  EXPECT_NE(window.Rows().find("; read 7Bh"), std::string::npos) << "all transfers";
  window.Press("chkJournalWrites");
  EXPECT_EQ(window.Rows().find("; read 7Bh"), std::string::npos);
  EXPECT_NE(window.Rows().find("; send byte"), std::string::npos);

  QTableView& table = *window.Find<QTableView>("tblBusJournal");
  const auto device = [&](int row) { return table.model()->index(row, 1).data().toString(); };
  EXPECT_EQ(device(2) + ", " + device(window.RowCount - 1), "Board U3, Board 2Dh") << "in the form of the title";
  table.setFixedHeight(table.height() / 2);
  QApplication::processEvents();
  EXPECT_EQ(table.verticalScrollBar()->value(), table.verticalScrollBar()->maximum()) << "a smaller table stays there";
}

TEST(JournalDock, StaysAtTheUsersScrollPositionOrElseAtItsEnd) {
  JournalWindow window;
  window.Press("chkJournalUser");
  QScrollBar& bar = *window.Find<QTableView>("tblBusJournal")->verticalScrollBar();
  const QWidget& dock = *window.Find<QDockWidget>("dockBusJournal");
  const auto grow = [&] {
    for (int i = 0; i < 100; ++i) window.Journal.Add({});
    const std::string count = std::to_string(window.Journal.Count()) + " transfers";
    EXPECT_TRUE(window.Wait([&] { return Words(dock).find(count) != std::string::npos; })) << Words(dock);
  };
  grow();
  EXPECT_TRUE(bar.maximum() > 50 && bar.value() == bar.maximum());
  bar.setValue(7);
  grow();
  EXPECT_EQ(bar.value(), 7);
  EXPECT_EQ(Flaws(dock), "");
}

TEST(JournalModel, FollowsTheRingBuffer) {
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
  EXPECT_TRUE(model.data(model.index(2, 0), Qt::DisplayRole).isNull()) << "dropped and not yet updated";
  model.Follow();
  EXPECT_EQ(model.rowCount(), static_cast<int>(BusJournal::capacity));
  EXPECT_EQ(model.Entry(0).Number, 4U);
}

}  // namespace
}  // namespace krx
