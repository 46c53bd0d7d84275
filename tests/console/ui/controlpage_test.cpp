// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/controlpage.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QRadioButton>

#include "console/workbench.h"
#include "support/scripteddialogs.h"
#include "support/testbench.h"

namespace krx {
namespace {

struct ControlBench : TestBench {
  explicit ControlBench(Medium medium = Medium::Board) : TestBench(medium) {
    Work.BoardFlags.VidProbeSteady = true;
    Page.Enter();
    BusTraffic();
  }
  QAbstractButton& Button(const char* name) { return *Page.findChild<QAbstractButton*>(name); }

  Workbench Work{Bus};
  ScriptedDialogs Dialogs;
  ControlPage Page{Work, Dialogs, false};
};

TEST(ControlPage, EnablingThermSelectsTheTach4PinAndRoutesIt) {
  ControlBench bench;
  EXPECT_FALSE(bench.Button("optTach4").isEnabled());
  bench.Button("chkPROCHOT").click();
  EXPECT_EQ(bench.BusTraffic(), "R78 W78:02 R78 R7D S96:46");
  EXPECT_TRUE(bench.Button("optTach4").isChecked());
  bench.Button("opt5V").click();
  EXPECT_EQ(bench.BusTraffic(), "R7D W7D:02 R78 R7D S96:92");
  bench.Button("chkPROCHOT").click();
  EXPECT_FALSE(bench.Button("opt5V").isChecked()) << "both options clear";
  EXPECT_FALSE(bench.Button("opt5V").isEnabled());
}

TEST(ControlPage, TheTwoAlertBoxesShowTheSameBit) {
  ControlBench bench;
  bench.Button("chkPWM2Alert").click();
  EXPECT_TRUE(bench.Button("chkAlert").isChecked());
  bench.Button("chk25vAlert").click();
  EXPECT_TRUE(bench.Button("opt25V").isChecked());
  bench.Button("optPWM2").click();
  EXPECT_FALSE(bench.Button("chk25vAlert").isChecked());
  bench.Button("chkAlert").click();
  EXPECT_FALSE(bench.Button("chkPWM2Alert").isChecked());
}

TEST(ControlPage, AFailedClickGoesBackWithOneBox) {
  ControlBench bench;
  bench.FailTransfer(2);
  bench.Button("chkPROCHOT").click();
  EXPECT_FALSE(bench.Button("chkPROCHOT").isChecked());
  EXPECT_EQ(bench.Dialogs.Shown.size(), 1U);
}

TEST(ControlPage, OnTheSmbusBoardControlsAreDisabled) {
  ControlBench bench(TestBench::Medium::Smbus);
  for (const char* name : {"chkSensor1", "chkHeater2", "cmdSwitchAccess"}) {
    EXPECT_FALSE(bench.Button(name).isEnabled()) << name;
    EXPECT_FALSE(bench.Button(name).toolTip().isEmpty()) << name;
  }
  EXPECT_TRUE(bench.Button("chkPROCHOT").isEnabled());
}

}  // namespace
}  // namespace krx
