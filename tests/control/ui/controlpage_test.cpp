// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/ui/controlpage.h"

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>

#include "board/boardsync.h"
#include "console/pageparts.h"
#include "support/formbench.h"
#include "support/scripteddialogs.h"
#include "support/testbench.h"
#include "support/words.h"

namespace krx {
namespace {

struct ControlBench : TestBench {
  explicit ControlBench(Medium medium = Medium::Board, bool vidSteady = true, bool readOnly = false)
      : TestBench(medium), Page(ControlPartsOf(Work), Dialogs, readOnly) {
    Bus.WritesHeldBack = readOnly;
    Work.BoardFlags.VidProbeSteady = vidSteady;
    Work.EvalBoard.SwitchesChanged = [this] { Page.SwitchesChanged(); };
    Page.Enter();
    BusTraffic();
  }
  QAbstractButton& Button(const char* name) { return *Page.findChild<QAbstractButton*>(name); }
  /// The names of all boxes and options with a mark, without their "chk" and "opt".
  std::string Marked() {
    std::string names;
    for (const auto* button : Page.findChildren<QAbstractButton*>()) {
      if (button->isChecked()) names += (names.empty() ? "" : " ") + button->objectName().sliced(3).toStdString();
    }
    return names;
  }

  Workbench Work{Bus};
  ScriptedDialogs Dialogs;
  ControlPage Page;
};

TEST(ControlPage, EachControlDrivesItsOwnBitOrSwitchAndShowsWhatTheChipThenHolds) {
  const struct {
    const char *Name, *Traffic, *Marked;
  } rows[] = {
      // One after the other on the same board.
      {"chkPROCHOT", "R78 W78:02 R78 R7D S96:46", "PROCHOT Tach4 PWM2 Sensor1 Sensor2 VID_1 VID_2"},
      {"opt5V", "R7D W7D:02 R78 R7D S96:92", "PROCHOT 5V PWM2 Sensor1 Sensor2 VID_1 VID_4"},
      {"optTach4", "R7D W7D:00 R78 R7D S96:46", "PROCHOT Tach4 PWM2 Sensor1 Sensor2 VID_1 VID_2"},
      {"chkPROCHOT", "R78 W78:00 R78 S96:86", "PWM2 Sensor1 Sensor2 VID_1 VID_2"},
      {"chkAlert", "R78 W78:01 R78 S90:08 R7D S96:86", "Alert PWM2Alert PWM2 Sensor1 Sensor2 VID_1 VID_2"},
      {"chkPWM2Alert", "R78 W78:00 R78 S90:10 R7D S96:86", "PWM2 Sensor1 Sensor2 VID_1 VID_2"},
      {"chk25vAlert", "R7D W7D:01 R78 S90:10 R7D S96:85", "25vAlert 25V Sensor1 Sensor2 VID_0 VID_2"},
      {"optPWM2", "R7D W7D:00 R78 S90:10 R7D S96:86", "PWM2 Sensor1 Sensor2 VID_1 VID_2"},
      {"opt25V", "R7D W7D:01 R78 S90:10 R7D S96:85", "25vAlert 25V Sensor1 Sensor2 VID_0 VID_2"},
      {"chkSensor1", "S94:38", "25vAlert 25V Sensor2 VID_0 VID_2"},
      {"chkSensor2", "S94:00", "25vAlert 25V VID_0 VID_2"},
      {"chkHeater2", "ST C20 K", "25vAlert 25V Heater2 VID_0 VID_2"},
      {"chkHeater1", "ST C30 K", "25vAlert 25V Heater1 Heater2 VID_0 VID_2"},
      {"chkHeater2", "ST C10 K", "25vAlert 25V Heater1 VID_0 VID_2"},
      {"chkVID_0", "S96:84", "25vAlert 25V Heater1 VID_2"},
      {"chkVID_4", "S96:94", "25vAlert 25V Heater1 VID_2 VID_4"},
  };
  ControlBench bench;
  for (const auto& row : rows) {
    bench.Button(row.Name).click();
    EXPECT_EQ(bench.BusTraffic(), row.Traffic) << row.Name;
    EXPECT_EQ(bench.Marked(), row.Marked) << row.Name;
    EXPECT_EQ(bench.Button("opt5V").isEnabled(), bench.Button("chkPROCHOT").isChecked());
  }
  bench.FailTransfer(2);
  bench.Button("chkPROCHOT").click();
  EXPECT_TRUE(!bench.Button("chkPROCHOT").isChecked() && bench.Dialogs.Shown.size() == 1U);
  bench.FailTransfer(2);
  bench.Button("chkHeater2").click();
  EXPECT_EQ(bench.Page.findChild<QLabel*>("lblHeater2")->text(), "not read") << "it may be on";
  QTest::keyClicks(bench.Page.findChild<QLineEdit*>("txtProcTime"), "0");
  EXPECT_EQ(bench.Work.Cycle.ThermPeriod, 10);
}

TEST(ControlPage, WhatCannotBeShownIsNotOffered) {
  ControlBench unsteady(TestBench::Medium::Board, false);
  EXPECT_FALSE(unsteady.Button("chk25vAlert").isEnabled());
  EXPECT_FALSE(unsteady.Button("opt25V").isEnabled()) << "it would set the bit and show nothing";
  unsteady.Button("optPWM2").click();
  EXPECT_EQ(unsteady.BusTraffic(), "R7D W7D:00 R78 S90:10");
  EXPECT_FALSE(unsteady.Page.findChild<QWidget*>("pnlVIDBits")->isHidden());

  ControlBench readOnly(TestBench::Medium::Board, true, true);
  EXPECT_TRUE(readOnly.Page.findChild<QWidget*>("lblVidNotProbed")->isHidden());
  ProbeVidDrive(readOnly.Work.EvalBoard);
  readOnly.Page.Enter();
  EXPECT_FALSE(readOnly.Page.findChild<QWidget*>("lblVidNotProbed")->isHidden());
  EXPECT_EQ(readOnly.Marked(), "PWM2 Sensor1 Sensor2") << "no switch that was only wanted";
}

TEST(ControlPage, OnTheSmbusBoardControlsAreDisabled) {
  ControlBench bench(TestBench::Medium::Smbus);
  for (const char* name : {"chkSensor1", "chkHeater2", "cmdSwitchAccess"})
    EXPECT_FALSE(bench.Button(name).isEnabled() || bench.Button(name).toolTip().isEmpty()) << name;
  EXPECT_TRUE(bench.Button("chkPROCHOT").isEnabled());
  EXPECT_FALSE(bench.Page.findChild<QWidget*>("lblNoBoard")->isHidden());
  EXPECT_TRUE(ControlBench().Page.findChild<QWidget*>("lblNoBoard")->isHidden());
}

TEST(ControlPage, ShowsTheReadingsBesideTheirControlsWhileTheCycleRunsAndAfterIt) {
  FormBench bench;
  bench.Chip.Poke("25:3A 40:01");
  bench.Open();
  bench.Form->SelectTab(MainForm::Control);
  EXPECT_TRUE(bench.Shows("lblHeaterZone1", "58.00"));
  bench.Click("chkHeater1");
  bench.Chip.Advance(41);
  const auto* const heater = bench.Find<QAbstractButton>("chkHeater1");
  const auto describes = [&](const char* words) {
    return bench.Wait([&] { return heater->accessibleDescription().contains(words); });
  };
  EXPECT_TRUE(describes("on for 00:41, Remote 1 58.00 C")) << heater->accessibleDescription().toStdString();
  EXPECT_EQ(bench.Find<QLabel>("lblHeaterZone1")->foregroundRole(), QPalette::WindowText);
  bench.Form->SelectTab(MainForm::ReadWrite);
  bench.Chip.BusTraffic();
  EXPECT_TRUE(describes("58.00 C, out of date")) << heater->accessibleDescription().toStdString();
  EXPECT_EQ(bench.Find<QLabel>("lblHeaterZone1")->foregroundRole(), QPalette::PlaceholderText);
  EXPECT_EQ(bench.Chip.BusTraffic(), "");
}

TEST(ControlPage, TabLeadsDownTheFirstColumnFirstAndNothingIsCutInASmallWindow) {
  ControlBench bench;
  bench.Page.resize(bench.Page.fontMetrics().height() * 73, bench.Page.fontMetrics().height() * 44);
  bench.Page.show();
  EXPECT_EQ(Flaws(bench.Page), "");
  QStringList names;
  const QWidget* widget = bench.Page.nextInFocusChain();
  for (; widget != &bench.Page; widget = widget->nextInFocusChain()) {
    if ((widget->focusPolicy() & Qt::TabFocus) && widget->isVisible() && widget->isEnabled())
      names << widget->objectName();
  }
  EXPECT_EQ(names.join(' ').toStdString(),
            "cmdSwitchAccess cmdConfigureFans txtProcTime chkPROCHOT chkAlert chkPWM2Alert optPWM2 chk25vAlert opt25V "
            "chkSensor1 chkSensor2 chkHeater1 chkHeater2");
  const auto* const area = bench.Page.findChild<QScrollArea*>();
  EXPECT_LE(area->widget()->minimumSizeHint().width(), area->viewport()->width());
}

}  // namespace
}  // namespace krx
