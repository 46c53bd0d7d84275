// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/readingcycle.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "console/visualbench.h"
#include "link/commserror.h"
#include "link/registeraccess.h"

namespace krx {
namespace {

constexpr std::int64_t anyTime = std::numeric_limits<std::int64_t>::max();

TEST(ReadingCycle, ReadsOneMemberOfEachGroupATickInOrder) {
  for (const auto medium : {TestBench::Medium::Board, TestBench::Medium::Smbus}) {
    VisualBench bench(medium);
    ReadingCycle& cycle = bench.Work.Cycle;
    for (const char* expected :
         {"R77 R25 R2A R2B R77 R24 R41 R42 R31 R6D R67 R34", "R77 R27 R2C R2D R76 R21 R41 R42 R32 R6E R69 R35",
          "R77 R26 R2E R2F R76 R22 R41 R42 R30 R6D R68 R33"}) {
      cycle.Tick();
      EXPECT_EQ(bench.Traffic(), expected);
    }
  }
}

TEST(ReadingCycle, CountersWrapWithoutAJump) {
  VisualBench bench;
  ReadingCycle& cycle = bench.Work.Cycle;
  for (int tick = 1; tick <= 98; ++tick) cycle.Tick();
  bench.Traffic();
  cycle.Tick();
  EXPECT_EQ(bench.Traffic(), "R77 R26 R2E R2F R76 R20 R41 R42 R30 R6D R68 R33");
  EXPECT_EQ(cycle.Counters.Temperature, 0);
  EXPECT_EQ(cycle.Counters.Tach, 99);
  cycle.Tick();
  EXPECT_EQ(bench.Traffic(), "R77 R25 R28 R29 R76 R23 R41 R42 R31 R6D R67 R34");
  EXPECT_EQ(cycle.Counters.Temperature, 1);
  EXPECT_EQ(cycle.Counters.Tach, 0);
  EXPECT_EQ(cycle.Counters.Voltage, 0);
}

TEST(ReadingCycle, ConvertsAndKeepsWhatItReads) {
  VisualBench bench;
  Workbench& work = bench.Work;
  work.Fans.ProgrammedPulses = {1, 4, 1, 1};
  work.Fans.ActualPulses = {1, 3, 1, 1};
  for (const auto& [reg, value] : {std::pair{0x25, 0xF6},
                                   {0x77, 0x07},
                                   {0x2A, 0x73},
                                   {0x2B, 0x2E},
                                   {0x24, 0xC0},
                                   {0x31, 0x80},
                                   {0x6D, 0x54},
                                   {0x67, 0xFE},
                                   {0x34, 0x3C}}) {
    bench.Poke(static_cast<std::uint8_t>(reg), static_cast<std::uint8_t>(value));
  }
  work.Cycle.Tick();
  EXPECT_FLOAT_EQ(work.Measured.Temperatures[1], -10.25F);
  EXPECT_LT(work.Measured.FanSpeeds[1], 605.5F) << "11891 counts times 4/3 would be 605.5, times 4 by 3 it is less";
  EXPECT_GT(work.Measured.FanSpeeds[1], 605.4F);
  EXPECT_FLOAT_EQ(work.Measured.Voltages[1], (0xC0 * 4 + 3) * 0.0156F);
  EXPECT_EQ(work.Measured.DutyTexts[1], "50%");
  EXPECT_EQ(work.Measured.ZoneHysteresis[1], 5);
  // One step reads registers of two zones; each value goes to its own.
  EXPECT_EQ(work.Zones.ZoneTmin[1], -2);
  EXPECT_EQ(work.Zones.ZoneOpPoint[0], 60);
}

TEST(ReadingCycle, ReadsThermWhenItsPeriodIsOver) {
  VisualBench bench;
  Workbench& work = bench.Work;
  bench.Poke(0x78, 0x02);
  const auto tick = [&](std::uint8_t count) {
    bench.Poke(0x79, count);
    bench.Traffic();
    work.Cycle.Tick();
    const std::string traffic = bench.Traffic();
    return traffic.substr(std::min(traffic.size(), traffic.find("R79")));
  };
  bench.Advance(0.9);
  EXPECT_EQ(tick(10), "");
  EXPECT_EQ(work.Cycle.ThermCaption, "");
  bench.Advance(0.2);
  EXPECT_EQ(tick(10), "R79 R78 R7D");
  EXPECT_FLOAT_EQ(work.Measured.ThermPercent, 22.76F);
  EXPECT_EQ(work.Measured.ThermReading, 10);
  EXPECT_EQ(work.Cycle.ThermCaption, "THERM=22.8%");
  EXPECT_EQ(work.Pins.ThermPinMode, 2);
  EXPECT_EQ(tick(10), "") << "the period starts again";

  work.Log.ThermLogMode = 2;
  bench.Advance(1.1);
  EXPECT_EQ(tick(44), "R79 R78 R7D");
  EXPECT_EQ(work.Measured.ThermPercent, 100);
  EXPECT_FLOAT_EQ(work.Measured.ThermReading, 44 * 22.76F);

  for (const double period : {0.0, -1.0}) {
    work.Cycle.ThermPeriod = period;
    EXPECT_EQ(tick(1), "R79 R78 R7D");
    EXPECT_EQ(work.Measured.ThermPercent, 100) << "no length, no new percentage";
  }
}

TEST(ReadingCycle, ASpeedIsNotKnownBeforeThePulsesAre) {
  VisualBench bench;
  Workbench& work = bench.Work;
  work.Fans.PulsesKnown = false;
  work.Cycle.Tick();
  EXPECT_EQ(bench.Traffic(), "R77 R25 R2A R2B R77 R24 R41 R42 R31 R6D R67 R34");
  for (std::size_t fan = 0; fan < 4; ++fan) {
    EXPECT_EQ(ReadoutText(3 + fan, work.Measured, work.Power), "– RPM");
    EXPECT_FALSE(work.History.LastUpTo(3 + fan, anyTime)) << "no point in the chart";
  }
  work.Fans.TakePulses(0);
  work.Cycle.Tick();
  EXPECT_EQ(ReadoutText(5, work.Measured, work.Power), "0 RPM");
  EXPECT_EQ(ReadoutText(3, work.Measured, work.Power), "– RPM") << "its turn has not come yet";
}

TEST(ReadingCycle, AppendsOneRowATickWithWhatWasPosted) {
  VisualBench bench;
  Workbench& work = bench.Work;
  for (std::uint8_t value = 0x20; value < 0x30; ++value) bench.Poke(value, 0x40);
  bench.FailTransfer(4);  // the high byte of a fan
  const float speed = work.Measured.FanSpeeds[1] = 1234;
  EXPECT_THROW(work.Cycle.Tick(), CommsError);
  EXPECT_EQ(work.Measured.FanSpeeds[1], speed) << "half a count is no speed";
  EXPECT_EQ(work.History.RowCount(), 1U);
  EXPECT_TRUE(work.History.LastUpTo(1, anyTime));
  EXPECT_FALSE(work.History.LastUpTo(4, anyTime));

  bench.Advance(0.5);
  for (int tick = 0; tick < 6; ++tick) work.Cycle.Tick();
  EXPECT_EQ(work.History.RowCount(), 7U);
  for (std::size_t trace = 0; trace < traceCount; ++trace) EXPECT_TRUE(work.History.LastUpTo(trace, anyTime)) << trace;
  EXPECT_NEAR(static_cast<double>(work.History.LastTime()), 0.5e6, 1e3);
  EXPECT_FLOAT_EQ(work.History.LastUpTo(10, anyTime)->Value, work.Measured.Voltages[1]);
}

/// The traces of the newest rows that have a value, the oldest first: one letter a trace, "-" for none.
std::string NewestRows(const Workbench& work, int count) {
  std::vector<std::string> rows;
  work.History.ForEachRow(0, anyTime, [&](std::int64_t, std::span<const float> values) {
    std::string row;
    for (std::size_t i = 0; i < traceCount; ++i) row += std::isnan(values[i]) ? '-' : "TTTFFFFPHVVVVV"[i];
    rows.push_back(row);
    return true;
  });
  std::string text;
  for (std::size_t i = rows.size() - std::min<std::size_t>(rows.size(), count); i < rows.size(); ++i)
    text += (text.empty() ? "" : " ") + rows[i];
  return text;
}

TEST(ReadingCycle, PostsOnlyWhatWasMeasured) {
  VisualBench bench;
  Workbench& work = bench.Work;
  const auto tick = [&](int count) {
    for (int i = 0; i < count; ++i) {
      bench.Advance(0.01);
      try {
        work.Cycle.Tick();
      } catch (const CommsError&) {
      }
    }
  };
  WriteByte(bench.Bus, 0x40, 0x01);
  bench.Advance(1.1);
  tick(5);
  EXPECT_EQ(NewestRows(work, 5), "-T--F---H-V--- -TT-FF--H-VV-- TTT-FFF-H-VVV- TTTFFFF-H-VVVV TTTFFFFPHVVVVV")
      << "no zeros for what has not had its turn";
  Fault fault;
  fault.Register = 0x25;  // Remote 1, every third tick
  fault.Nth = 1;
  fault.Onward = true;
  bench.Sim.AddFault(fault);
  tick(6);
  EXPECT_EQ(NewestRows(work, 3), "T-TFFFFPHVVVVV -------------- T-TFFFFPHVVVVV") << "a value that cannot be read ends";
  bench.Sim.ClearFaults();
  tick(3);
  EXPECT_EQ(NewestRows(work, 1), "TTTFFFFPHVVVVV");

  bench.Model.EnterReadWrite();
  bench.Model.EnterReadWrite();
  EXPECT_EQ(NewestRows(work, 2), "TTTFFFFPHVVVVV --------------") << "one row of nothing when it stands still";
  tick(6);
  bench.Model.SliderPressed();
  EXPECT_EQ(NewestRows(work, 2), "TTTFFFFPHVVVVV --------------");
  tick(6);
  bench.Model.ReReadChip();
  EXPECT_EQ(NewestRows(work, 2), "TTTFFFFPHVVVVV --------------");
  tick(6);
  bench.Advance(1.1);  // whatever held the turns
  tick(1);
  EXPECT_EQ(NewestRows(work, 3).substr(0, 29), "TTTFFFFPHVVVVV --------------") << "a late tick says so first";
}

}  // namespace
}  // namespace krx
