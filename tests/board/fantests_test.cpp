// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/fantests.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "link/registeraccess.h"
#include "support/boardbench.h"

namespace krx {
namespace {

using TickResult = GlitchTest::TickResult;

struct GlitchBench : TestBench {
  LogState Log;
  GlitchTest Test{Bus, Log};
  int LogsStopped = 0;
  GlitchBench() {
    Test.StopLog = [this] { ++LogsStopped; };
  }
  TickResult TickAfterInterval() {
    Advance(GlitchTest::intervalSeconds);
    return Test.Tick();
  }
};

TEST(FanTestSetup, TakesTwoOutputsOverAndSetsTwoBits) {
  TestBench bench;
  bench.Poke(0x5C, 0x62);
  bench.Poke(0x5D, 0x1A);
  bench.Poke(0x78, 0x01);
  const char* const traffic = "R5C W5C:E2 R5D W5D:FA R78 W78:31";
  FanTestSetup(bench.Bus);
  EXPECT_EQ(bench.Traffic(), traffic);
  for (int nth = 1; nth <= 6; ++nth) {
    bench.Poke(0x5C, 0x62);
    bench.Poke(0x5D, 0x1A);
    bench.Poke(0x78, 0x01);
    EXPECT_EQ(UpToFailure(bench, nth, [&] { FanTestSetup(bench.Bus); }), FirstFailing(traffic, nth));
  }
}

TEST(GlitchTest, RampsBothOutputsToFullDutyAndEndsOnTheTwelfthTick) {
  GlitchBench bench;
  bench.Poke(0x5E, 0x62);
  bench.Poke(0x5D, 0x1A);
  EXPECT_EQ(bench.Test.Tick(), TickResult::Idle);
  bench.Test.Start();
  EXPECT_EQ(bench.Traffic(), "R5E W5E:E2 R5D W5D:FA W32:00 W31:00");
  EXPECT_NEAR(bench.Test.RemainingSeconds(), 120, 0.1);
  bench.Log.LogFileName = "log.txt";
  for (int tick = 1; tick <= 11; ++tick) {
    EXPECT_EQ(bench.TickAfterInterval(), TickResult::Stepped);
    const int duty = std::min(25 * tick, 255);
    EXPECT_EQ(bench.Traffic(), fmt::format("R32 W32:{0:02X} R31 W31:{0:02X}", duty));
    EXPECT_EQ(bench.Test.Step(), tick);
    EXPECT_EQ(bench.Test.Duty(), duty);
    EXPECT_EQ(bench.Test.Finished(), tick == 11);
    EXPECT_NEAR(bench.Test.RemainingSeconds(), 120 - 10 * tick, 0.1);
  }
  bench.Advance(4);
  EXPECT_NEAR(bench.Test.RemainingSeconds(), 6, 0.1);
  EXPECT_EQ(bench.Test.Tick(), TickResult::Ended);
  EXPECT_EQ(bench.Traffic(), "");
  EXPECT_FALSE(bench.Test.Running());
  EXPECT_FALSE(bench.Test.Finished());
  EXPECT_EQ(bench.LogsStopped, 1);
}

TEST(GlitchTest, OnlyPwm3EndsTheTestAndALogIsStoppedOnlyIfOneIsOpen) {
  GlitchBench bench;
  bench.Test.Start();
  WriteByte(bench.Bus, 0x32, 230);
  WriteByte(bench.Bus, 0x31, 250);
  bench.Traffic();
  EXPECT_EQ(bench.Test.Tick(), TickResult::Stepped);
  EXPECT_EQ(bench.Traffic(), "R32 W32:FF R31 W31:FF");
  EXPECT_FALSE(bench.Test.Finished()) << "255 is reached, but nothing was capped on PWM3";
  WriteByte(bench.Bus, 0x32, 240);
  bench.Test.Tick();
  EXPECT_EQ(bench.Traffic(), "W32:F0 R32 W32:FF R31 W31:FF");
  EXPECT_EQ(bench.Test.Tick(), TickResult::Ended);
  EXPECT_EQ(bench.LogsStopped, 0);
}

TEST(GlitchTest, PressingAgainRestartsTheRampButNeitherTheIntervalNorASetFlag) {
  GlitchBench bench;
  bench.Test.Start();
  bench.TickAfterInterval();
  bench.Advance(7);
  bench.Test.Start();
  EXPECT_EQ(bench.Test.Step(), 0);
  EXPECT_NEAR(bench.Test.RemainingSeconds(), 113, 0.1) << "three seconds of the interval are left";
  WriteByte(bench.Bus, 0x32, 240);
  bench.Test.Tick();
  bench.Test.Start();
  EXPECT_EQ(bench.Peek(0x32), 0);
  EXPECT_EQ(bench.Test.Tick(), TickResult::Ended);

  bench.Test.Start();
  WriteByte(bench.Bus, 0x32, 240);
  bench.Test.Tick();
  bench.Test.Stop();
  bench.Test.Start();
  EXPECT_EQ(bench.Test.Tick(), TickResult::Stepped) << "a stopped test leaves no flag behind";
}

TEST(GlitchTest, AFailedTransferLeavesTheTestAsItIsAndTheNextTickTriesAgain) {
  for (int nth = 1; nth <= 6; ++nth) {
    GlitchBench bench;
    UpToFailure(bench, nth, [&] { bench.Test.Start(); });
    EXPECT_FALSE(bench.Test.Running());
  }
  for (int nth = 1; nth <= 4; ++nth) {
    GlitchBench bench;
    bench.Test.Start();
    WriteByte(bench.Bus, 0x32, 240);
    const std::string traffic = "R32 W32:FF R31 W31:19";
    EXPECT_EQ(UpToFailure(bench, nth, [&] { bench.Test.Tick(); }), FirstFailing(traffic, nth));
    EXPECT_TRUE(bench.Test.Running());
    EXPECT_EQ(bench.Test.Tick(), TickResult::Stepped);
    EXPECT_EQ(bench.Peek(0x31), 25);
    EXPECT_EQ(bench.Test.Tick(), TickResult::Ended);
  }
}

}  // namespace
}  // namespace krx
