// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/mainform.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFocusEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStyleOptionSpinBox>
#include <QTabWidget>
#include <QTest>
#include <QWheelEvent>
#include <functional>

#include "console/ui/channeltile.h"
#include "console/ui/limitbox.h"
#include "console/ui/statusline.h"
#include "console/workbench.h"
#include "controls/ui/dutyslider.h"
#include "controls/ui/indicator.h"
#include "controls/ui/limitgauge.h"
#include "controls/ui/palette.h"
#include "controls/ui/stripchart.h"
#include "controls/ui/userdialogs.h"
#include "link/busjournal.h"
#include "simulator/simfaults.h"
#include "simulator/simwords.h"
#include "support/testbench.h"

namespace krx {
namespace {

class RecordingDialogs : public UserDialogs {
 public:
  void Critical(const QString& text, const QString&) override {
    Texts << text;
    if (Opened) Opened();
  }
  void Exclamation(const QString& text, const QString&) override { Texts << text; }
  void Information(const QString& text, const QString&) override { Texts << text; }
  bool Ask(const QString& text, const QString&, const QString&) override {
    Texts << text;
    return false;
  }
  std::optional<QString> SaveFile(const QString&, const QString&) override { return {}; }
  std::optional<QString> OpenFile(const QString&, const QString&) override { return {}; }
  QStringList Texts;
  std::function<void()> Opened;  ///< what a box brings about
};

/// The main window over a simulated chip whose clock stands still unless a test moves it: what a register was poked
/// with is what the cycle reads.
struct Console {
  using Medium = TestBench::Medium;
  explicit Console(Medium medium = Medium::Board, bool monitoring = true, bool manual = false, bool readOnly = false,
                   const char* fault = nullptr)
      : Chip(medium), Turns(Chip.Bus), Bench(Chip.Bus) {
    if (fault != nullptr) Chip.Sim.AddFault(*ParseFault(fault));
    Chip.Poke(0x40, monitoring ? 0x01 : 0x00);
    if (manual) Chip.Poke(0x5C, 0xE2);
    Form = std::make_unique<MainForm>(Bench, Turns, Dialogs, Journal, MainFormOptions{"Simulated board", readOnly});
    Form->Start();
    Form->SelectTab(MainForm::VisualDisplay);
    Chip.Traffic();
  }

  template <class Widget>
  Widget* Find(const char* name) const {
    auto* found = Form->findChild<Widget*>(QString::fromLatin1(name));
    if (found == nullptr) throw std::runtime_error(name);
    return found;
  }
  std::string Text(const char* label) const { return Find<QLabel>(label)->text().toStdString(); }
  void Click(const char* button) { Find<QAbstractButton>(button)->click(); }
  ChannelTile& Tile(int channel) const {
    return *Find<ChannelTile>(("visualdisplaytext_" + std::to_string(channel)).c_str());
  }

