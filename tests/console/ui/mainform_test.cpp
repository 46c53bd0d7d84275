// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/mainform.h"

#include <gtest/gtest.h>

#include <functional>
#include <regex>

#include "console/ui/statusline.h"
#include "controls/ui/dutyslider.h"
#include "controls/ui/filesaving.h"
#include "controls/ui/indicator.h"
#include "controls/ui/limitgauge.h"
#include "controls/ui/palette.h"
#include "controls/ui/plotlibrary.h"
#include "controls/ui/savingbar.h"
#include "controls/ui/stripchart.h"
#include "link/registeraccess.h"
#include "monitor/ui/channeltile.h"
#include "monitor/ui/limitbox.h"
#include "simulator/simfaults.h"
#include "simulator/simwords.h"
#include "support/formbench.h"
#include "support/fulldisk.h"
#include "support/words.h"

namespace krx {
namespace {

struct Console : FormBench {
  using Medium = TestBench::Medium;
  using Bytes = std::initializer_list<std::pair<int, int>>;
  /// The initial registers of the chip; monitoring is on by default.
  explicit Console(Medium medium = Medium::Board, Bytes bytes = {}, bool readOnly = false) : FormBench(medium) {
    Poke({{0x40, 0x01}});
    Poke(bytes);
    Open(readOnly);
  }

  void Poke(Bytes bytes) { Chip.Poke(bytes); }
  ChannelTile& Tile(int channel) const {
    return *Find<ChannelTile>(("visualdisplaytext_" + std::to_string(channel)).c_str());
  }
};

TEST(MainForm, EachPageShowsItsTextsNamesTheMediumAndLeavesRoomForItsFrame) {
  const Console board(Console::Medium::Board, {{0x5C, 0xE2}});
  EXPECT_TRUE(board.Form->windowTitle().contains("Simulated board"));
  EXPECT_EQ(board.Text("lblMedium"), "Simulated board · printer port 2Dh");
  const Console smbus(Console::Medium::Smbus);
  EXPECT_EQ(smbus.Text("lblMedium"), "Simulated board · SMBus 2Eh");
  EXPECT_LE(board.Form->height(), board.Form->screen()->availableSize().height() - 20);  // which is 800 here
  std::string words;
  for (const auto tab : {MainForm::Main, MainForm::ReadWrite, MainForm::Control, MainForm::VisualDisplay}) {
    board.Form->SelectTab(tab);
    const QWidget& page = *board.Find<QTabWidget>("Main_Form_Tab")->currentWidget();
    words += Words(page).substr(0, tab == MainForm::VisualDisplay ? 999 : 39) + "\n";
    EXPECT_TRUE(board.Wait([&] { return Flaws(page).empty(); })) << Flaws(page);
  }
  EXPECT_EQ(
      words,
      "Simulated board · printer port 2Dh|Abo\nChanged|90 of 90|Current Addr:|3E|Curre\n"
      "Fan Configuration|old|(Configure Temps.\nTEMPERATURES|Local|Remote 1|Remote 2|FANS|Fan 1|Fan 2|Fan 3|Fan 4|"
      "VOLTAGES|5V|12V|Vccp|Vcc|2.5V|Live|Pause|Fit|Traces|Export|LOCAL|–|not read yet|min – · max –|mean –|"
      "Reset|High limit|Low limit|Fan1 PWM|manual|–|Easy Setup|Setup Log...|Fan Test Setup|glitch test|"
      "(Expand Graph)|Tmin / operating point|Local|–|/|–|Remote 1|–|/|–|Remote 2|–|/|–\n");
  const QImage picture = board.Find<QWidget>("picBoard")->grab().toImage();
  EXPECT_NE(picture.pixel(picture.rect().center()), picture.pixel(0, 0));
}

/// Triggers the menu entry `text`, ignoring "&".
void Choose(const MainForm& form, const char* text) {
  for (QAction* action : form.findChildren<QAction*>())
    if (action->text().remove('&') == text) return action->trigger();
  FAIL() << text;
}

TEST(MainForm, EachKeyAndEntryOfTheMenusDoesWhatItsTextSays) {
  Console console;
  const std::tuple<const char*, int, const char*> rows[] = {
      // key, visible tab after it, pattern of the traffic: ticks may come in between
      {"Ctrl+1", 0, ""},
      {"Ctrl+2", 1, "R3E"},
      {"Ctrl+4", 3, "R78 S96:8E R78 S90:52 R7D S96:8E V94 ST ST"},
      {"F5", 3, "R7B R40 R5C R5D R5E"},
      {"Ctrl+3", 2, "R78 S96:8E R78 S90:52 R7D S96:8E.*"},
      {"Ctrl+1", 0, ""},
      {"Ctrl+E", 2, "R78 S96:8E R78 S90:52 R7D S96:8E .*R40 W40:01 W50:0A .*R78 S96:8E R78 S90:52 R7D S96:8E R50 R51"},
      {"Ctrl+J", 2, ""},
  };
  console.Form->activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(console.Form.get()));
  for (const auto& [keys, tab, pattern] : rows) {
    console.Chip.BusTraffic();
    QTest::keySequence(console.Form.get(), QKeySequence(keys));
    const std::string traffic = console.Chip.BusTraffic();
    EXPECT_TRUE(std::regex_match(traffic, std::regex(pattern))) << keys << traffic;
    EXPECT_EQ(console.Find<QTabWidget>("Main_Form_Tab")->currentIndex(), tab) << keys;
  }
  EXPECT_TRUE(console.Find<QWidget>("dockBusJournal")->isVisible());
  std::vector<Theme> chosen;
  QObject::connect(console.Form.get(), &MainForm::ThemeChosen, [&](Theme theme) { chosen.push_back(theme); });
  Choose(*console.Form, "Reset Minima and Maxima");
  EXPECT_EQ(console.Text("lblNotice"), "|  Minimum, maximum and mean of all channels reset");
  for (const char* theme : {"Dark", "Light", "Theme of the System"}) Choose(*console.Form, theme);
  EXPECT_EQ(chosen, (std::vector{Theme::Dark, Theme::Light, Theme::System}));
  console.Form->SetTheme(Theme::Dark);
  EXPECT_EQ(console.Form->findChild<QActionGroup*>()->checkedAction()->text(), "&Dark");

