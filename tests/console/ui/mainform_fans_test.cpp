// SPDX-License-Identifier: GPL-3.0-or-later
// What the main window lends to the windows and tests of the fans.
#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QPushButton>

#include "console/ui/mainform.h"
#include "console/workbench.h"
#include "link/busjournal.h"
#include "support/scripteddialogs.h"
#include "support/testbench.h"

namespace krx {
namespace {

struct FanWindows : TestBench {
  FanWindows() {
    Form.Start();
    BusTraffic();
  }
  void Press(const char* name) { Form.findChild<QPushButton*>(name)->click(); }
  std::string Text(const char* name) { return Form.findChild<QLabel*>(name)->text().toStdString(); }

  ChipTurns Turns{Bus};
  ScriptedDialogs Dialogs;
  BusJournal Journal{Time};
  Workbench Work{Bus};
  MainForm Form{Work, Turns, Dialogs, Journal, {"Simulated board"}};
};

TEST(MainForm, AsksBeforeADetectionWithoutMonitoringAndTriesAgainToPutItsOutputBack) {
  FanWindows windows;
  windows.Press("cmdConfigureFans");
  windows.BusTraffic();
  windows.Press("cmdAutoDetect_1");
  EXPECT_EQ(windows.BusTraffic(), "");
  EXPECT_EQ(windows.Dialogs.Shown.back(), "ask|Temperatures are not measured: monitoring is off|Continue");

  Fault fault;
  fault.Nth = 2;
  fault.Onward = true;
  fault.Op = Operation::WriteByteData;
  fault.Register = 0x5D;
  windows.Sim.AddFault(fault);
  windows.Dialogs.Yes = true;
  windows.Dialogs.WhileOpen = [&] {
    if (windows.Dialogs.Shown.size() == 3) windows.Sim.ClearFaults();
  };
  windows.Press("cmdAutoDetect_1");
  EXPECT_EQ(windows.BusTraffic(), "R6B R26 R6A R25 R6C R27 R5D W5D:E2 R2A R2B W5D:62! W5D:62! W5D:62! W5D:62");
  EXPECT_EQ(windows.Dialogs.Shown.size(), 3U);
  EXPECT_TRUE(windows.Dialogs.Shown.back().ends_with("; 5Dh should hold 62h.|Try again"));
  EXPECT_EQ(windows.Text("lblFaults"), "Link faults: 1, last: Error: 57, Device I/O error");
}

TEST(MainForm, SaysInTheStatusBarWhatAStoppedGlitchTestLeaves) {
  FanWindows windows;
  windows.Press("cmdGlitchTest");
  EXPECT_EQ(windows.BusTraffic(), "R5E W5E:E2 R5D W5D:E2 W32:00 W31:00");
  windows.Form.findChild<QAction*>("actStopGlitchTest")->trigger();
  EXPECT_NE(windows.Text("lblNotice").find("PWM2 and PWM3 in manual control at 0 %"), std::string::npos);
}

}  // namespace
}  // namespace krx
