// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/readingcycle.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "link/commserror.h"
#include "link/registeraccess.h"
#include "simulator/simfaults.h"
#include "simulator/simwords.h"
#include "support/visualbench.h"

namespace krx {
namespace {

constexpr std::int64_t anyTime = std::numeric_limits<std::int64_t>::max();

TEST(ReadingCycle, ReadsOneMemberOfEachGroupPerTickInOrderAndCountersWrapWithoutAJump) {
  for (const auto medium : {Medium::Board, Medium::Smbus}) {
    VisualBench bench(medium);
    ReadingCycle& cycle = bench.Work.Cycle;
    for (const char* expected :
         {"R77 R25 R2A R2B R77 R24 R41 R42 R31 R6D R67 R34", "R77 R27 R2C R2D R76 R21 R41 R42 R32 R6E R69 R35",
          "R77 R26 R2E R2F R76 R22 R41 R42 R30 R6D R68 R33", "R77 R25 R28 R29 R76 R20 R41 R42 R31 R6D R67 R34",
          "R77 R27 R2A R2B R76 R23 R41 R42 R32 R6E R69 R35"}) {
      cycle.Tick();
      EXPECT_EQ(bench.Traffic(), expected);
    }
    for (int tick = 6; tick <= 100; ++tick) cycle.Tick();
    const ReadingCounters& counters = cycle.Counters;
    EXPECT_EQ(std::tie(counters.Temperature, counters.Tach, counters.Voltage), std::tuple(1, 0, 0));
  }
}

TEST(ReadingCycle, ConvertsAndStoresReadings) {
  VisualBench bench;
  Workbench& work = bench.Work;
  work.Fans.ProgrammedPulses = {1, 4, 1, 1};
  work.Fans.ActualPulses = {1, 3, 1, 1};
  bench.Poke({{0x25, 0xF6}, {0x77, 0x07}, {0x2A, 0x73}, {0x2B, 0x2E}, {0x24, 0xC0}});
  bench.Poke({{0x31, 0x80}, {0x6D, 0x54}, {0x67, 0xFE}, {0x34, 0x3C}});
  work.Cycle.Tick();
  std::string read = work.Measured.DutyTexts[1];
  for (const std::size_t channel : {1, 4, 8}) read += "|" + ReadoutText(channel, work.Measured, work.Power);
  EXPECT_EQ(read, "50%|-10.25C|605 RPM|12.028 V") << "11891 counts times 4/3 would be 606";
  EXPECT_EQ(work.Measured.ZoneHysteresis, (std::array{0, 5, 0}));
}

TEST(ReadingCycle, ReadsThermWhenItsPeriodIsOver) {
  const struct {
    double Waited, Period;
    int Count, LogMode;
    const char* Read;  ///< traffic, reading, caption
  } rows[] = {
      {0.9, 1, 10, 1, "|0|"},
      {0.2, 1, 10, 1, "R79 R78 R7D|10|THERM=22.8%"},
      {0, 1, 10, 1, "|10|"},  // the period starts again
      {1.1, 1, 44, 2, "R79 R78 R7D|1001.44|THERM=100%"},
      {0, -1, 1, 2, "R79 R78 R7D|22.76|THERM=100%"},  // no length, no new percentage
  };
  VisualBench bench;
  Workbench& work = bench.Work;
  bench.Poke(0x78, 0x02);
  for (const auto& row : rows) {
    bench.Advance(row.Waited);
    work.Cycle.ThermPeriod = row.Period;
    work.Log.ThermLogMode = static_cast<std::int16_t>(row.LogMode);
    bench.Poke(0x79, row.Count);
    work.Cycle.Tick();
    const std::string traffic = bench.Traffic();
    const std::string therm = traffic.substr(std::min(traffic.size(), traffic.find("R79")));
    EXPECT_EQ(fmt::format("{}|{}|{}", therm, work.Measured.ThermReading, work.Cycle.ThermCaption), row.Read);
  }
}

TEST(ReadingCycle, AFailedTickKeepsTheOldSpeedAndEachTickAppendsARow) {
  VisualBench bench;
  Workbench& work = bench.Work;
  bench.FailTransfer(4);  // the high byte of a fan
  const float speed = work.Measured.FanSpeeds[1] = 1234;
  EXPECT_THROW(work.Cycle.Tick(), CommsError);
  EXPECT_EQ(work.Measured.FanSpeeds[1], speed) << "half a count is not a speed";
  bench.Advance(0.5);
  work.Cycle.Tick();
  EXPECT_EQ(work.History.RowCount(), 2U);
  EXPECT_NEAR(static_cast<double>(work.History.LastTime()), 0.5e6, 1e3);
}

/// The traces of the newest rows that have a value, the oldest first: one letter per trace, "-" for none.
std::string NewestRows(const Workbench& work, std::size_t count) {
  std::string text;
  work.History.ForEachRow(0, anyTime, [&](std::int64_t, std::span<const float> values) {
    text += ' ';
    for (std::size_t i = 0; i < traceCount; ++i) text += std::isnan(values[i]) ? '-' : "TTTFFFFPHVVVVV"[i];
    return true;
  });
  return text.substr(text.size() - count * (traceCount + 1) + 1);
}

/// Ticks every 10 ms, ignoring failures; five ticks cover the largest group.
void Tick(VisualBench& bench, int count = 5) {
  for (int tick = 0; tick < count; ++tick) {
    bench.Advance(0.01);
    try {
      bench.Work.Cycle.Tick();
    } catch (const CommsError&) {
    }
  }
}

TEST(ReadingCycle, PostsOnlyWhatWasMeasured) {
  VisualBench bench;
  Workbench& work = bench.Work;
  WriteByte(bench.Bus, 0x40, 0x01);
  bench.Advance(1.1);
  Tick(bench, 5);
  EXPECT_EQ(NewestRows(work, 5), "-T--F---H-V--- -TT-FF--H-VV-- TTT-FFF-H-VVV- TTTFFFF-H-VVVV TTTFFFFPHVVVVV")
      << "no zeros for channels not read yet";
  bench.Sim.AddFault(*ParseFault("fail=1+,reg=25"));  // Remote 1, every third tick
  Tick(bench, 6);
  EXPECT_EQ(NewestRows(work, 3), "T-TFFFFPHVVVVV -------------- T-TFFFFPHVVVVV") << "a value that cannot be read ends";
  bench.Sim.ClearFaults();
  Tick(bench, 3);
  EXPECT_EQ(NewestRows(work, 1), "TTTFFFFPHVVVVV");

  bench.Model.EnterReadWrite();  // twice, but one empty row
  const std::function<void()> pauses[] = {[&] { bench.Model.EnterReadWrite(); }, [&] { bench.Model.SliderPressed(); },
                                          [&] { bench.ReReadChip(); }};
  for (const auto& pause : pauses) {
    pause();
    EXPECT_EQ(NewestRows(work, 2), "TTTFFFFPHVVVVV --------------");
    Tick(bench, 6);
  }
  bench.Advance(1.1);  // turns were held
  Tick(bench, 1);
  EXPECT_EQ(NewestRows(work, 3).substr(0, 29), "TTTFFFFPHVVVVV --------------") << "a late tick ends the traces first";
}

constexpr std::size_t remote1 = 1, fan2 = 4, fan3 = 5, twelveVolts = 8;

TEST(FirstValues, BeginWithTheFirstByteUnlikeTheResetValueOrASecondAfterMonitoringWasSeenOn) {
  VisualBench bench;
  const FirstValues& first = bench.Work.First;
  /// The fan is stopped, and time passes.
  const auto standing = [&](double seconds) {
    bench.Advance(seconds);
    bench.Poke({{0x2C, 0xFF}, {0x2D, 0xFF}});
    Tick(bench);
    return first.Measured(fan3);
  };

  EXPECT_FALSE(standing(2)) << "monitoring was never seen on";

  bench.Poke({{0x25, 0x20}, {0x2B, 0x08}, {0x24, 0xC0}, {0x21, 0x01}});
  Tick(bench);
  for (const std::size_t channel : {remote1, fan2, twelveVolts}) EXPECT_TRUE(first.Measured(channel)) << channel;
  EXPECT_EQ(bench.Work.Ranges.Of(remote1).Minimum, 32);
  EXPECT_FALSE(first.Measured(fan3));
  EXPECT_EQ(NewestRows(bench.Work, 1), "-T--F---H-VV--") << "no power: one of its two voltages is missing";

  WriteByte(bench.Bus, 0x40, 1);
  EXPECT_FALSE(standing(0.9));
  for (const int start : {0, 1}) WriteByte(bench.Bus, 0x40, start);  // the second one restarts
  FirstValues late(bench.Bus);                                       // created after the chip was seen
  EXPECT_FALSE(standing(0.2));
  EXPECT_TRUE(standing(0.9)) << "the fan is stopped";
  EXPECT_TRUE(late.Took(fan3));
  EXPECT_EQ(bench.Work.Ranges.Of(fan3).Maximum, 0);
}

TEST(FirstValues, WithMonitoringOffNothingIsMeasured) {
  VisualBench bench;
  EXPECT_EQ(bench.Work.First.Monitoring(), std::nullopt);
  WriteByte(bench.Bus, 0x40, 0x00);
  bench.Poke(0x25, 0x20);
  Tick(bench);
  EXPECT_EQ(bench.Work.First.Monitoring(), false);
  EXPECT_TRUE(bench.Work.First.Measured(remote1)) << "its last value is shown";
  EXPECT_FALSE(bench.Work.Ranges.Of(remote1).Any());
  EXPECT_EQ(NewestRows(bench.Work, 1), "--------------");
}

TEST(RangeSeries, RestartsWhenTheMeaningOfAReadingChanges) {
  const struct {
    int Register, Bits;
    const char* Anew;  ///< channels
  } rows[] = {
      {0x7B, 0x0C, "4 "}, {0x73, 0x24, "5 7 8 9 10 11 "}, {0x71, 0x01, "0 "}, {0x70, 0x80, "1 "}, {0x78, 0x02, "6 7 "},
      {0x78, 0x04, ""},   {0x7D, 0x03, "6 7 11 "},        {0x40, 0x11, "11 "}};
  for (const auto& row : rows) {
    VisualBench bench;
    SeenRanges ranges;
    RangeSeries series(bench.Bus, bench.Work.Fans, bench.Work.Power, ranges);
    const auto empty = [&] {
      std::string channels;
      for (std::size_t channel = 0; channel < channelCount; ++channel)
        if (!ranges.Of(channel).Any()) channels += std::to_string(channel) + " ";
      return channels;
    };
    const auto addAll = [&] {
      for (std::size_t channel = 0; channel < channelCount; ++channel) series.Add(channel, 1);
      return empty();
    };
    const auto reg = static_cast<std::uint8_t>(row.Register);
    const std::uint8_t before = ReadByte(bench.Bus, reg);
    EXPECT_EQ(addAll(), "");
    WriteByte(bench.Bus, reg, before);
    EXPECT_EQ(empty(), "") << "the same byte again";
    WriteByte(bench.Bus, reg, before ^ row.Bits);
    EXPECT_EQ(empty(), row.Anew);
    EXPECT_EQ(addAll(), row.Anew) << "possibly converted before the write";
    bench.Advance(1.1);
    EXPECT_EQ(addAll(), "");
    bench.Work.Fans.ActualPulses[3] = 2;
    bench.Work.Power.SenseScale = 1;
    for (const std::size_t channel : {6U, 11U}) {
      series.Add(channel, 5);
      EXPECT_EQ(ranges.Of(channel).Minimum, 5);
    }
  }
}

TEST(RangeSeries, TheCodeOfAnOpenDiodeIsNotATemperature) {
  VisualBench bench;
  SeenRanges ranges;
  RangeSeries series(bench.Bus, bench.Work.Fans, bench.Work.Power, ranges);
  for (const std::size_t channel : {0U, 1U, 2U}) series.Add(channel, -128);
  bench.Bus.Seen.Saw(0x42, 0x80);  // D2
  for (const std::size_t channel : {1U, 2U}) series.Add(channel, 30);
  series.Add(0, 8);
  const SeenRange& own = ranges.Of(0);  // the chip's own sensor has no diode to open
  EXPECT_EQ(std::tie(own.Minimum, own.Maximum, own.Mean), std::tuple(-128, 8, -60));
  EXPECT_EQ(ranges.Of(1).Minimum, 30);
  EXPECT_FALSE(ranges.Of(2).Any());
}

}  // namespace
}  // namespace krx