  for (const bool menu : {true, false}) {
    std::string said;
    QTimer::singleShot(0, [&] {
      auto* const about = QApplication::activeModalWidget();
      said = Words(*about).substr(0, 71) + Flaws(*about);
      about->findChild<QAbstractButton*>("cmdSysInfo")->click();
      auto* const system = about->findChild<QDialog*>("frmSysInfo");
      said += system->isVisible() ? system->findChild<QPlainTextEdit*>()->toPlainText().left(11).toStdString() : "";
      about->findChild<QAbstractButton*>("cmdOK")->click();
    });
    console.Form->SelectTab(MainForm::Main);
    menu ? Choose(*console.Form, "About") : console.Click("Command3");
    EXPECT_EQ(said, "<b style='font-size:x-large'>KRX5580 console</b>|Version " KRX_VERSION "|Evaluatikrx5580-con");
  }
  console.Click("cmdViewEasy");
  const QPointer<QDialog> log = console.Find<QDialog>("frmSetupLog");
  EXPECT_EQ(Words(*log), "Close");
  auto* const content = log->findChild<QPlainTextEdit*>();
  EXPECT_TRUE(content->isReadOnly() && content->toPlainText().startsWith("Easy Setup does the following"));
  EXPECT_TRUE(content->isVisible() && content->horizontalScrollBar()->maximum() == 0) << "no line is cut";
  content->setFocus();
  QTest::keyClick(content, Qt::Key_Tab);
  EXPECT_EQ(log->focusWidget(), log->findChild<QPushButton*>());
  log->findChild<QPushButton*>()->click();
  EXPECT_TRUE(console.Wait([&] { return log.isNull(); }));
  Choose(*console.Form, "Exit");
  EXPECT_FALSE(console.Form->isVisible());
}

TEST(MainForm, TilesShowWhatWasMeasured) {
  Console console;
  console.Poke({{0x77, 0}, {0x26, 0xFB}, {0x28, 0xCA}, {0x29, 0x08}, {0x23, 0xC0}, {0x41, 0x20}, {0x42, 0}});
  const struct {
    int Channel;
    const char *Value, *Unit, *Range;
  } rows[] = {{7, "4.992", "V", "min 4.992 · max 4.992"},
              {3, "4800", "RPM", "min 4800 · max 4800"},
              {0, "-5.00", "C", "min -5.00 · max -5.00"}};
  for (const auto& row : rows) {
    ChannelTile& tile = console.Tile(row.Channel);
    tile.click();
    EXPECT_TRUE(console.Wait([&] { return tile.Value() == row.Value; })) << tile.Value().toStdString();
    EXPECT_EQ(tile.Unit(), row.Unit);
    EXPECT_EQ(console.Text("lblRange"), row.Range);
    for (const char* strip : {"Strip2", "Strip3"})
      EXPECT_EQ(console.Find<StripChart>(strip)->isVisible(), (row.Channel == 7) == (strip[5] == '3'));
    EXPECT_EQ(console.Find<QLabel>("lblSummary")->foregroundRole() == QPalette::BrightText, row.Channel == 0);
    const auto* axis = console.Find<StripChart>(row.Channel == 7 ? "Strip3" : "Strip2")->Plot()->yAxis;
    EXPECT_TRUE(console.Wait([&] { return axis->range().upper == (row.Channel == 7 ? 14 : 120); }));
  }
  EXPECT_EQ(console.Find<Indicator>("SSPanel11_0")->State(), IndicatorState::Bad);
  EXPECT_EQ(console.Find<Indicator>("SSPanel11_1")->State(), IndicatorState::Ok);
  EXPECT_EQ(console.Tile(0).accessibleDescription(), "-5.00 C, out of limits");
  EXPECT_EQ(console.Tile(1).Alarm(), "");
  EXPECT_EQ(console.Text("lblTmin_0") + console.Text("lblOpPoint_2"), "90 °C100 °C");
  EXPECT_TRUE(console.Shows("lblAlarms", "◆ 1 alarm"));
  EXPECT_EQ(console.Text("lblMean"), "mean -5.00");
  console.Poke({{0x50, 0x0A}});
  console.Click("visualdisplaytext_0");
  EXPECT_EQ(console.Text("lblSummary"), "below low limit 10 °C");
  EXPECT_EQ(console.Find<QLabel>("lblReadout")->foregroundRole(), QPalette::BrightText);
  console.Click("cmdResetRange");
  EXPECT_EQ(console.Text("lblRange"), "min – · max –");
  EXPECT_TRUE(console.Shows("lblCycle", "12 reads/tick")) << console.Text("lblCycle");
}

TEST(MainForm, ACurrentIsKnownWithVccpAndHasItsOwnRange) {
  Console console;
  console.Poke({{0x20, 0x60}});
  console.Click("visualdisplaytext_11");
  EXPECT_TRUE(console.Shows("lblRange", "min 1.229 · max 1.229"));
  console.Poke({{0x40, 0x11}, {0x23, 0xC0}});
  console.Find<QAction>("actReReadChip")->trigger();
  EXPECT_EQ(console.Text("lblRange"), "min – · max –");
  EXPECT_EQ(console.Tile(11).Unit(), "A");
  const auto* low = console.Find<LimitBox>("txtLowLimit");
  EXPECT_EQ(console.Tile(11).Value() + console.Tile(11).Unit() + console.Text("lblReadout").c_str(), "–A–");
  EXPECT_FALSE(low->isEnabled()) << "its byte would depend on Vccp";
  console.Poke({{0x20, 0xFF}, {0x21, 0x20}});
  EXPECT_TRUE(console.Wait([&] { return low->isEnabled(); }));
  EXPECT_EQ(low->text(), "-425.01 A");
  console.Chip.Advance(1.1);
  console.Poke({{0x20, 0xFF}, {0x21, 0x20}, {0x23, 0xC0}, {0x76, 0}});
  EXPECT_TRUE(console.Wait([&] { return console.Tile(11).Value() == "662.99" && console.Tile(7).Value() == "4.992"; }));
  console.Find<QAction>("actResetRanges")->trigger();
  EXPECT_TRUE(console.Shows("lblRange", "min 662.99 · max 662.99")) << console.Text("lblRange");
  for (const auto& [mode, maximum] : {std::pair(0x01, 4), {0x11, 180}}) {  // volts, and a current again
    console.Poke({{0x40, mode}});
    console.Find<QAction>("actReReadChip")->trigger();
    EXPECT_EQ(console.Text("lblNotice"), "|  Chip re-read");
    EXPECT_EQ(console.Find<LimitGauge>("limits_gauge")->Markers().Scale().Maximum, maximum);
    console.Click("visualdisplaytext_11");
  }
  console.Click("visualdisplaytext_7");
  EXPECT_TRUE(console.Shows("lblMean", "mean 4.992"));
  console.Find<QAction>("actResetRanges")->trigger();
  EXPECT_EQ(console.Text("lblMean"), "mean –");
}

TEST(MainForm, InAReadOnlyRunWritingControlsAreDisabled) {
  Console console(Console::Medium::Board, {{0x5C, 0xE2}}, true);
  console.Click("visualdisplaytext_0");
  console.Click("cmdJournalMark");
  console.Poke({{0x78, 0x02}});
  console.Form->SelectTab(MainForm::Control);
  for (const char* name : {"Command1",     "cmdFanTest",   "cmdGlitchTest", "analog_output_slider",
                           "limits_gauge", "txtHighLimit", "txtLowLimit",   "chkPROCHOT",
                           "opt5V",        "optTach4",     "chkAlert",      "chkPWM2Alert",
                           "chk25vAlert",  "opt25V",       "optPWM2",       "chkSensor1",
                           "chkHeater2",   "chkVID_3",     "cmdUndoLast",   "cmdUndoMark"})
    EXPECT_FALSE(console.Find<QWidget>(name)->isEnabled()) << name;
  for (const char* name : {"visualdisplaytext_1", "cmdViewEasy", "cmdResetRange", "cmdSwitchAccess", "txtProcTime"})
    EXPECT_TRUE(console.Find<QWidget>(name)->isEnabled()) << name;
  EXPECT_FALSE(console.Find<QAction>("actEasySetup")->isEnabled());
}

TEST(MainForm, ValuesAreOutOfDateWhileMonitoringIsOff) {
  Console console(Console::Medium::Board, {{0x40, 0x00}});
  EXPECT_TRUE(console.Shows("lblCycle", "Not monitoring"));
  EXPECT_EQ(console.Tile(0).Value().toStdString() + console.Text("lblReadout") + console.Text("lblTmin_0"), "–––");
  console.Poke({{0x26, 0x20}});
  console.Click("visualdisplaytext_0");  // the cycle runs now, but nothing is measured
  EXPECT_TRUE(console.Wait([&] { return console.Tile(0).Value() == "32.00"; }));
  EXPECT_TRUE(console.Tile(0).IsOld());
  EXPECT_EQ(console.Text("lblSummary"), "not monitoring");
  EXPECT_EQ(console.Text("lblAlarms"), "No alarms (out of date)");
  EXPECT_EQ(console.Tile(9).Value(), "–");
  EXPECT_TRUE(console.Find<Indicator>("SSPanel11_9")->IsStale()) << "nor is a channel without a value within limits";
  const auto* hint = console.Find<QLabel>("lblNotMonitoring");
  EXPECT_TRUE(hint->isVisible() && hint->text().endsWith("press Easy Setup to start"));
  EXPECT_FALSE(
      console.Wait([&] { return console.Text("lblCycle").find("Not monitoring") == std::string::npos; }, 1200));
  console.Click("Command1");  // Easy Setup
  EXPECT_FALSE(hint->isVisible());
  EXPECT_TRUE(console.Wait([&] { return !console.Tile(0).IsOld(); }));
  console.Form->SelectTab(MainForm::ReadWrite);  // stops the cycle
  EXPECT_EQ(console.Text("lblCycle"), "|  Not reading, values are out of date");
  EXPECT_TRUE(console.Text("lblAlarms").ends_with("(out of date)"));
  EXPECT_TRUE(console.Wait([&] { return console.Tile(0).IsOld(); }));
  EXPECT_TRUE(console.Find<Indicator>("SSPanel11_0")->IsStale());
  EXPECT_EQ(console.Text("lblSummary"), "value out of date");
  for (const char* name : {"lblReadout", "lblPWM", "lblTmin_0", "lblOpPoint_2"})
    EXPECT_EQ(console.Find<QLabel>(name)->foregroundRole(), QPalette::PlaceholderText) << name;
}

TEST(ChannelTile, IsRepaintedWithItsTrace) {
  ChannelTile tile(new Indicator);
  tile.show();
  EXPECT_TRUE(Repaints(tile, [&] { tile.SetTrace(3); }));
  EXPECT_FALSE(Repaints(tile, [&] { tile.SetTrace(3); }));
}

TEST(StatusLine, ShowsTheStateOfCycleAlarmsAndLink) {
  StatusLine line;
  const auto text = [&](const char* label) { return line.findChild<QLabel*>(label)->text().toStdString(); };
  const std::pair<CycleRates, const char*> cycles[] = {
      {{.Running = true, .PauseSeconds = 0.4},  // the last good tick was a moment ago
       "|  Bus failing, retrying every 0.4 s, values are out of date"},
      {{.Running = true, .ReadsPerTick = 12.4, .TicksPerSecond = 2.26}, "|  Monitoring, 12 reads/tick, 2.3 ticks/s"}};
  for (const auto& [report, words] : cycles) {
    line.ShowCycle(report);
    EXPECT_EQ(text("lblCycle"), words);
  }
  const std::tuple<AlarmReport, bool, const char*> alarms[] = {
      {{}, true, ""},
      {{0, "", false}, false, "No alarms"},
      {{1, "Fan 1: low", false}, false, "◆ 1 alarm"},
      {{2, "Fan 1: low\nFan 2: low", false}, true, "◆ 2 alarms (out of date)"}};
  for (const auto& [report, old, words] : alarms) {
    line.ShowAlarms(report, old);
    EXPECT_EQ(text("lblAlarms"), words);
    EXPECT_EQ(line.findChild<QLabel*>("lblAlarms")->toolTip().toStdString(), report.Details);
    EXPECT_EQ(line.findChild<QLabel*>("lblAlarms")->foregroundRole() == QPalette::BrightText, report.Count > 0);
  }
  EXPECT_EQ(text("lblFaults"), "No link faults");
  line.CountFault("start-up", CommsError(57, std::string(99, 'n')));
  EXPECT_TRUE(line.findChild<QLabel*>("lblFaults")->toolTip().startsWith("In start-up: Error: 57, nn"));
  line.ShowNotice("Saved");
  EXPECT_EQ(text("lblNotice"), "|  Saved");
  auto* const end = line.findChild<QTimer*>();
  EXPECT_GT(end->remainingTime(), 9000) << "long enough to be read";
  end->start(0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return text("lblNotice").empty(); }));
}