  template <class Condition>
  bool Wait(Condition condition, int milliseconds = 5000) {
    QElapsedTimer time;
    for (time.start(); time.elapsed() < milliseconds;) {
      if (condition()) return true;
      QApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return false;
  }

  TestBench Chip;
  ChipTurns Turns;
  RecordingDialogs Dialogs;
  BusJournal Journal{Chip.Time};
  Workbench Bench;
  std::unique_ptr<MainForm> Form;
};

TEST(MainForm, NamesTheMediumInTitleAndStatusBar) {
  const Console board;
  EXPECT_TRUE(board.Form->windowTitle().contains("Simulated board"));
  EXPECT_EQ(board.Text("lblMedium"), "Simulated board · printer port 2Dh");
  EXPECT_EQ(Console(Console::Medium::Smbus).Text("lblMedium"), "Simulated board · SMBus 2Eh");
  EXPECT_EQ(ConnectionText("SMBus I801 adapter at 0700, i2c-1", Console(Console::Medium::Smbus).Chip.Bus),
            "SMBus I801 adapter at 0700, i2c-1 · 2Eh");
}

TEST(MainForm, LeavesRoomForItsFrameOnTheScreen) {
  const Console console;  // the offscreen display is 800 high
  EXPECT_LE(console.Form->height(), console.Form->screen()->availableSize().height() - 20);
}

TEST(MainForm, HasItsFixedCaptions) {
  const Console console;
  const auto* tabs = console.Find<QTabWidget>("Main_Form_Tab");
  QStringList captions;
  for (int tab = 0; tab < tabs->count(); ++tab) captions << tabs->tabText(tab);
  EXPECT_EQ(captions, QStringList({"Main", "Read/Write", "Visual Display", "Control "}));
  const std::pair<const char*, const char*> buttons[] = {{"cmdBigGraph", "Expand Graph"},
                                                         {"cmdGlitchTest", "glitch test"},
                                                         {"Command1", "Easy Setup"},
                                                         {"cmdViewEasy", "Setup Log..."},
                                                         {"Command3", "About"}};
  for (const auto& [name, caption] : buttons) EXPECT_EQ(console.Find<QPushButton>(name)->text(), caption);
}

TEST(MainForm, TilesShowWhatWasMeasured) {
  Console console;
  for (const auto& [reg, byte] : std::initializer_list<std::pair<int, int>>{
           {0x77, 0}, {0x26, 0xFB}, {0x28, 0xCA}, {0x29, 0x08}, {0x23, 0xC0}, {0x41, 0x20}, {0x42, 0}})
    console.Chip.Poke(static_cast<std::uint8_t>(reg), static_cast<std::uint8_t>(byte));
  const struct {
    int Channel;
    const char* Value;
    const char* Unit;
    const char* Range;
  } rows[] = {{7, "4.992", "V", "min 4.992 · max 4.992"},
              {3, "4800", "RPM", "min 4800 · max 4800"},
              {0, "-5.00", "C", "min -5.00 · max -5.00"}};
  for (const auto& row : rows) {
    console.Find<QAbstractButton>(("visualdisplaytext_" + std::to_string(row.Channel)).c_str())->click();
    const ChannelTile& tile = console.Tile(row.Channel);
    EXPECT_TRUE(console.Wait([&] { return tile.Value() == row.Value; })) << tile.Value().toStdString();
    EXPECT_EQ(tile.Unit(), row.Unit);
    EXPECT_EQ(console.Text("lblRange"), row.Range);
    EXPECT_EQ(console.Find<QLabel>("lblSummary")->foregroundRole() == QPalette::BrightText, row.Channel == 0);
  }
  EXPECT_EQ(console.Find<Indicator>("SSPanel11_0")->State(), IndicatorState::Bad);
  EXPECT_EQ(console.Find<Indicator>("SSPanel11_1")->State(), IndicatorState::Ok);
  EXPECT_EQ(console.Tile(0).Alarm(), "out of limits");
  EXPECT_EQ(console.Tile(0).accessibleDescription(), "-5.00 C, out of limits");
  EXPECT_EQ(console.Text("lblTmin_0"), "90 °C");
  EXPECT_EQ(console.Text("lblOpPoint_2"), "100 °C");
  EXPECT_EQ(console.Tile(1).Alarm(), "");
  EXPECT_TRUE(console.Wait([&] { return console.Text("lblAlarms") == "◆ 1 alarm"; }));
  EXPECT_EQ(console.Find<QLabel>("lblAlarms")->foregroundRole(), QPalette::BrightText);
  EXPECT_EQ(console.Text("lblMean"), "mean -5.00");
  console.Chip.Poke(0x50, 0x0A);
  console.Click("visualdisplaytext_0");
  EXPECT_EQ(console.Text("lblSummary"), "below low limit 10 °C");
  EXPECT_EQ(console.Find<QLabel>("lblReadout")->foregroundRole(), QPalette::BrightText);
  console.Click("cmdResetRange");
  EXPECT_EQ(console.Text("lblRange"), "min – · max –");
  EXPECT_TRUE(console.Wait([&] { return console.Text("lblCycle").find("12 reads a tick") != std::string::npos; }))
      << console.Text("lblCycle");
}

TEST(MainForm, AChannelWhosePinServesAnotherFunctionIsNotShownNorCounted) {
  Console console;
  console.Chip.Poke(0x78, 0x02);  // THERM on the Tach4 pin
  console.Chip.Poke(0x42, 0x20);
  console.Form->SelectTab(MainForm::VisualDisplay);
  EXPECT_TRUE(console.Wait([&] { return console.Text("lblAlarms") == "No alarms"; }));
  EXPECT_FALSE(console.Tile(6).isVisible());
  EXPECT_EQ(console.Find<Indicator>("SSPanel11_6")->State(), IndicatorState::Hidden);
  EXPECT_TRUE(console.Tile(7).isVisible());
  console.Chip.Advance(1.1);
  console.Chip.Poke(0x79, 10);
  EXPECT_TRUE(console.Wait([&] { return console.Find<StripChart>("Strip2")->Caption() == "THERM=22.8%"; }));
  EXPECT_NE(console.Find<Indicator>("SSPanel11_7")->State(), IndicatorState::Hidden);
}

TEST(MainForm, ACurrentHasNoRangeInVolts) {
  Console console;
  console.Chip.Poke(0x20, 0x60);
  console.Click("visualdisplaytext_11");
  EXPECT_TRUE(console.Wait([&] { return console.Text("lblRange") == "min 1.229 · max 1.229"; }));
  console.Chip.Poke(0x40, 0x11);
  console.Find<QAction>("actReReadChip")->trigger();
  EXPECT_EQ(console.Text("lblRange"), "min – · max –");
  EXPECT_EQ(console.Tile(11).Unit(), "A");
  console.Click("visualdisplaytext_7");
  console.Chip.Poke(0x23, 0xC0);
  EXPECT_TRUE(console.Wait([&] { return console.Text("lblMean") == "mean 4.992"; }));
  console.Find<QAction>("actResetRanges")->trigger();
  EXPECT_EQ(console.Text("lblMean"), "mean –");
}

TEST(MainForm, InAReadOnlyRunNothingThatWritesIsOffered) {
  Console console(Console::Medium::Board, true, true, true);
  console.Click("visualdisplaytext_0");
  console.Chip.Poke(0x78, 0x02);
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
  Console console(Console::Medium::Board, false);
  EXPECT_TRUE(console.Wait([&] { return console.Text("lblCycle").find("Not monitoring") != std::string::npos; }));
  EXPECT_EQ(console.Tile(0).Value(), "–");
  EXPECT_EQ(console.Text("lblReadout"), "–");
  EXPECT_EQ(console.Text("lblTmin_0"), "–");
  console.Chip.Poke(0x26, 0x20);
  console.Click("visualdisplaytext_0");  // the cycle runs now, but nothing is measured
  EXPECT_TRUE(console.Wait([&] { return console.Tile(0).Value() == "32.00"; }));
  EXPECT_TRUE(console.Tile(0).IsOld());
  EXPECT_EQ(console.Text("lblSummary"), "not monitoring");
  EXPECT_EQ(console.Text("lblAlarms"), "No alarms (old)");
  EXPECT_EQ(console.Tile(9).Value(), "–");
  EXPECT_TRUE(console.Find<Indicator>("SSPanel11_9")->IsStale()) << "nor is a channel without a value within limits";
  EXPECT_TRUE(console.Find<QLabel>("lblNotMonitoring")->isVisible());
  EXPECT_TRUE(console.Find<QLabel>("lblNotMonitoring")->text().endsWith("press Easy Setup to start"));
  EXPECT_FALSE(
      console.Wait([&] { return console.Text("lblCycle").find("Not monitoring") == std::string::npos; }, 1200));
  console.Click("Command1");  // Easy Setup
  EXPECT_FALSE(console.Find<QLabel>("lblNotMonitoring")->isVisible());
  EXPECT_TRUE(console.Wait([&] { return !console.Tile(0).IsOld(); }));
  EXPECT_EQ(console.Tile(0).Mark(), CaptionMark::Selected);
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
  console.Chip.Poke(0x56, 0x94), console.Chip.Poke(0x57, 0x11);  // 4500 counts, two pulses programmed
  EXPECT_EQ(console.Tile(0).Mark(), CaptionMark::FirstShown);
  EXPECT_FALSE(console.Find<LimitBox>("txtLowLimit")->isEnabled());
  console.Click("visualdisplaytext_4");
  const GaugeMarkers& markers = console.Find<LimitGauge>("limits_gauge")->Markers();
  EXPECT_EQ(markers.Low(), 2400);
  EXPECT_EQ(markers.High(), 20000);
  EXPECT_FALSE(markers.IsDraggable(Marker::High));
  EXPECT_FALSE(console.Find<LimitBox>("txtHighLimit")->isEnabled());
  EXPECT_EQ(console.Text("lblPanelCaption"), "Fan2 PWM");
  EXPECT_EQ(console.Tile(4).Mark(), CaptionMark::Selected);
  EXPECT_EQ(console.Tile(0).Mark(), CaptionMark::Plain);
  console.Click("visualdisplaytext_3");  // no limit
  auto* gauge = console.Find<LimitGauge>("limits_gauge");
  console.Form->activateWindow();
  gauge->setFocus();
  EXPECT_TRUE(console.Wait([&] { return gauge->hasFocus(); }));
  console.Chip.Traffic();
  QTest::keyClick(gauge, Qt::Key_Up);
  EXPECT_EQ(console.Chip.Traffic(), "W54:AF W55:FF") << "100 RPM has no count at two pulses";
}

/// Types into a limit's box over what stands there.
void Type(LimitBox& box, const char* text, Qt::Key finish = Qt::Key_Return) {
  box.selectAll();
  QTest::keyClick(&box, Qt::Key_Delete);
  QTest::keyClicks(&box, QString::fromUtf8(text));
  QTest::keyClick(&box, finish);
}

TEST(MainForm, EachControlOfTheVisualDisplayReachesTheBusAsItsNameSays) {
  const struct {
    const char* Name;
    const char* Traffic;
  } rows[] = {
      {"visualdisplaytext_0", "R50 R51"},
      {"visualdisplaytext_1", "R4E R4F"},
      {"visualdisplaytext_2", "R52 R53"},
      {"visualdisplaytext_3", "R54 R55 R30"},
      {"visualdisplaytext_4", "R56 R57 R31"},
      {"visualdisplaytext_5", "R58 R59 R32"},
      {"visualdisplaytext_6", "R5A R5B R32"},
      {"visualdisplaytext_7", "R4A R4B"},
      {"visualdisplaytext_8", "R4C R4D"},
      {"visualdisplaytext_9", "R46 R47"},
      {"visualdisplaytext_10", "R48 R49"},
      {"visualdisplaytext_11", "R44 R45"},
      {"Command1",
       "R40 W40:01 W50:0A W4E:0A W52:0A W51:50 W4F:50 W53:50 W68:28 W67:28 W69:28 W34:3C W33:3C W35:3C "
       "R78 R78 R7D R50 R51"},
      {"cmdFanTest", "R5C W5C:E2 R5D W5D:E2 R78 W78:30"},
      {"cmdGlitchTest", "R5E W5E:E2 R5D W5D:E2 W32:00 W31:00"},
      {"cmdViewEasy", ""},
      {"cmdResetRange", ""},
      {"cmdUseSlider", "R7B R40 R5C R5D R5E"},
  };
  for (const auto& row : rows) {
    Console console;
    console.Click(row.Name);
    EXPECT_EQ(console.Chip.Traffic(), row.Traffic) << row.Name;
    EXPECT_EQ(console.Form->findChild<QDialog*>("frmSetupLog") != nullptr, row.Name == std::string("cmdViewEasy"));
    EXPECT_EQ(console.Find<QWidget>("barGlitchTest")->isVisible(), row.Name == std::string("cmdGlitchTest"));
  }
}

TEST(MainForm, ThePanelFollowsTheConfigurationOnTheBusAndOffersTheSlider) {
  for (const bool monitoring : {true, false}) {  // with and without a cycle
    Console console(Console::Medium::Board, monitoring);
    const auto* difference = console.Find<QLabel>("lblPwmDifference");
    EXPECT_EQ(console.Text("lblPanelBehaviour"), "Always On");
    EXPECT_FALSE(difference->isVisible());
    console.Click("cmdFanTest");
    EXPECT_TRUE(console.Wait([&] { return difference->isVisible(); }));
    EXPECT_EQ(difference->text(), "PWM1 is set to Manual Control now");
    EXPECT_EQ(console.Find<QPushButton>("cmdUseSlider")->text(), "Use slider");
    EXPECT_EQ(console.Text("lblPanelBehaviour"), "manual");
    EXPECT_TRUE(console.Find<QWidget>("pnlPWM")->isVisible()) << "as it was when the chip was found";
    console.Click("cmdUseSlider");
    EXPECT_TRUE(console.Find<QWidget>("pnlSlider")->isVisible());
    EXPECT_FALSE(console.Find<QWidget>("pnlPWM")->isVisible());
    EXPECT_EQ(console.Text("lblSliderBehaviour"), "manual");
    EXPECT_EQ(console.Text("lblSliderCaption"), "Fan1 PWM");
    EXPECT_FALSE(difference->isVisible());
  }
}

TEST(MainForm, TheControlPageFollowsWhatTheCycleFindsAboutTherm) {
  Console console;
  console.Form->SelectTab(MainForm::Control);
  console.Chip.Poke(0x78, 0x02);
  console.Chip.Advance(1.1);
  EXPECT_TRUE(console.Wait([&] { return console.Find<QAbstractButton>("chkPROCHOT")->isChecked(); }));
  EXPECT_TRUE(console.Find<QAbstractButton>("optTach4")->isChecked());
  console.Chip.Traffic();
  console.Form->SelectTab(MainForm::ReadWrite);
  console.Form->SelectTab(MainForm::Control);
  console.Chip.BusTraffic();
  console.Click("cmdSwitchAccess");
  EXPECT_EQ(console.Chip.BusTraffic(), "V96 V94 V90 V92 V90 V92 V94 V96");
  console.Click("cmdConfigureFans");
  EXPECT_TRUE(console.Find<QDialog>("frmFanConfig")->isVisible());
}

TEST(MainForm, ATypedLimitIsWrittenAndTheWheelWritesNothing) {
  Console console;
  console.Click("visualdisplaytext_1");
  auto& high = *console.Find<LimitBox>("txtHighLimit");
  auto& low = *console.Find<LimitBox>("txtLowLimit");
  console.Chip.Traffic();
  QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&high, &wheel);
  Type(high, "127");
  EXPECT_EQ(console.Chip.Traffic(), "") << "it stands there";
  Type(high, "-20");
  EXPECT_EQ(console.Chip.Traffic(), "W4E:81 W4F:EC");
  EXPECT_EQ(high.text(), "-20 °C");
  Type(low, "-60");
  EXPECT_EQ(console.Chip.Traffic(), "W4E:C4 W4F:EC") << "below the gauge's scale";
  QTest::keyClick(&low, Qt::Key_Down);
  EXPECT_EQ(console.Chip.Traffic(), "W4E:C3 W4F:EC");
  EXPECT_EQ(low.text(), "-61 °C");
  EXPECT_EQ(console.Find<LimitGauge>("limits_gauge")->Markers().Low(), -61);
}

TEST(MainForm, ARefusedLimitKeepsItsTextShowsTheRangeAndWritesNothing) {
  Console console;
  console.Click("visualdisplaytext_1");
  auto& box = *console.Find<LimitBox>("txtHighLimit");
  auto& range = *console.Find<QLabel>("lblHighLimitRange");
  console.Chip.Traffic();
  EXPECT_TRUE(range.isHidden());
  for (const char* text : {"150", "hot", ""}) {
    Type(box, text);
    EXPECT_EQ(console.Chip.Traffic(), "") << text;
    EXPECT_EQ(box.text(), text);
    EXPECT_FALSE(range.isHidden());
    EXPECT_EQ(range.text(), "⚠ -127 to 127 °C, whole degrees");
    EXPECT_EQ(console.Text("lblNotice"), "|  Not written: the high limit of Remote 1 is -127 to 127 °C, whole degrees");
  }
  console.Form->SelectTab(MainForm::VisualDisplay);  // shows everything anew
  EXPECT_FALSE(range.isHidden());
  QTest::keyClick(&box, Qt::Key_Up);
  EXPECT_EQ(box.text(), "") << "a refused text is not stepped from";
  QTest::keyClick(&box, Qt::Key_Escape);
  EXPECT_EQ(box.text(), "127 °C");
  EXPECT_TRUE(range.isHidden());
  Type(box, "150");
  console.Click("visualdisplaytext_0");
  EXPECT_EQ(box.text(), "127 °C") << "of another channel";
  EXPECT_TRUE(range.isHidden());
  EXPECT_EQ(console.Dialogs.Texts, QStringList());
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
  console.Dialogs.Opened = [&box] {
    QFocusEvent out(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(&box, &out);
  };
  console.Chip.Sim.AddFault(*ParseFault("fail=1,reg=4F,op=write"));
  console.Chip.Traffic();
  Type(box, "70");
  EXPECT_EQ(console.Chip.Traffic(), "W4E:81 W4F:46!") << "nor once more when the box takes the focus";
  EXPECT_EQ(console.Dialogs.Texts.size(), 1);
  EXPECT_EQ(box.text(), "");
  EXPECT_EQ(console.Find<LimitGauge>("limits_gauge")->accessibleDescription(), "High not known, Low -127");
}

TEST(MainForm, AHeldArrowGoesOnStepping) {
  for (const auto medium : {Console::Medium::Board, Console::Medium::Smbus}) {
    Console console(medium);
    console.Click("visualdisplaytext_0");
    auto& box = *console.Find<LimitBox>("txtHighLimit");
    console.Chip.Poke(0x51, 0x50);
    console.Click("visualdisplaytext_0");
    QStyleOptionSpinBox option;
    option.initFrom(&box);
    option.subControls = QStyle::SC_All;
    const QPoint up = box.style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxUp, &box).center();
    QTest::mousePress(&box, Qt::LeftButton, {}, up);
    EXPECT_TRUE(console.Wait([&] { return console.Chip.Peek(0x51) >= 0x54; })) << int(console.Chip.Peek(0x51));
    QTest::mouseRelease(&box, Qt::LeftButton, {}, up);
  }
}

TEST(MainForm, AFailedWriteEndsTheDragOfTheSlider) {
  Console console(Console::Medium::Board, true, true);
  auto* slider = console.Find<DutySlider>("analog_output_slider");
  slider->setSliderDown(true);
  console.Chip.FailTransfer(1);
  slider->setSliderPosition(128);
  EXPECT_EQ(console.Dialogs.Texts.size(), 1);
  EXPECT_FALSE(slider->isSliderDown());
  EXPECT_TRUE(console.Form->VisualTimerRunning());
}

TEST(MainForm, ADragEndsWithItsChannel) {
  Console console;
  console.Click("visualdisplaytext_1");
  auto* gauge = console.Find<LimitGauge>("limits_gauge");
  const QPoint grip(gauge->width() / 2, static_cast<int>(gauge->MarkerY(Marker::High)));
  const auto drag = [&](QEvent::Type type, int down) {
    QMouseEvent event(type, grip + QPoint(0, down), gauge->mapToGlobal(grip), Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(gauge, &event);
  };
  drag(QEvent::MouseButtonPress, 0);
  console.Chip.Traffic();
  drag(QEvent::MouseMove, 20);
  EXPECT_EQ(console.Chip.Traffic().substr(0, 9), "W4E:81 W4");
  console.Click("visualdisplaytext_2");
  console.Chip.Traffic();
  drag(QEvent::MouseMove, 40);
  drag(QEvent::MouseButtonRelease, 40);
  EXPECT_EQ(console.Chip.Traffic(), "") << "nor to the new channel, whose scale is the same";
}

TEST(MainForm, AFansSpeedAndLimitAreNotKnownUntilThePulsesWereRead) {
  Console console(Console::Medium::Board, true, false, false, "fail=1+,reg=7B");
  console.Chip.Advance(1.1);
  console.Click("visualdisplaytext_3");
  EXPECT_TRUE(console.Wait([&] { return console.Tile(0).Value() != "–"; }));
  EXPECT_EQ(console.Tile(3).Value(), "–");
  EXPECT_EQ(console.Text("lblReadout"), "–");
  EXPECT_FALSE(console.Find<LimitBox>("txtLowLimit")->isEnabled());
  EXPECT_NE(console.Text("lblFaults").find("Link faults: "), std::string::npos) << console.Text("lblFaults");
  console.Chip.Sim.ClearFaults();
  console.Find<QAction>("actReReadChip")->trigger();
  EXPECT_TRUE(console.Find<LimitBox>("txtLowLimit")->isEnabled());
  EXPECT_TRUE(console.Wait([&] { return console.Tile(3).Value() != "–"; }));
}

TEST(MainForm, TheSliderWritesWhileItMovesOnTheBoardAndOnceOnTheSmbus) {
  const struct {
    Console::Medium Medium;
    const char* Moving;
    const char* Released;
  } rows[] = {{Console::Medium::Board, "W30:80 W30:FF", ""}, {Console::Medium::Smbus, "", "W30:FF"}};
  for (const auto& row : rows) {
    Console console(row.Medium, true, true);
    auto* slider = console.Find<DutySlider>("analog_output_slider");
    EXPECT_TRUE(slider->isVisible());
    slider->setSliderDown(true);
    console.Chip.Traffic();
    slider->setSliderPosition(128);
    EXPECT_EQ(console.Text("lblDutyCycle1"), "50%");
    slider->setSliderPosition(255);
    EXPECT_EQ(console.Chip.Traffic(), row.Moving);
    EXPECT_FALSE(console.Form->VisualTimerRunning());
    slider->setSliderDown(false);
    EXPECT_EQ(console.Chip.Traffic(), row.Released);
    EXPECT_EQ(console.Text("lblDutyCycle1"), "100%");
    EXPECT_TRUE(console.Form->VisualTimerRunning());
  }
}

TEST(MainForm, AFailingTickIsCountedInTheStatusBarAndTheNextOneWorks) {
  Console console;
  console.Chip.FailTransfer(3);
  EXPECT_TRUE(console.Wait([&] {
    return console.Text("lblFaults") == "Link faults: 1, last: Error: 57, Device I/O error";
  })) << console.Text("lblFaults");
  EXPECT_EQ(console.Dialogs.Texts, QStringList());
  console.Chip.Poke(0x26, 0x21);
  EXPECT_TRUE(console.Wait([&] { return console.Tile(0).Value().startsWith("33."); }));
}

TEST(MainForm, AFailingClickShowsOneBox) {
  Console console;
  console.Chip.FailTransfer(1);
  console.Click("visualdisplaytext_2");
  EXPECT_EQ(console.Dialogs.Texts, QStringList("Error: 57, Device I/O error"));
  EXPECT_EQ(console.Text("lblFaults"), "Link faults: 1, last: Error: 57, Device I/O error");
  console.Click("visualdisplaytext_2");
  EXPECT_EQ(console.Dialogs.Texts.size(), 1);
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
