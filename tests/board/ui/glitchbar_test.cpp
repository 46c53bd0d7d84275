// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/ui/glitchbar.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>

#include "console/ui/owedturn.h"
#include "link/registeraccess.h"
#include "support/livebench.h"
#include "support/scripteddialogs.h"
#include "support/testbench.h"

namespace krx {
namespace {

struct GlitchBarBench : TestBench {
  explicit GlitchBarBench(int interval) : Bar(Test, Turns, Dialogs, interval) {
    QObject::connect(&Bar, &GlitchBar::Notice, [this](const QString& text) { Notices.push_back(text.toStdString()); });
  }
  std::string State() { return Bar.findChild<QLabel*>("lblGlitchTest")->text().trimmed().toStdString(); }

  void RunUntil(const std::function<bool()>& done) {
    for (int passes = 0; passes < 400 && !done(); ++passes) LiveBench::Run(5);
  }

  LogState Log;
  GlitchTest Test{Bus, Log};
  ChipTurns Turns{Bus};
  ScriptedDialogs Dialogs;
  std::vector<std::string> Notices;
  GlitchBar Bar;
};

TEST(GlitchBar, EachControlMakesItsTransfersAndStopSaysWhatItLeaves) {
  GlitchBarBench bench(300);
  bench.Bar.Start();
  EXPECT_EQ(bench.Traffic(), "R5E W5E:E2 R5D W5D:E2 W32:00 W31:00");
  EXPECT_FALSE(bench.Bar.isHidden());
  EXPECT_EQ(bench.State(), "Glitch test: step 0, duty 0 (0%), 2:00 left");
  bench.RunUntil([&] { return bench.Test.Step() == 1; });
  EXPECT_EQ(bench.Traffic(), "R32 W32:19 R31 W31:19") << "the timer runs";
  EXPECT_EQ(bench.State().substr(0, 36), "Glitch test: step 1, duty 25 (10%), ");
  WriteByte(bench.Bus, 0x32, 75);
  WriteByte(bench.Bus, 0x31, 75);
  bench.Traffic();
  bench.Bar.findChild<QAction*>("actStopGlitchTest")->trigger();
  EXPECT_TRUE(bench.Bar.isHidden());
  EXPECT_EQ(bench.Notices, std::vector<std::string>{"Glitch test stopped: PWM2 and PWM3 in manual control at 29 %"});
  LiveBench::Run(400);
  EXPECT_EQ(bench.Traffic(), "") << "the timer stands";
  bench.FailTransfer(6);
  bench.Bar.Start();
  EXPECT_EQ(bench.Dialogs.Shown.size(), 1U);
  EXPECT_TRUE(bench.Bar.isHidden());
  EXPECT_EQ(bench.Test.Leaves(), "PWM2 in manual control at an unknown duty, PWM3 in manual control at 0 %");
  WriteByte(bench.Bus, 0x5E, 0x62);
  EXPECT_EQ(bench.Test.Leaves(), "PWM2 in manual control at an unknown duty, PWM3 not in manual control");
}

TEST(GlitchBar, ATestThatEndsStopsItsTimerAndSaysSo) {
  GlitchBarBench bench(10);
  bench.Bar.Start();
  WriteByte(bench.Bus, 0x32, 240);
  WriteByte(bench.Bus, 0x31, 240);
  bench.RunUntil([&] { return !bench.Notices.empty(); });
  EXPECT_EQ(bench.Notices, std::vector<std::string>{"Glitch test ended: PWM2 and PWM3 in manual control at 100 %"});
  EXPECT_TRUE(bench.Bar.isHidden());
}

TEST(OwedTurn, WritesWhatIsOverdueOnceTheBusWorksAgainAndNeverWhileAHandlerHoldsTheChip) {
  LiveBench bench;
  OwedWrites owed(bench.Bus);
  int putBack = 0;
  const OwedTurn turn(
      owed, bench.Turns, [&](bool setAnew) { putBack += setAnew ? 100 : 1; }, 5);
  const auto ticket = owed.EnterRegister(0x5C, 0x62, 0xE0);
  owed.Change(ticket, 0xE2);
  Fault fault;
  fault.Onward = true;
  bench.Sim.AddFault(fault);
  EXPECT_FALSE(owed.PutBack({ticket}));
  bench.Sim.ClearFaults();
  LiveBench::Run(50);
  EXPECT_EQ(bench.Sim.SmbusChip().Peek(0x5C), 0xE2) << "nothing has shown yet that the bus works";
  {
    const ChipTurns::Hold handler(bench.Turns);
    ReadByte(bench.Bus, 0x26);
    LiveBench::Run(50);
    EXPECT_EQ(bench.Sim.SmbusChip().Peek(0x5C), 0xE2);
  }
  for (int passes = 0; passes < 100 && putBack == 0; ++passes) LiveBench::Run(20);
  EXPECT_EQ(bench.Sim.SmbusChip().Peek(0x5C), 0x62);
  LiveBench::Run(50);
  EXPECT_EQ(putBack, 1);
}

}  // namespace
}  // namespace krx
