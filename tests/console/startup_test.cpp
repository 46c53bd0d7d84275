// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/startup.h"

#include <gtest/gtest.h>

#include "link/commserror.h"
#include "simulator/simfaults.h"
#include "simulator/simwords.h"
#include "support/visualbench.h"

namespace krx {
namespace {

TEST(StartUp, ReadsTheChipInOrderAndSynchronisesTheBoardByteByByte) {
  const std::string board = "ST C20 K ST C00 K R7B R40 R5C R5D R5E S96:00 R43 S96:08 R43 ";
  const std::string routing = " R73 S90:12 S90:52 S92:02 S92:42 ";
  const struct {
    Medium On;
    bool VidFollows;
    std::string Traffic;
  } rows[] = {
      {Medium::Smbus, false, "R7B R40 R5C R5D R5E R43 R43 R78 R78 R7D R73 R78 R78 R7D"},
      {Medium::Board, true, board + "R78 S96:88 R78 S90:10" + routing + "R78 S96:88 R78 S90:52"},
      {Medium::Board, false, board + "R78 S96:8C R78 S90:10 R7D S96:8E" + routing + "R78 S96:8E R78 S90:52 R7D S96:8E"},
  };
  for (const auto& row : rows) {
    SimOptions options;
    options.VidFollowsU3 = row.VidFollows;
    VisualBench bench(row.On, options);
    bench.Poke({{0x7B, 0b11'10'01'00}, {0x40, 0x11}, {0x5C, 0x62}, {0x5D, 0xE2}, {0x73, 0}, {0x78, 0}, {0x7D, 0}});
    bench.Sim.Board().SetControlByte(0x30);
    EXPECT_TRUE(StartUp(bench.Work).empty());
    EXPECT_EQ(bench.BusTraffic(), row.Traffic);
    EXPECT_EQ(bench.Work.Fans.ProgrammedPulses, (std::array<float, 4>{1, 2, 3, 4}));
    EXPECT_TRUE(bench.Work.Power.PowerMode);
    EXPECT_EQ(bench.Work.Display.BehaviourCode[0], 3);
    EXPECT_EQ(bench.Work.Display.PwmManual, (std::array<bool, 3>{false, true, false}));
    EXPECT_EQ(bench.Work.Log.ColumnTitles[9] + bench.Work.Log.ColumnTitles[10], "Fan4 RPM");
  }
  for (const std::string begun : {"", "ST C00 K", "ST! ST!"}) {
    VisualBench ending;
    if (begun == "ST! ST!") ending.Sim.AddFault(*ParseFault("fail=1+,op=status"));
    const auto all = [&] { return ending.Sim.Trace().Text(TraceFilter::Bus); };
    ending.Bus.EndAsked = [&] { return all() == begun; };
    EXPECT_TRUE(StartUp(ending.Work).empty());
    EXPECT_EQ(all(), begun) << "no further step, heater or second try begins";
  }
}

TEST(StartUp, AnySingleFailureIsCountedAndRetriedAtOnce) {
  for (const auto medium : {Medium::Board, Medium::Smbus}) {
    for (int nth = 1, faults = 1; faults > 0; ++nth) {
      SCOPED_TRACE(nth);
      VisualBench bench(medium);
      bench.Poke(0x5E, 0xE2);
      faults = 0;
      bench.Work.Start.Faulted = [&](const std::string&, const CommsError&) { ++faults; };
      bench.FailTransfer(nth);
      EXPECT_EQ(StartUp(bench.Work), StepProblems{});
      EXPECT_EQ(bench.Work.Start.Owed, std::set<std::string>{});
      EXPECT_EQ(faults, bench.Sim.FaultsFired());
      EXPECT_TRUE(bench.Work.Display.PwmManual[2] && bench.Work.Fans.PulsesKnown);
    }
  }
}

TEST(StartUp, WhatFailsTwiceStaysPendingUntilTheCycleStarts) {
  const struct {
    const char *Fails, *Step;
    const char* Retried;  ///< with the next start of the cycle, after the transfers of the click
    bool Click = true;
  } rows[] = {
      {"reg=7B", "Programmed pulses", "R7B"},
      {"reg=5D", "PWM2 behaviour", "R5D", false},
      {"reg=43", "VID drive", "S96:80 R43 S96:88 R43 R78 S96:8C R78 S90:52 R7D S96:8E"},
      {"op=control", "Heaters", "ST C00 K ST C00 K"},
  };
  for (const auto& row : rows) {
    VisualBench bench;
    bench.Poke({{0x73, 0}, {0x78, 0}, {0x7D, 0}});
    bench.Sim.AddFault(*ParseFault(std::string("fail=1+,") + row.Fails));
    EXPECT_EQ(StartUp(bench.Work), StepProblems{row.Step + std::string(": Error: 57, Device I/O error")});
    bench.Sim.ClearFaults();
    bench.BusTraffic();
    bench.Model.Tick();
    EXPECT_EQ(bench.BusTraffic().find(row.Retried), std::string::npos) << row.Step << " never inside a tick";
    row.Click ? bench.Model.SelectChannel(0) : bench.Model.ConfigurationWritten(0x01);
    EXPECT_EQ(bench.BusTraffic(), std::string(row.Click ? "R50 R51 " : "") + row.Retried);
    bench.Model.SelectChannel(0);
    EXPECT_EQ(bench.BusTraffic(), "R50 R51") << row.Step << " is done";
  }
  VisualBench bench;
  bench.FailTransfer(1, true);
  StartUp(bench.Work);
  bench.Sim.ClearFaults();
  bench.Work.EvalBoard.SetHeater(1, true);
  bench.ReReadChip();
  EXPECT_TRUE(bench.Sim.Board().HeaterOn(2)) << "a late retry does not switch off a heater switched on since";
}

TEST(StartUp, AFansLimitCannotBeMovedBeforeThePulsesAreKnown) {
  VisualBench bench;
  bench.Work.Fans.PulsesKnown = false;
  bench.Poke({{0x7B, 0x55}, {0x54, 0x94}, {0x55, 0x11}});
  bench.Sim.AddFault(*ParseFault("fail=1+,reg=7B"));
  StartUp(bench.Work);
  bench.Traffic();
  bench.Model.SelectChannel(3);
  EXPECT_EQ(bench.Traffic(), "R54 R55 R30 R7B!");
  bench.Model.MarkerMoving(Marker::Low, 3000);
  bench.Model.TypeLimit(Marker::Low, "3000");
  bench.Model.StepLimit(Marker::Low, 1);
  EXPECT_EQ(bench.Traffic(), "");
  for (int tick = 0; tick < 4; ++tick) bench.Work.Cycle.Tick();
  bench.Model.ShowReadings();
  EXPECT_EQ(bench.Model.State().Readout, "– RPM");
  EXPECT_FALSE(bench.Work.History.LastUpTo(3, std::numeric_limits<std::int64_t>::max())) << "no point in the chart";
  bench.Sim.ClearFaults();
  bench.Work.Fans.TakePulses(0x55);  // the fan dialog
  bench.Model.Relabel();
  EXPECT_EQ(bench.Model.State().Gauge.Low(), 2400) << "from the bytes read before";
  bench.Traffic();
  EXPECT_TRUE(bench.ReReadChip().empty());
  EXPECT_EQ(bench.Traffic(), "R7B R40 R5C R5D R5E");
  bench.Model.TypeLimit(Marker::Low, "3000");
  EXPECT_EQ(bench.Traffic(), "W54:10 W55:0E");
}

}  // namespace
}  // namespace krx