TEST(MainForm, SelectingAFanReadsItsLimitAndParksTheHighMarker) {
  Console console;
  console.Poke({{0x56, 0x94}, {0x57, 0x11}});  // 4500 counts, two pulses programmed
  EXPECT_EQ(console.Tile(0).Mark(), CaptionMark::FirstShown);
  EXPECT_FALSE(console.Find<LimitBox>("txtLowLimit")->isEnabled());
  console.Click("visualdisplaytext_4");
  auto* gauge = console.Find<LimitGauge>("limits_gauge");
  EXPECT_EQ(gauge->Markers().Low(), 2400);
  EXPECT_EQ(gauge->Markers().High(), 20000);
  EXPECT_FALSE(console.Find<LimitBox>("txtHighLimit")->isEnabled());
  EXPECT_EQ(console.Text("lblPanelCaption"), "Fan2 PWM");
  EXPECT_EQ(console.Tile(4).Mark(), CaptionMark::Selected);
  EXPECT_EQ(console.Tile(0).Mark(), CaptionMark::Plain);
  WriteByte(console.Chip.Bus, 0x7B, 0x59);  // as by Read/Write
  console.Click("visualdisplaytext_4");
  EXPECT_EQ(console.Text("lblSummary"), "pulses (7Bh) changed: F5 reads them");
  console.Click("visualdisplaytext_3");  // no limit
  QFocusEvent in(QEvent::FocusIn);
  QApplication::sendEvent(gauge, &in);
  console.Chip.Traffic();
  QTest::keyClick(gauge, Qt::Key_Up);
  EXPECT_EQ(console.Chip.Traffic(), "W54:AF W55:FF") << "100 RPM has no count at two pulses";
}

