// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/startup.h"

#include <gtest/gtest.h>

#include "console/visualbench.h"
#include "link/commserror.h"
#include "simulator/simfaults.h"
#include "simulator/simwords.h"

namespace krx {
namespace {

TEST(StartUp, ReadsTheChipInOrder) {
  VisualBench bench(TestBench::Medium::Smbus);
  bench.Poke(0x7B, 0b11'10'01'00);
  bench.Poke(0x40, 0x11);
  bench.Poke(0x5C, 0x62);
  bench.Poke(0x5D, 0xE2);
  EXPECT_TRUE(StartUp(bench.Work).empty());
  EXPECT_EQ(bench.Traffic(), "R7B R40 R5C R5D R5E R43 R43 R78 R78 R7D R73 R78 R78 R7D");
  EXPECT_EQ(bench.Work.Fans.ProgrammedPulses, (std::array<float, 4>{1, 2, 3, 4}));
  EXPECT_TRUE(bench.Work.Power.PowerMode);
  EXPECT_EQ(bench.Work.Display.BehaviourCode[0], 3);
  EXPECT_EQ(bench.Work.Display.PwmManual, (std::array<bool, 3>{false, true, false}));
  EXPECT_EQ(bench.Work.Log.ColumnTitles[9], "Fan4 RPM");
  EXPECT_EQ(bench.Work.Log.ColumnTitles[10], "");
  for (const std::string begun : {"", "ST C00 K", "ST! ST!"}) {
    VisualBench ending(TestBench::Medium::Board);
    if (begun == "ST! ST!") ending.Sim.AddFault(*ParseFault("fail=1+,op=status"));
    const auto all = [&] { return ending.Sim.Trace().Text(TraceFilter::Bus); };
    ending.Bus.EndAsked = [&] { return all() == begun; };
    EXPECT_TRUE(StartUp(ending.Work).empty());
    EXPECT_EQ(all(), begun) << "no step, no heater and no second try begins any more";
  }
}

TEST(StartUp, BringsTheBoardInLineByteByByte) {
  const struct {
    bool VidFollows;
    const char *Sync, *SyncAgain;
  } rows[] = {
      {false, "R78 S96:8C R78 S90:10 R7D S96:8E", "R78 S96:8E R78 S90:52 R7D S96:8E"},
      {true, "R78 S96:88 R78 S90:10", "R78 S96:88 R78 S90:52"},
  };
  for (const auto& row : rows) {
    SimOptions options;
    options.VidFollowsU3 = row.VidFollows;
    VisualBench bench(TestBench::Medium::Board, options);
    for (const int pins : {0x73, 0x78, 0x7D}) bench.Poke(pins, 0);
    bench.Sim.Board().SetControlByte(0x30);
    EXPECT_TRUE(StartUp(bench.Work).empty());
    EXPECT_EQ(bench.BusTraffic(), std::string("ST C20 K ST C00 K R7B R40 R5C R5D R5E S96:00 R43 S96:08 R43 ") +
                                      row.Sync + " R73 S90:12 S90:52 S92:02 S92:42 " + row.SyncAgain);
  }
}

TEST(StartUp, AnySingleFailureIsCountedAndMadeGoodAtOnce) {
  for (const auto medium : {TestBench::Medium::Board, TestBench::Medium::Smbus}) {
    for (int nth = 1;; ++nth) {
      SCOPED_TRACE(nth);
      VisualBench bench(medium);
      bench.Poke(0x5E, 0xE2);
      int faults = 0;
      bench.Work.Start.Faulted = [&](const std::string&, const CommsError&) { ++faults; };
      bench.FailTransfer(nth);
      EXPECT_EQ(StartUp(bench.Work), StepProblems{});
      EXPECT_EQ(bench.Work.Start.Owed, std::set<std::string>{});
      EXPECT_EQ(faults, bench.Sim.FaultsFired());
      EXPECT_TRUE(bench.Work.Display.PwmManual[2]);
      EXPECT_TRUE(bench.Work.Fans.PulsesKnown);
      if (faults == 0) break;
    }
  }
}

TEST(StartUp, WhatFailsTwiceIsOwedUntilTheCycleStarts) {
  const struct {
    const char* Fault;
    const char* Problem;
    const char* Retried;  ///< with the next start of the cycle, behind the transfers of the click
  } rows[] = {
      {"fail=1+,reg=7B", "Programmed pulses: Error: 57, Device I/O error", "R7B"},
      {"fail=1+,reg=5D", "PWM2 behaviour: Error: 57, Device I/O error", "R5D"},
      {"fail=1+,reg=43", "VID drive: Error: 57, Device I/O error",
       "S96:80 R43 S96:88 R43 R78 S96:8C R78 S90:52 R7D S96:8E"},
      {"fail=1+,op=control", "Heaters: Error: 57, Device I/O error", "ST C00 K ST C00 K"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Fault);
    VisualBench bench;
    const bool undone = row.Fault == std::string("fail=1+,reg=5D");  // the cycle is started without a click
    for (const int pins : {0x73, 0x78, 0x7D}) bench.Poke(pins, 0);
    bench.Sim.AddFault(*ParseFault(row.Fault));
    EXPECT_EQ(StartUp(bench.Work), StepProblems{row.Problem});
    bench.Sim.ClearFaults();
    bench.BusTraffic();
    bench.Model.Tick();
    EXPECT_EQ(bench.BusTraffic().find(row.Retried), std::string::npos) << "never inside a tick";
    if (undone) {
      bench.Model.ConfigurationWritten(0x01);
    } else {
      bench.Model.SelectChannel(0);
    }
    EXPECT_EQ(bench.BusTraffic(), std::string(undone ? "" : "R50 R51 ") + row.Retried);
    bench.Model.SelectChannel(0);
    EXPECT_EQ(bench.BusTraffic(), "R50 R51") << "paid";
  }
  VisualBench bench;
  bench.FailTransfer(1, true);
  StartUp(bench.Work);
  bench.Sim.ClearFaults();
  bench.Work.EvalBoard.SetHeater(1, true);
  bench.Model.ReReadChip();
  EXPECT_TRUE(bench.Sim.Board().HeaterOn(2)) << "a late try does not switch off what was switched on since";
}

TEST(StartUp, AFansLimitCannotBeMovedBeforeThePulsesAreKnown) {
  VisualBench bench;
  bench.Work.Fans.PulsesKnown = false;
  for (const auto& [reg, byte] : {std::pair{0x7B, 0x55}, {0x54, 0x94}, {0x55, 0x11}}) bench.Poke(reg, byte);
  bench.Sim.AddFault(*ParseFault("fail=1+,reg=7B"));
  StartUp(bench.Work);
  bench.Traffic();
  bench.Model.SelectChannel(3);
  EXPECT_EQ(bench.Traffic(), "R54 R55 R30 R7B!");
  bench.Model.MarkerMoving(Marker::Low, 3000);
  bench.Model.TypeLimit(Marker::Low, "3000");
  bench.Model.StepLimit(Marker::Low, 1);
  EXPECT_EQ(bench.Traffic(), "");
  EXPECT_EQ(bench.Model.State().Readout, "– RPM");
  bench.Sim.ClearFaults();
  bench.Work.Fans.TakePulses(0x55);  // the fan dialog
  bench.Model.Relabel();
  EXPECT_EQ(bench.Model.State().Gauge.Low(), 2400) << "from the bytes read before";
  EXPECT_TRUE(bench.Model.ReReadChip().empty());
  EXPECT_EQ(bench.Traffic(), "R7B R40 R5C R5D R5E");
  bench.Model.TypeLimit(Marker::Low, "3000");
  EXPECT_EQ(bench.Traffic(), "W54:10 W55:0E");
}

}  // namespace
}  // namespace krx
