// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/mainform.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QDialog>
#include <QFocusEvent>
#include <QPushButton>
#include <QScreen>
#include <QStyleOptionSpinBox>
#include <QTabWidget>
#include <QTest>
#include <QWheelEvent>
#include <functional>

#include "console/ui/channeltile.h"
#include "console/ui/formbench.h"
#include "console/ui/limitbox.h"
#include "console/ui/statusline.h"
#include "controls/ui/dutyslider.h"
#include "controls/ui/indicator.h"
#include "controls/ui/limitgauge.h"
#include "controls/ui/palette.h"
#include "controls/ui/stripchart.h"
#include "simulator/simfaults.h"
#include "simulator/simwords.h"

namespace krx {
namespace {

struct Console : FormBench {
  using Medium = TestBench::Medium;
  using Bytes = std::vector<std::pair<int, int>>;
  /// What the chip holds when the console finds it; it monitors unless told otherwise.
  explicit Console(Medium medium = Medium::Board, const Bytes& bytes = {}, bool readOnly = false,
                   const char* fault = nullptr)
      : FormBench(medium) {
    if (fault != nullptr) Chip.Sim.AddFault(*ParseFault(fault));
    Poke({{0x40, 0x01}});
    Poke(bytes);
    Open(readOnly);
  }

  void Poke(const Bytes& bytes) {
    for (const auto& [reg, byte] : bytes) Chip.Poke(reg, byte);
  }
  ChannelTile& Tile(int channel) const {
    return *Find<ChannelTile>(("visualdisplaytext_" + std::to_string(channel)).c_str());
  }
};

TEST(MainForm, NamesTheMediumAndHasItsFixedCaptionsAndLeavesRoomForItsFrame) {
  const Console board;
  EXPECT_TRUE(board.Form->windowTitle().contains("Simulated board"));
  EXPECT_EQ(board.Text("lblMedium"), "Simulated board · printer port 2Dh");
  const Console smbus(Console::Medium::Smbus);
  EXPECT_EQ(smbus.Text("lblMedium"), "Simulated board · SMBus 2Eh");
  EXPECT_EQ(ConnectionText("SMBus I801 adapter at 0700, i2c-1", smbus.Chip.Bus),
            "SMBus I801 adapter at 0700, i2c-1 · 2Eh");
  QStringList captions;
  const auto* tabs = board.Find<QTabWidget>("Main_Form_Tab");
  for (int tab = 0; tab < tabs->count(); ++tab) captions << tabs->tabText(tab);
  for (const char* name : {"cmdBigGraph", "cmdGlitchTest", "Command1", "cmdViewEasy", "Command3"})
    captions << board.Find<QPushButton>(name)->text();
  EXPECT_EQ(captions.join('|').toStdString(),
            "Main|Read/Write|Visual Display|Control |Expand Graph|glitch test|Easy Setup|Setup Log...|About");
  EXPECT_LE(board.Form->height(), board.Form->screen()->availableSize().height() - 20);  // which is 800 here
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
    EXPECT_EQ(console.Find<QLabel>("lblSummary")->foregroundRole() == QPalette::BrightText, row.Channel == 0);
  }
  EXPECT_EQ(console.Find<Indicator>("SSPanel11_0")->State(), IndicatorState::Bad);
  EXPECT_EQ(console.Find<Indicator>("SSPanel11_1")->State(), IndicatorState::Ok);
  EXPECT_EQ(console.Tile(0).accessibleDescription(), "-5.00 C, out of limits");
  EXPECT_EQ(console.Tile(1).Alarm(), "");
  EXPECT_EQ(console.Text("lblTmin_0") + console.Text("lblOpPoint_2"), "90 °C100 °C");
  EXPECT_TRUE(console.Shows("lblAlarms", "◆ 1 alarm"));
  EXPECT_EQ(console.Find<QLabel>("lblAlarms")->foregroundRole(), QPalette::BrightText);
  EXPECT_EQ(console.Text("lblMean"), "mean -5.00");
  console.Poke({{0x50, 0x0A}});
  console.Click("visualdisplaytext_0");
  EXPECT_EQ(console.Text("lblSummary"), "below low limit 10 °C");
  EXPECT_EQ(console.Find<QLabel>("lblReadout")->foregroundRole(), QPalette::BrightText);
  console.Click("cmdResetRange");
  EXPECT_EQ(console.Text("lblRange"), "min – · max –");
  EXPECT_TRUE(console.Shows("lblCycle", "12 reads a tick")) << console.Text("lblCycle");
}

TEST(MainForm, ACurrentHasNoRangeInVolts) {
  Console console;
  console.Poke({{0x20, 0x60}});
  console.Click("visualdisplaytext_11");
  EXPECT_TRUE(console.Shows("lblRange", "min 1.229 · max 1.229"));
  console.Poke({{0x40, 0x11}, {0x23, 0xC0}});
  console.Find<QAction>("actReReadChip")->trigger();
  EXPECT_EQ(console.Text("lblRange"), "min – · max –");
  EXPECT_EQ(console.Tile(11).Unit(), "A");
  EXPECT_FALSE(console.Find<LimitBox>("txtLowLimit")->isEnabled()) << "its volts would be written as a current";
  console.Click("visualdisplaytext_7");
  EXPECT_TRUE(console.Shows("lblMean", "mean 4.992"));
  console.Find<QAction>("actResetRanges")->trigger();
  EXPECT_EQ(console.Text("lblMean"), "mean –");
}

TEST(MainForm, InAReadOnlyRunNothingThatWritesIsOffered) {
  Console console(Console::Medium::Board, {{0x5C, 0xE2}}, true);
  console.Click("visualdisplaytext_0");
  console.Poke({{0x78, 0x02}});
  console.Form->SelectTab(MainForm::Control);
  for (const char* name : {"Command1", "cmdFanTest", "cmdGlitchTest", "analog_output_slider", "limits_gauge",
                           "txtHighLimit", "txtLowLimit", "chkPROCHOT", "opt5V", "optTach4", "chkAlert", "chkPWM2Alert",
                           "chk25vAlert", "opt25V", "optPWM2", "chkSensor1", "chkHeater2", "chkVID_3"})
    EXPECT_FALSE(console.Find<QWidget>(name)->isEnabled()) << name;
  for (const char* name : {"visualdisplaytext_1", "cmdViewEasy", "cmdResetRange", "cmdSwitchAccess", "txtProcTime"})
    EXPECT_TRUE(console.Find<QWidget>(name)->isEnabled()) << name;
  EXPECT_FALSE(console.Find<QAction>("actEasySetup")->isEnabled());
}

TEST(MainForm, ValuesAreOldWhileNothingIsMonitored) {
  Console console(Console::Medium::Board, {{0x40, 0x00}});
  EXPECT_TRUE(console.Shows("lblCycle", "Not monitoring"));
  EXPECT_EQ(console.Tile(0).Value().toStdString() + console.Text("lblReadout") + console.Text("lblTmin_0"), "–––");
  console.Poke({{0x26, 0x20}});
  console.Click("visualdisplaytext_0");  // the cycle runs now, but nothing is measured
  EXPECT_TRUE(console.Wait([&] { return console.Tile(0).Value() == "32.00"; }));
  EXPECT_TRUE(console.Tile(0).IsOld());
  EXPECT_EQ(console.Text("lblSummary"), "not monitoring");
  EXPECT_EQ(console.Text("lblAlarms"), "No alarms (old)");
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
  EXPECT_TRUE(console.Wait([&] { return console.Tile(0).IsOld(); }));
  EXPECT_TRUE(console.Find<Indicator>("SSPanel11_0")->IsStale());
  EXPECT_EQ(console.Text("lblSummary"), "old value");
  for (const char* name : {"lblReadout", "lblPWM", "lblTmin_0", "lblOpPoint_2"})
    EXPECT_EQ(console.Find<QLabel>(name)->foregroundRole(), QPalette::PlaceholderText) << name;
}

TEST(StatusLine, ABusThatFailsIsNotCalledMonitored) {
  StatusLine line;
  line.ShowCycle({.Running = true, .PauseSeconds = 0.4});  // the last good tick was a moment ago
  EXPECT_EQ(line.findChild<QLabel*>("lblCycle")->text(),
            "|  The bus fails, next try every 0.4 s, values are out of date");
  const int width = line.minimumSizeHint().width();
  line.ShowConnection(QString(99, QLatin1Char('n')));
  line.CountFault("start-up", CommsError(57, std::string(99, 'n')));
  EXPECT_LE(line.minimumSizeHint().width(), width) << "no text widens the window";
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
  console.Click("visualdisplaytext_3");  // no limit
  console.Form->activateWindow();
  gauge->setFocus();
  EXPECT_TRUE(console.Wait([&] { return gauge->hasFocus(); }));
  console.Chip.Traffic();
  QTest::keyClick(gauge, Qt::Key_Up);
  EXPECT_EQ(console.Chip.Traffic(), "W54:AF W55:FF") << "100 RPM has no count at two pulses";
}

/// Types into a limit's box over what stands there.
void Type(LimitBox& box, const char* text) {
  box.selectAll();
  QTest::keyClick(&box, Qt::Key_Delete);
  QTest::keyClicks(&box, QString::fromUtf8(text));
  QTest::keyClick(&box, Qt::Key_Return);
}

TEST(MainForm, EachControlOfTheVisualDisplayReachesTheBusAsItsNameSays) {
  std::vector<std::pair<std::string, const char*>> rows{
      {"Command1",
       "R40 W40:01 W50:0A W4E:0A W52:0A W51:50 W4F:50 W53:50 W68:28 W67:28 W69:28 W34:3C W33:3C W35:3C "
       "R78 S96:8E R78 S90:52 R7D S96:8E R50 R51"},
      {"cmdFanTest", "R5C W5C:E2 R5D W5D:E2 R78 W78:30"},
      {"cmdGlitchTest", "R5E W5E:E2 R5D W5D:E2 W32:00 W31:00"},
      {"cmdViewEasy", ""},
      {"cmdResetRange", ""},
      {"cmdUseSlider", "R7B R40 R5C R5D R5E"},
  };
  for (const char* limits : {"R50 R51", "R4E R4F", "R52 R53", "R54 R55 R30", "R56 R57 R31", "R58 R59 R32",
                             "R5A R5B R32", "R4A R4B", "R4C R4D", "R46 R47", "R48 R49", "R44 R45"})
    rows.emplace_back("visualdisplaytext_" + std::to_string(rows.size() - 6), limits);
  for (const auto& [name, traffic] : rows) {
    Console console;
    console.Click(name.c_str());
    EXPECT_EQ(console.Chip.BusTraffic(), traffic) << name;
    EXPECT_EQ(console.Form->findChild<QDialog*>("frmSetupLog") != nullptr, name == "cmdViewEasy");
    EXPECT_EQ(console.Find<QWidget>("barGlitchTest")->isVisible(), name == "cmdGlitchTest");
  }
}

TEST(MainForm, ThePanelFollowsTheConfigurationOnTheBusAndOffersTheSlider) {
  for (const int configuration : {0x01, 0x00}) {  // with and without a cycle
    Console console(Console::Medium::Board, {{0x40, configuration}});
    const auto* difference = console.Find<QLabel>("lblPwmDifference");
    EXPECT_FALSE(difference->isVisible());
    console.Click("cmdFanTest");
    EXPECT_TRUE(console.Wait([&] { return difference->isVisible(); }));
    EXPECT_EQ(difference->text(), "PWM1 is set to Manual Control now");
    EXPECT_EQ(console.Find<QPushButton>("cmdUseSlider")->text(), "Use slider");
    EXPECT_EQ(console.Text("lblPanelBehaviour"), "manual");
    EXPECT_FALSE(console.Find<QWidget>("pnlSlider")->isVisible()) << "as it was when the chip was found";
    console.Click("cmdUseSlider");
    EXPECT_TRUE(console.Find<QWidget>("pnlSlider")->isVisible());
    EXPECT_FALSE(console.Find<QWidget>("pnlPWM")->isVisible());
    EXPECT_EQ(console.Text("lblSliderCaption") + " " + console.Text("lblSliderBehaviour"), "Fan1 PWM manual");
    EXPECT_FALSE(difference->isVisible());
  }
}

TEST(MainForm, ThePagesFollowThePinFunctionsThatTheCycleFinds) {
  Console console;
  console.Form->SelectTab(MainForm::Control);
  console.Poke({{0x78, 0x02}, {0x42, 0x20}});  // THERM on the Tach4 pin
  console.Chip.Advance(1.1);
  EXPECT_TRUE(console.Wait([&] { return console.Find<QAbstractButton>("chkPROCHOT")->isChecked(); }));
  EXPECT_TRUE(console.Find<QAbstractButton>("optTach4")->isChecked());
  console.Form->SelectTab(MainForm::VisualDisplay);
  console.Chip.Advance(1.1);
  console.Poke({{0x79, 10}});
  EXPECT_TRUE(console.Wait([&] { return console.Find<StripChart>("Strip2")->Caption() == "THERM=22.8%"; }));
  EXPECT_TRUE(console.Shows("lblAlarms", "No alarms"));
  EXPECT_FALSE(console.Tile(6).isVisible());
  EXPECT_EQ(console.Find<Indicator>("SSPanel11_6")->State(), IndicatorState::Hidden);
  EXPECT_TRUE(console.Tile(7).isVisible());
}

TEST(MainForm, ATypedLimitIsWrittenARefusedOneKeepsItsTextAndTheWheelWritesNothing) {
  Console console;
  console.Click("visualdisplaytext_1");
  auto& high = *console.Find<LimitBox>("txtHighLimit");
  auto& low = *console.Find<LimitBox>("txtLowLimit");
  auto& range = *console.Find<QLabel>("lblHighLimitRange");
  console.Chip.Traffic();
  QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&high, &wheel);
  EXPECT_TRUE(range.isHidden());
  for (const char* text : {"150", ""}) {
    Type(high, text);
    EXPECT_EQ(console.Chip.Traffic(), "") << text;
    EXPECT_EQ(high.text(), text);
    EXPECT_FALSE(range.isHidden());
    EXPECT_EQ(range.text(), "⚠ -127 to 127 °C, whole degrees");
    EXPECT_EQ(console.Text("lblNotice"), "|  Not written: the high limit of Remote 1 is -127 to 127 °C, whole degrees");
  }
  console.Form->SelectTab(MainForm::VisualDisplay);  // shows everything anew
  EXPECT_FALSE(range.isHidden());
  QTest::keyClick(&high, Qt::Key_Up);
  EXPECT_EQ(high.text(), "") << "a refused text is not stepped from";
  QTest::keyClick(&high, Qt::Key_Escape);
  EXPECT_EQ(high.text(), "127 °C");
  EXPECT_TRUE(range.isHidden());
  Type(high, "150");
  console.Click("visualdisplaytext_0");
  EXPECT_EQ(high.text(), "127 °C") << "of another channel";
  EXPECT_TRUE(range.isHidden());
  console.Click("visualdisplaytext_1");
  console.Chip.Traffic();
  Type(high, "-20");
  EXPECT_EQ(console.Chip.Traffic(), "W4E:81 W4F:EC");
  EXPECT_EQ(high.text(), "-20 °C");
  Type(low, "-60");
  EXPECT_EQ(console.Chip.Traffic(), "W4E:C4 W4F:EC") << "below the gauge's scale";
  QTest::keyClick(&low, Qt::Key_Down);
  EXPECT_EQ(console.Chip.Traffic(), "W4E:C3 W4F:EC");
  EXPECT_EQ(low.text(), "-61 °C");
  EXPECT_EQ(console.Find<LimitGauge>("limits_gauge")->Markers().Low(), -61);
  EXPECT_TRUE(console.Dialogs.Shown.empty());
}