/// Types into a limit's box, replacing its text.
void Type(LimitBox& box, const char* text) {
  box.selectAll();
  QTest::keyClick(&box, Qt::Key_Delete);
  QTest::keyClicks(&box, QString::fromUtf8(text));
  QTest::keyClick(&box, Qt::Key_Return);
}

TEST(MainForm, EachControlOfTheVisualDisplayMakesItsTransfers) {
  std::vector<std::pair<std::string, const char*>> rows{
      {"Command1",
       "R40 W40:01 W50:0A W4E:0A W52:0A W51:50 W4F:50 W53:50 W68:28 W67:28 W69:28 W34:3C W33:3C W35:3C "
       "R78 S96:8E R78 S90:52 R7D S96:8E R50 R51"},
      {"cmdFanTest", "R5C W5C:E2 R5D W5D:E2 R78 W78:30"},
      {"cmdViewEasy", ""},
      {"cmdResetRange", ""},
      {"cmdUseSlider", "R7B R40 R5C R5D R5E"},
  };
  for (const char* limits : {"R50 R51", "R4E R4F", "R52 R53", "R54 R55 R30", "R56 R57 R31", "R58 R59 R32",
                             "R5A R5B R32", "R4A R4B", "R4C R4D", "R46 R47", "R48 R49", "R44 R45"})
    rows.emplace_back("visualdisplaytext_" + std::to_string(rows.size() - 5), limits);
  for (const auto& [name, traffic] : rows) {
    Console console;
    console.Click(name.c_str());
    EXPECT_EQ(console.Chip.BusTraffic(), traffic) << name;
  }
}

