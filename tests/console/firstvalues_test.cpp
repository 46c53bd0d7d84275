// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/firstvalues.h"

#include <gtest/gtest.h>

#include <limits>

#include "console/visualbench.h"
#include "link/commserror.h"
#include "link/registeraccess.h"

namespace krx {
namespace {

constexpr std::size_t remote1 = 1, fan2 = 4, fan3 = 5, twelveVolts = 8;

/// As many ticks as the slowest group needs.
void ReadAll(VisualBench& bench) {
  for (int tick = 0; tick < 5; ++tick) bench.Work.Cycle.Tick();
}

bool Charted(const VisualBench& bench, std::size_t trace) {
  return bench.Work.History.LastUpTo(trace, std::numeric_limits<std::int64_t>::max()).has_value();
}

TEST(FirstValues, BeginWithTheFirstByteUnlikeTheResetValueOrASecondAfterMonitoringWasSeenOn) {
  VisualBench bench;
  const FirstValues& first = bench.Work.First;
  const SeenRanges& ranges = bench.Work.Ranges;
  const auto start = [&](int byte) { WriteByte(bench.Bus, 0x40, byte); };

  /// The fan stands still, and time passes.
  const auto standing = [&](double seconds) {
    bench.Advance(seconds);
    bench.Poke(0x2C, 0xFF), bench.Poke(0x2D, 0xFF);
    ReadAll(bench);
    return first.Measured(fan3);
  };

  EXPECT_EQ(first.Monitoring(), std::nullopt);
  ReadAll(bench);
  EXPECT_FALSE(standing(2)) << "nobody has seen the chip measure";
  for (std::size_t trace = 0; trace < thermTrace; ++trace) EXPECT_FALSE(Charted(bench, trace)) << trace;

  bench.Poke(0x25, 0x20);
  bench.Poke(0x2B, 0x08);  // a count of 0x08FF
  bench.Poke(0x24, 0xC0);
  bench.Poke(0x21, 0x01);
  ReadAll(bench);
  for (const std::size_t channel : {remote1, fan2, twelveVolts}) EXPECT_TRUE(first.Measured(channel)) << channel;
  EXPECT_FLOAT_EQ(static_cast<float>(ranges.Of(remote1).Minimum), 32);
  EXPECT_TRUE(Charted(bench, channels[fan2].Trace));
  EXPECT_FALSE(first.Measured(fan3));
  EXPECT_FALSE(Charted(bench, powerTrace)) << "one of its two voltages is missing";
  bench.Poke(0x20, 0x01);
  ReadAll(bench);
  EXPECT_TRUE(Charted(bench, powerTrace));

  start(1);
  EXPECT_FALSE(standing(0.9));
  start(0);
  start(1);                     // the second begins anew
  FirstValues late(bench.Bus);  // made when the chip was seen already
  EXPECT_FALSE(standing(0.2));
  EXPECT_TRUE(standing(0.9)) << "it stands still";
  EXPECT_TRUE(late.Took(fan3));
  EXPECT_EQ(ranges.Of(fan3).Maximum, 0);
}

TEST(FirstValues, AChipThatDoesNotMonitorMeasuresNothing) {
  VisualBench bench;
  WriteByte(bench.Bus, 0x40, 0x00);
  bench.Poke(0x25, 0x20);
  ReadAll(bench);
  EXPECT_EQ(bench.Work.First.Monitoring(), false);
  EXPECT_TRUE(bench.Work.First.Measured(remote1)) << "its last value is shown";
  EXPECT_FALSE(bench.Work.Ranges.Of(remote1).Any());
  EXPECT_FALSE(Charted(bench, channels[remote1].Trace));
  bench.FailTransfer(1);
  EXPECT_THROW(WriteByte(bench.Bus, 0x40, 0x01), CommsError);
  EXPECT_EQ(bench.Work.First.Monitoring(), std::nullopt);
}

TEST(SeenRanges, MinimumMaximumAndMeanUntilTheReset) {
  SeenRanges ranges;
  for (const double value : {-4.0, -8.0, 3.0}) ranges.Add(2, value);
  EXPECT_EQ(ranges.Of(2).Minimum, -8);
  EXPECT_EQ(ranges.Of(2).Maximum, 3);
  EXPECT_DOUBLE_EQ(ranges.Of(2).Mean, -3);
  EXPECT_FALSE(ranges.Of(1).Any());
  ranges.Reset(2);
  EXPECT_FALSE(ranges.Of(2).Any());
  ranges.Add(2, 5);
  EXPECT_EQ(ranges.Of(2).Minimum, 5);
}

}  // namespace
}  // namespace krx