TEST(MainForm, ARefusalUnderOneBoxLeavesTheOtherInSight) {
  Console console;
  auto& low = *console.Find<LimitBox>("txtLowLimit");
  console.Click("visualdisplaytext_3");
  Type(low, "10");
  QTest::qWait(20);
  QTest::keyClick(&low, Qt::Key_Escape);
  QTest::qWait(20);
  console.Click("visualdisplaytext_7");
  Type(*console.Find<LimitBox>("txtHighLimit"), "6.7");
  QTest::qWait(20);
  EXPECT_GT(low.visibleRegion().boundingRect().height(), 10);
}

TEST(MainForm, ATypedLimitThatFailsIsTriedOnceAndNotKnownThen) {
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
  EXPECT_EQ(console.Chip.Traffic(), "W4E:81 W4F:46!") << "nor once more when the box takes the focus";
  EXPECT_EQ(console.Dialogs.Shown.size(), 1U);
  EXPECT_EQ(box.text(), "");
  EXPECT_EQ(console.Find<LimitGauge>("limits_gauge")->accessibleDescription(), "High not known, Low -127");
}

TEST(MainForm, AHeldArrowGoesOnStepping) {
  for (const auto medium : {Console::Medium::Board, Console::Medium::Smbus}) {
    Console console(medium, {{0x51, 0x50}});
    console.Click("visualdisplaytext_0");
    auto& box = *console.Find<LimitBox>("txtHighLimit");
    QStyleOptionSpinBox option;
    option.initFrom(&box);
    option.subControls = QStyle::SC_All;
    const QPoint up = box.style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxUp, &box).center();
    QTest::mousePress(&box, Qt::LeftButton, {}, up);
    EXPECT_TRUE(console.Wait([&] { return console.Chip.Peek(0x51) >= 0x54; })) << int(console.Chip.Peek(0x51));
    QTest::mouseRelease(&box, Qt::LeftButton, {}, up);
  }
}