TEST(MainForm, ThePanelFollowsTheConfigurationOnTheBusAndOffersTheSlider) {
  Console console(Console::Medium::Board, {{0x40, 0x00}});
  const auto* difference = console.Find<QLabel>("lblPwmDifference");
  EXPECT_FALSE(difference->isVisible());
  console.Click("cmdFanTest");
  EXPECT_TRUE(console.Wait([&] { return difference->isVisible(); }));
  EXPECT_EQ(difference->text(), "PWM1 is now set to Manual Control");
  EXPECT_FALSE(console.Find<QWidget>("pnlSlider")->isVisible()) << "as it was when the chip was found";
  console.Click("cmdUseSlider");
  EXPECT_TRUE(console.Find<QWidget>("pnlSlider")->isVisible());
  EXPECT_EQ(console.Text("lblSliderCaption") + " " + console.Text("lblSliderBehaviour"), "Fan1 PWM manual");
  EXPECT_FALSE(difference->isVisible());
}

TEST(MainForm, ATypedLimitIsWrittenARejectedOneKeepsItsTextAndTheWheelWritesNothing) {
  Console console;
  console.Click("visualdisplaytext_1");
  auto& high = *console.Find<LimitBox>("txtHighLimit");
  auto& low = *console.Find<LimitBox>("txtLowLimit");
  auto& range = *console.Find<QLabel>("lblHighLimitRange");
  console.Chip.Traffic();
  QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&high, &wheel);
  for (const char* text : {"150", ""}) {
    Type(high, text);
    EXPECT_EQ(console.Chip.Traffic(), "") << text;
    EXPECT_EQ(high.text(), text);
    EXPECT_FALSE(range.isHidden());
    EXPECT_EQ(range.text(), "⚠ -127 to 127 °C, whole degrees");
    EXPECT_EQ(console.Text("lblNotice"),
              "|  Not written: the high limit of Remote 1 must be -127 to 127 °C, whole degrees");
  }
  console.Form->SelectTab(MainForm::VisualDisplay);  // refreshes the page
  EXPECT_FALSE(range.isHidden());
  QTest::keyClick(&high, Qt::Key_Up);
  EXPECT_EQ(high.text(), "") << "a rejected text is not stepped";
  QTest::keyClick(&high, Qt::Key_Escape);
  EXPECT_EQ(high.text(), "127 °C");
  EXPECT_TRUE(range.isHidden());
  for (const char* text : {"150", "127 °C"}) Type(high, text);
  EXPECT_TRUE(range.isHidden()) << "the old value again";
  Type(high, "150");
  console.Click("visualdisplaytext_0");
  EXPECT_EQ(high.text(), "127 °C") << "of another channel";
  EXPECT_TRUE(range.isHidden());
  console.Click("visualdisplaytext_1");
  console.Chip.Traffic();
  Type(high, "-20");
  EXPECT_EQ(console.Chip.Traffic(), "W4E:81 W4F:EC");
  EXPECT_EQ(high.text(), "-20 °C");
  QTest::keyClick(&low, Qt::Key_Up);
  EXPECT_EQ(console.Chip.Traffic(), "W4E:82 W4F:EC") << "below the gauge's scale";
  EXPECT_EQ(low.text(), "-126 °C");
  EXPECT_EQ(console.Find<LimitGauge>("limits_gauge")->Markers().Low(), -126);
  Type(high, "150");
  QTest::keyClick(&low, Qt::Key_Down);
  EXPECT_EQ(range.text(), "⚠ -127 to 127 °C, whole degrees") << "the present range";
  EXPECT_TRUE(console.Dialogs.Shown.empty());
  for (LimitBox* box : {&high, &low}) Type(*box, "999");
  QTest::qWait(20);
  EXPECT_TRUE(low.visibleRegion().boundingRect().height() > 10 && high.visibleRegion().boundingRect().height() > 10);
}

