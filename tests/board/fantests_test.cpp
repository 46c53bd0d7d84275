// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/fantests.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "link/registeraccess.h"
#include "support/boardbench.h"

namespace krx {
namespace {

using enum GlitchTest::TickResult;

struct GlitchBench : TestBench {
  GlitchBench() {
    Test.StopLog = [this] { ++LogsStopped; };
  }
  GlitchTest::TickResult TickAt(int pwm3) {
    WriteByte(Bus, 0x32, pwm3);
    Traffic();
    return Test.Tick();
  }
  LogState Log;
  GlitchTest Test{Bus, Log};
  int LogsStopped = 0;
};

TEST(FanTestSetup, TakesTwoOutputsOverAndSetsTwoBits) {
  const char* const traffic = "R5C W5C:E2 R5D W5D:FA R78 W78:31";
  for (int nth = 1; nth <= 6; ++nth) {
    TestBench bench;
    bench.Poke("5C:62 5D:1A 78:01");
    EXPECT_EQ(UpToFailure(bench, nth, [&] { FanTestSetup(bench.Bus); }), FirstFailing(traffic, nth));
  }
}

TEST(GlitchTest, RampsBothOutputsToFullDutyAndEndsOnTheTwelfthTick) {
  GlitchBench bench;
  bench.Poke("5E:62 5D:1A");
  EXPECT_EQ(bench.Test.Tick(), Idle);
  EXPECT_EQ(bench.Test.RemainingSeconds(), 0);
  bench.Test.Start();
  EXPECT_EQ(bench.Traffic(), "R5E W5E:E2 R5D W5D:FA W32:00 W31:00");
  EXPECT_NEAR(bench.Test.RemainingSeconds(), 120, 0.1);
  bench.Log.LogFileName = "log.txt";
  for (int tick = 1; tick <= 11; ++tick) {
    bench.Advance(GlitchTest::intervalSeconds);
    EXPECT_EQ(bench.Test.Tick(), Stepped);
    const int duty = tick == 11 ? 255 : 25 * tick;
    EXPECT_EQ(bench.Traffic(), fmt::format("R32 W32:{0:02X} R31 W31:{0:02X}", duty));
    EXPECT_EQ(bench.Test.Step(), tick);
    EXPECT_EQ(bench.Test.Duty(), duty);
    EXPECT_EQ(bench.Test.Finished(), tick == 11);
    EXPECT_NEAR(bench.Test.RemainingSeconds(), 120 - 10 * tick, 0.1);
  }
  bench.Advance(4);
  EXPECT_NEAR(bench.Test.RemainingSeconds(), 6, 0.1);
  EXPECT_EQ(bench.Test.Tick(), Ended);
  EXPECT_EQ(bench.Traffic(), "");
  EXPECT_FALSE(bench.Test.Running() || bench.Test.Finished());
  EXPECT_EQ(bench.LogsStopped, 1);
}

TEST(GlitchTest, OnlyPwm3EndsTheTestAndALogIsStoppedOnlyIfOneIsOpen) {
  GlitchBench bench;
  bench.Test.Start();
  WriteByte(bench.Bus, 0x31, 250);
  EXPECT_EQ(bench.TickAt(230), Stepped);
  EXPECT_EQ(bench.Traffic(), "R32 W32:FF R31 W31:FF");
  EXPECT_FALSE(bench.Test.Finished()) << "255 is reached, but nothing was capped on PWM3";
  bench.TickAt(240);
  EXPECT_EQ(bench.Traffic(), "R32 W32:FF R31 W31:FF");
  EXPECT_EQ(bench.Test.Tick(), Ended);
  EXPECT_EQ(bench.LogsStopped, 0);
}

TEST(GlitchTest, PressingAgainRestartsTheRampButNeitherTheIntervalNorASetFlag) {
  GlitchBench bench;
  bench.Test.Start();
  bench.Test.Tick();
  bench.Advance(7);
  bench.Test.Start();
  EXPECT_EQ(bench.Test.Step(), 0);
  EXPECT_NEAR(bench.Test.RemainingSeconds(), 113, 0.1) << "three seconds of the interval are left";
  bench.TickAt(240);
  bench.Test.Start();
  EXPECT_EQ(bench.Peek(0x32), 0);
  EXPECT_EQ(bench.Test.Tick(), Ended);

  bench.Test.Start();
  bench.TickAt(240);
  bench.Test.Stop();
  bench.Test.Start();
  EXPECT_EQ(bench.Test.Tick(), Stepped) << "a stopped test leaves no flag behind";
}

TEST(GlitchTest, AFailedTransferLeavesTheTestAsItIsAndTheNextTickTriesAgain) {
  for (int nth = 1; nth <= 6; ++nth) {
    GlitchBench bench;
    UpToFailure(bench, nth, [&] { bench.Test.Start(); });
    EXPECT_FALSE(bench.Test.Running());
    if (nth > 4) continue;
    bench.Test.Start();
    WriteByte(bench.Bus, 0x32, 240);
    EXPECT_EQ(UpToFailure(bench, nth, [&] { bench.Test.Tick(); }), FirstFailing("R32 W32:FF R31 W31:19", nth));
    EXPECT_EQ(bench.Test.Tick(), Stepped);
    EXPECT_EQ(bench.Peek(0x31), 25);
    EXPECT_EQ(bench.Test.Tick(), Ended);
  }
}

}  // namespace
}  // namespace krx
