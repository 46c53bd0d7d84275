// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/startup.h"

#include <gtest/gtest.h>

#include "console/visualbench.h"

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
}

TEST(StartUp, BringsTheBoardInLineByteByByte) {
  struct Row {
    bool VidFollows;
    const char* Sync;
    const char* SyncAgain;
  };
  const Row rows[] = {
      {false, "R78 S96:8C R78 S90:10 R7D S96:8E", "R78 S96:8E R78 S90:52 R7D S96:8E"},
      {true, "R78 S96:88 R78 S90:10", "R78 S96:88 R78 S90:52"},
  };
  for (const Row& row : rows) {
    SimOptions options;
    options.VidFollowsU3 = row.VidFollows;
    VisualBench bench(TestBench::Medium::Board, options);
    for (const std::uint8_t pins : std::initializer_list<std::uint8_t>{0x73, 0x78, 0x7D}) bench.Poke(pins, 0);
    bench.Sim.Board().SetControlByte(0x30);
    EXPECT_TRUE(StartUp(bench.Work).empty());
    EXPECT_EQ(bench.BusTraffic(), std::string("ST C20 K ST C00 K R7B R40 R5C R5D R5E S96:00 R43 S96:08 R43 ") +
                                      row.Sync + " R73 S90:12 S90:52 S92:02 S92:42 " + row.SyncAgain);
  }
}

TEST(StartUp, AHeaterThatThisRunSwitchedOnGoesOffWithTheProgram) {
  TestBench bench;
  {
    Workbench work(bench.Bus);
    work.EvalBoard.SetHeater(0, true);
  }
  EXPECT_FALSE(bench.Sim.Board().HeaterOn(1));
}

TEST(StartUp, EveryStepGoesOnPastAnother) {
  VisualBench bench;
  bench.Poke(0x5E, 0xE2);
  bench.FailTransfer(1);
  bench.FailTransfer(5);
  EXPECT_EQ(StartUp(bench.Work),
            (StepProblems{"Heaters: Error: 57, Device I/O error", "Programmed pulses: Error: 57, Device I/O error"}));
  EXPECT_TRUE(bench.Work.Display.PwmManual[2]);
}

TEST(StartUp, ReReadRepeatsOnlyTheReads) {
  VisualBench bench;
  bench.Model.SelectChannel(11);
  bench.Poke(0x40, 0x10);
  bench.Poke(0x5C, 0xE2);
  bench.Traffic();
  EXPECT_TRUE(bench.Model.ReReadChip().empty());
  EXPECT_EQ(bench.BusTraffic(), "R7B R40 R5C R5D R5E");
  EXPECT_TRUE(bench.Model.State().SliderShown);
  EXPECT_EQ(bench.Model.State().Captions[11], "Current");
  // A marker placed in volts must not be written as a current.
  EXPECT_FALSE(bench.Model.State().Gauge.IsDraggable(Marker::Low));
}

}  // namespace
}  // namespace krx