TEST(MainForm, ATypedLimitThatFailsIsTriedOnceAndThenUnknown) {
  Console console;
  console.Click("visualdisplaytext_1");
  auto& box = *console.Find<LimitBox>("txtHighLimit");
  console.Dialogs.WhileOpen = [&box] {
    QFocusEvent out(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(&box, &out);
  };
  console.Chip.Sim.AddFault(*ParseFault("fail=1,reg=4F,op=write"));
  console.Chip.Traffic();
  Type(box, "70");
  EXPECT_EQ(console.Chip.Traffic(), "W4E:81 W4F:46!") << "and not again when the box takes the focus";
  EXPECT_EQ(console.Dialogs.Shown.size(), 1U);
  EXPECT_EQ(box.text(), "");
  EXPECT_EQ(console.Find<LimitGauge>("limits_gauge")->accessibleDescription(), "High unknown, Low -127");
}

TEST(MainForm, AHeldArrowKeepsStepping) {
  for (const auto medium : {Console::Medium::Board, Console::Medium::Smbus}) {
    Console console(medium, {{0x51, 0x50}});
    console.Click("visualdisplaytext_0");
    auto& box = *console.Find<LimitBox>("txtHighLimit");
    const QPoint up(box.width() - 8, box.height() / 4);
    QTest::mousePress(&box, Qt::LeftButton, {}, up);
    EXPECT_TRUE(console.Wait([&] { return console.Chip.Peek(0x51) >= 0x54; })) << int(console.Chip.Peek(0x51));
    QTest::mouseRelease(&box, Qt::LeftButton, {}, up);
  }
}

TEST(MainForm, TheSliderWritesWhileItMovesOnTheBoardAndOnceOnTheSmbusAndAFailedWriteEndsItsDrag) {
  for (const auto medium : {Console::Medium::Board, Console::Medium::Smbus}) {
    const bool board = medium == Console::Medium::Board;
    Console console(medium, {{0x5E, 0xE2}});
    console.Click("visualdisplaytext_6");
    auto* slider = console.Find<DutySlider>("analog_output_slider");
    EXPECT_EQ(slider->accessibleName(), "Fan3 PWM duty");
    slider->setSliderDown(true);
    console.Chip.Traffic();
    slider->setSliderPosition(128);
    EXPECT_EQ(console.Text("lblDutyCycle1"), "50%");
    slider->setSliderPosition(0);
    EXPECT_EQ(console.Chip.Traffic(), board ? "W32:80 W32:00" : "");
    EXPECT_EQ(console.Bench.Measured.DutyTexts[2], board ? "0%" : "");
    EXPECT_FALSE(console.Form->VisualTimerRunning());
    slider->setSliderDown(false);
    EXPECT_EQ(console.Chip.Traffic(), board ? "" : "W32:00");
    EXPECT_EQ(console.Bench.Measured.DutyTexts[2], "0%");
    EXPECT_TRUE(console.Form->VisualTimerRunning());
    slider->setSliderDown(true);
    console.Chip.FailTransfer(1);
    slider->setSliderPosition(128);
    if (!board) slider->setSliderDown(false);
    EXPECT_EQ(console.Dialogs.Shown.size(), 1U);
    EXPECT_FALSE(slider->isSliderDown());
    EXPECT_TRUE(console.Form->VisualTimerRunning());
  }
}

TEST(MainForm, AFailingTickIsCountedInTheStatusBarAndAFailingClickShowsOneBoxToo) {
  Console console;
  console.Chip.FailTransfer(3);
  EXPECT_TRUE(console.Shows("lblFaults", "Link faults: 1, last: Error: 57, Device I/O error"));
  EXPECT_TRUE(console.Dialogs.Shown.empty());
  console.Poke({{0x26, 0x21}});
  EXPECT_TRUE(console.Wait([&] { return console.Tile(0).Value().startsWith("33."); }));
  console.Chip.FailTransfer(1);
  console.Click("visualdisplaytext_2");
  console.Click("visualdisplaytext_2");
  EXPECT_EQ(console.Dialogs.Shown, std::vector<std::string>{"critical|Error: 57, Device I/O error|"});
  EXPECT_EQ(console.Text("lblFaults"), "Link faults: 2, last: Error: 57, Device I/O error");
  console.Poke({{0x25, 0x20}});
  EXPECT_TRUE(console.Wait([&] { return console.Tile(1).Value() == "32.00"; }));
  console.Chip.Sim.AddFault(*ParseFault("fail=1+,reg=25"));
  EXPECT_TRUE(console.Wait([&] { return console.Tile(1).IsOld(); })) << "only its readings fail";
  EXPECT_FALSE(console.Tile(0).IsOld());
  console.Click("visualdisplaytext_9");
  console.Chip.FailTransfer(1, true);
  EXPECT_TRUE(console.Shows("lblCycle", "Bus failing, retrying every "));
  EXPECT_TRUE(console.Shows("lblSummary", "not read yet")) << "not out of date";
}

TEST(MainForm, AsksBeforeADetectionWithoutMonitoringAndRetriesToRestoreItsOutput) {
  Console console(Console::Medium::Board, {{0x40, 0x00}});
  console.Click("cmdConfigureFans");
  console.Chip.BusTraffic();
  console.Chip.Sim.AddFault(*ParseFault("fail=2+,op=write,reg=5D"));
  console.Dialogs.WhileOpen = [&] {
    console.Dialogs.Yes = console.Dialogs.Shown.size() < 3;
    if (console.Dialogs.Shown.size() == 2) console.Chip.Sim.ClearFaults();
  };
  console.Click("cmdAutoDetect_1");
  EXPECT_EQ(console.Chip.BusTraffic(), "R6B R26 R6A R25 R6C R27 R5D W5D:E2 R2A R2B W5D:62! W5D:62! W5D:62! W5D:62");
  EXPECT_EQ(console.Dialogs.Shown[0], "ask|Temperatures are not measured: monitoring is off|Continue");
  EXPECT_EQ(console.Dialogs.Shown.size(), 2U);
  EXPECT_TRUE(console.Dialogs.Shown.back().ends_with("; 5Dh should hold 62h.|Try again"));
  EXPECT_EQ(console.Text("lblFaults"), "Link faults: 1, last: Error: 57, Device I/O error");
}

TEST(MainForm, AThemeSwitchedWhileRunningColoursEveryText) {
  ApplyTheme(*qApp, Theme::Light);
  {
    Console console;
    console.Form->SelectTab(MainForm::Control);
    console.Click("cmdSwitchAccess");
    ASSERT_TRUE(console.Find<QLabel>("lmpSwitchU5A")->isVisible());
    ApplyTheme(*qApp, Theme::Dark);
    const Palette& light = Palette::Light();
    for (const QWidget* widget : QApplication::allWidgets()) {
      const QColor text = widget->palette().color(widget->foregroundRole());
      for (const QColor& old : {light.text, light.mutedText, light.accent, light.ok, light.bad})
        EXPECT_NE(text, old) << widget->metaObject()->className() << " " << widget->objectName().toStdString();
    }
  }
  ApplyTheme(*qApp, Theme::Light);
}

TEST(MainForm, ClosingAsksAboutUnfinishedWorkASignalOnlyReportsItAndTheTrafficEnds) {
  Console console(Console::Medium::Smbus);
  EXPECT_TRUE(console.Wait([&] { return !console.Chip.Traffic().empty(); }));
  console.Click("cmdViewEasy");
  QTemporaryDir folder;
  const QString name = folder.filePath("run.csv");
  SaveWhole(name, "old");
  console.Click("cmdGlitchTest");
  console.Bench.History.Append(1, std::vector<float>(traceCount));
  console.Form->findChild<SavingBar*>()->Save({console.Bench.History, {0, 2}, {{0, "A"}}, {}}, name);
  EXPECT_FALSE(console.Form->close());
  const std::string left =
      "Glitch test stopped: PWM2 and PWM3 in manual control at 0 %\nNot saved: " + name.toStdString();
  EXPECT_EQ(console.Dialogs.Shown.back(), "ask|If you exit now:\n\n" + left + "|Exit");
  console.Chip.Bus.EndAsked = [] { return true; };
  testing::internal::CaptureStderr();
  EXPECT_TRUE(console.Form->close());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), left + "\n");
  EXPECT_FALSE(console.Find<QWidget>("barGlitchTest")->isVisible() ||
               console.Find<QDialog>("frmSetupLog")->isVisible());
  console.Chip.Traffic();
  EXPECT_FALSE(console.Wait([&] { return !console.Chip.Traffic().empty(); }, 60));
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList("run.csv"));
  EXPECT_EQ(Content(name), "old");
}

}  // namespace
}  // namespace krx