TEST(MainForm, ADragEndsWithItsChannel) {
  Console console;
  console.Click("visualdisplaytext_1");
  auto* gauge = console.Find<LimitGauge>("limits_gauge");
  const QPoint grip(gauge->width() / 2, static_cast<int>(gauge->MarkerY(Marker::High)));
  const auto drag = [&](QEvent::Type type, int down) {
    QMouseEvent event(type, grip + QPoint(0, down), gauge->mapToGlobal(grip), Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(gauge, &event);
    return console.Chip.Traffic();
  };
  drag(QEvent::MouseButtonPress, 0);
  EXPECT_EQ(drag(QEvent::MouseMove, 20).substr(0, 9), "W4E:81 W4");
  console.Click("visualdisplaytext_2");
  console.Chip.Traffic();
  EXPECT_EQ(drag(QEvent::MouseMove, 40), "") << "nor to the new channel, whose scale is the same";
  EXPECT_EQ(drag(QEvent::MouseButtonRelease, 40), "");
}

TEST(MainForm, AFansSpeedAndLimitAreNotKnownUntilThePulsesWereRead) {
  Console console(Console::Medium::Board, {}, false, "fail=1+,reg=7B");
  console.Chip.Advance(1.1);
  console.Click("visualdisplaytext_3");
  EXPECT_TRUE(console.Wait([&] { return console.Tile(0).Value() != "–"; }));
  EXPECT_EQ(console.Tile(3).Value(), "–");
  EXPECT_EQ(console.Text("lblReadout"), "–");
  EXPECT_FALSE(console.Find<LimitBox>("txtLowLimit")->isEnabled());
  EXPECT_TRUE(console.Shows("lblFaults", "Link faults: "));
  console.Chip.Sim.ClearFaults();
  console.Find<QAction>("actReReadChip")->trigger();
  EXPECT_TRUE(console.Find<LimitBox>("txtLowLimit")->isEnabled());
  EXPECT_TRUE(console.Wait([&] { return console.Tile(3).Value() != "–"; }));
}

TEST(MainForm, TheSliderWritesWhileItMovesOnTheBoardAndOnceOnTheSmbusAndAFailedWriteEndsItsDrag) {
  for (const auto medium : {Console::Medium::Board, Console::Medium::Smbus}) {
    const bool board = medium == Console::Medium::Board;
    Console console(medium, {{0x5E, 0xE2}});
    console.Click("visualdisplaytext_6");
    auto* slider = console.Find<DutySlider>("analog_output_slider");
    EXPECT_TRUE(slider->isVisible());
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
    EXPECT_EQ(console.Text("lblDutyCycle1"), "0%");
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
}

TEST(MainForm, AsksBeforeADetectionWithoutMonitoringAndTriesAgainToPutItsOutputBack) {
  Console console(Console::Medium::Board, {{0x40, 0x00}});
  console.Click("cmdConfigureFans");
  console.Chip.BusTraffic();
  console.Click("cmdAutoDetect_1");
  EXPECT_EQ(console.Dialogs.Shown.back(), "ask|Temperatures are not measured: monitoring is off|Continue");

  console.Chip.Sim.AddFault(*ParseFault("fail=2+,op=write,reg=5D"));
  console.Dialogs.Yes = true;
  console.Dialogs.WhileOpen = [&] {
    if (console.Dialogs.Shown.size() == 3) console.Chip.Sim.ClearFaults();
  };
  console.Click("cmdAutoDetect_1");
  EXPECT_EQ(console.Chip.BusTraffic(), "R6B R26 R6A R25 R6C R27 R5D W5D:E2 R2A R2B W5D:62! W5D:62! W5D:62! W5D:62");
  EXPECT_EQ(console.Dialogs.Shown.size(), 3U);
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

TEST(MainForm, ClosingEndsTheTraffic) {
  Console console(Console::Medium::Smbus);
  EXPECT_TRUE(console.Wait([&] { return !console.Chip.Traffic().empty(); }));
  console.Click("cmdViewEasy");
  EXPECT_TRUE(console.Form->close());
  console.Chip.Traffic();
  EXPECT_FALSE(console.Wait([&] { return !console.Chip.Traffic().empty(); }, 60));
}

}  // namespace
}  // namespace krx
