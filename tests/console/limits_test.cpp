// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/limits.h"

#include <gtest/gtest.h>

#include "console/limitentry.h"
#include "console/visualbench.h"
#include "link/commserror.h"
#include "link/registeraccess.h"
#include "registers/conversions.h"

namespace krx {
namespace {

using Medium = TestBench::Medium;

struct DragRow {
  const char* Name;
  std::size_t Channel;
  int Low, High;  ///< the limit registers' bytes
  Marker Dragged;
  double Value;
  const char* Traffic;
};

const DragRow dragRows[] = {
    {"UnmovedLowKeepsItsByte", 1, 0x81, 0x7F, Marker::High, 60, "W4E:81 W4F:3C"},
    {"LowestTemperatureIsKept", 2, 0x80, 0x50, Marker::High, 70, "W52:80 W53:46"},
    {"HalfGoesToTheEvenDegree", 0, 0x0A, 0x50, Marker::High, 64.5, "W50:0A W51:40"},
    {"FanLowByteFirstNoHighLimit", 4, 0xE8, 0x03, Marker::Low, 2400, "W56:94 W57:11"},
    {"FanHighCannotBeDragged", 3, 0xE8, 0x03, Marker::High, 5000, ""},
    {"UnmovedVoltageDoesNotWalk", 7, 0x0A, 0xC0, Marker::High, 7, "W4A:0A W4B:FF"},  // computed it would be 09
    {"VoltageRoundsDown", 7, 0x10, 0xFF, Marker::Low, 5.0, "W4A:C0 W4B:FF"},
    {"VoltageAboveTheByteIs255", 8, 0x10, 0xC0, Marker::High, 17, "W4C:10 W4D:FF"},
    {"Vcc", 10, 0x00, 0xFF, Marker::Low, 1.67, "W48:63 W49:FF"},
    {"TwoPointFive", 11, 0x00, 0xC8, Marker::Low, 1.28, "W44:64 W45:C8"},
};

TEST(Limits, ADragWritesOnceOnEitherMedium) {
  for (const DragRow& row : dragRows) {
    for (const Medium medium : {Medium::Board, Medium::Smbus}) {
      SCOPED_TRACE(std::string(row.Name) + (medium == Medium::Board ? " board" : " SMBus"));
      VisualBench bench(medium);
      bench.Work.Fans.ProgrammedPulses.fill(2);
      bench.Poke(channels[row.Channel].LowLimitRegister, row.Low);
      bench.Poke(channels[row.Channel].HighLimitRegister, row.High);
      bench.Model.MarkerReleased(row.Dragged, row.Value);
      EXPECT_EQ(bench.Traffic(), "") << "nothing is placed yet";
      bench.Model.SelectChannel(row.Channel);
      bench.Traffic();
      bench.Model.MarkerMoving(row.Dragged, row.Value);
      EXPECT_EQ(bench.Traffic(), medium == Medium::Board ? row.Traffic : "");
      bench.Model.MarkerReleased(row.Dragged, row.Value);
      EXPECT_EQ(bench.Traffic(), medium == Medium::Smbus ? row.Traffic : "");
    }
  }
}

TEST(Limits, ACurrentWhoseSenseVoltageHasNoCodeIsNotWrittenAndTheMarkerGoesBack) {
  VisualBench bench;
  bench.Work.Power.PowerMode = true;
  bench.MeasureVccp(1.5F);
  bench.Model.SelectChannel(11);
  bench.Traffic();
  bench.Model.MarkerMoving(Marker::High, 100);  // 2.7 V
  EXPECT_EQ(bench.Traffic(), "W44:00 W45:D2");
  bench.Work.Power.SenseRoutOffset = 5;
  EXPECT_THROW(bench.Model.MarkerMoving(Marker::High, 30), Overflow);
  EXPECT_EQ(bench.Traffic(), "");
  EXPECT_EQ(bench.Model.State().Gauge.High(), 100);
}

TEST(Limits, AByteThatPassedFromElsewhereIsWhatTheNextMoveWrites) {
  const auto write = [](VisualBench& bench, std::uint8_t reg, int value) { WriteByte(bench.Bus, reg, value); };
  const auto fail = [&](VisualBench& bench, std::uint8_t reg, int value) {
    bench.FailTransfer(1);
    EXPECT_THROW(write(bench, reg, value), CommsError);
  };
  for (const Medium medium : {Medium::Board, Medium::Smbus}) {
    VisualBench bench(medium);
    const GaugeMarkers& gauge = bench.Model.State().Gauge;
    const auto move = [&](Marker marker, double value) {
      bench.Traffic();
      bench.Model.MarkerMoving(marker, value);
      bench.Model.MarkerReleased(marker, value);
      return bench.Traffic();
    };
    write(bench, 0x50, 5);
    EXPECT_FALSE(gauge.IsPlaced(Marker::Low)) << "no channel was selected";
    bench.Poke(0x51, 0x50);
    bench.Model.SelectChannel(0);
    write(bench, 0x50, 20);
    EXPECT_EQ(gauge.Low(), 20);
    EXPECT_EQ(move(Marker::High, 60), "W50:14 W51:3C");
    fail(bench, 0x50, 30);  // nobody knows whether it arrived: no other byte may be written as if it were the chip's
    EXPECT_EQ(move(Marker::High, 62), "W51:3E");
    EXPECT_EQ(move(Marker::Low, 20), "W50:14 W51:3E") << "the marker's old place, wanted by the user";
    fail(bench, 0x51, 30);
    ReadByte(bench.Bus, 0x51);
    EXPECT_EQ(move(Marker::Low, 21), "W50:15 W51:3E");
    bench.FailTransfer(2);
    EXPECT_THROW(move(Marker::High, 70), CommsError);
    EXPECT_EQ(gauge.High(), 62);
    EXPECT_EQ(LimitText(0, Marker::High, false, gauge), "") << "the byte may have arrived";
    EXPECT_EQ(move(Marker::Low, 22), "W50:16");

    // A pair that fails half-way is a count that nobody knows.
    bench.Model.SelectChannel(3);
    bench.FailTransfer(2);
    EXPECT_THROW(move(Marker::Low, 2400), CommsError);
    EXPECT_FALSE(gauge.IsKnown(Marker::Low));
    write(bench, 0x55, 0x10);
    EXPECT_EQ(gauge.Low(), TachToRPM(0x10CA)) << "the low byte had arrived";
    bench.Work.Fans.ProgrammedPulses.fill(2);
    bench.Model.Relabel();
    EXPECT_EQ(gauge.Low(), 2 * TachToRPM(0x10CA));
  }
  VisualBench smbus(Medium::Smbus);
  smbus.Poke(0x51, 0x50);
  smbus.Model.SelectChannel(0);
  smbus.Model.MarkerMoving(Marker::High, 60);
  write(smbus, 0x51, 70);
  EXPECT_EQ(smbus.Model.State().Gauge.High(), 60) << "it is in the user's hand";
  smbus.Model.MarkerReleased(Marker::High, 60);
  EXPECT_EQ(smbus.Peek(0x51), 60);
}

/// A channel whose limits hold two bytes; what a text or a step makes of one of them: the traffic, or "!" and the
/// range.
struct EntryRow {
  std::size_t Channel;
  int Low, High;
  Marker Entered;
  const char* Text;  ///< null: Steps
  int Steps;
  const char* Expected;
};

constexpr Marker lowLimit = Marker::Low, highLimit = Marker::High;

const EntryRow entryRows[] = {
    {1, 0x81, 0x7F, highLimit, "150", 0, "!-127 to 127 °C, whole degrees"},
    {1, 0x81, 0x7F, highLimit, "25.5", 0, "!-127 to 127 °C, whole degrees"},
    {1, 0x81, 0x7F, highLimit, "hot", 0, "!-127 to 127 °C, whole degrees"},
    {1, 0x81, 0x7F, highLimit, "1e999", 0, "!-127 to 127 °C, whole degrees"},
    {1, 0x81, 0x7F, highLimit, "-20", 0, "W4E:81 W4F:EC"},
    {1, 0x81, 0x7F, highLimit, " 60 °C ", 0, "W4E:81 W4F:3C"},
    {1, 0x81, 0x7F, highLimit, "127", 0, ""},
    {1, 0x81, 0x7F, lowLimit, "-60", 0, "W4E:C4 W4F:7F"},
    {0, 0x0A, 0x50, lowLimit, "-128", 0, "W50:80 W51:50"},
    {0, 0x0A, 0x50, lowLimit, "-129", 0, "!-128 to 80 °C, whole degrees"},
    {0, 0x0A, 0x50, lowLimit, "81", 0, "!-128 to 80 °C, whole degrees"},
    {0, 0x0A, 0x50, highLimit, "9", 0, "!10 to 127 °C, whole degrees"},
    {4, 0xE8, 0x03, lowLimit, "164", 0, "!0 or at least 165 RPM"},
    {4, 0xE8, 0x03, lowLimit, "165", 0, "W56:AF W57:FF"},
    {4, 0xE8, 0x03, lowLimit, "0 RPM", 0, "W56:FF W57:FF"},
    {4, 0xE8, 0x03, lowLimit, "10800", 0, ""},
    {4, 0xE8, 0x03, lowLimit, "25000", 0, "W56:B0 W57:01"},
    {4, 0xE8, 0x03, highLimit, "5000", 0, ""},
    {7, 0x10, 0xC0, highLimit, "6.630 V", 0, "W4A:10 W4B:FF"},
    {7, 0x10, 0xC0, highLimit, "6.631", 0, "!0.416 to 6.630 V"},
    {9, 0x00, 0xFF, highLimit, "2.989", 0, ""},
    {9, 0x00, 0x80, highLimit, "2.99", 0, "!0.000 to 2.989 V"},
    // A current: 1.5 V core voltage, 0.003 Ohm, -0.9 V.
    {11, 0xC0, 0xF0, highLimit, "288", 0, "W44:C0 W45:FF"},
    {11, 0xC0, 0xF0, highLimit, "289", 0, "!19.20 to 288.00 A"},
    {11, 0xC0, 0xF0, lowLimit, "-700 A", 0, "W44:17 W45:F0"},
    {11, 0xC0, 0xF0, lowLimit, "-801", 0, "!-800.00 to 224.00 A"},

    {0, 0x0A, 0x50, highLimit, nullptr, 1, "W50:0A W51:51"},
    {0, 0x81, 0x50, lowLimit, nullptr, -1, "W50:80 W51:50"},
    {0, 0x50, 0x50, lowLimit, nullptr, 1, ""},
    {4, 0xFF, 0xFF, lowLimit, nullptr, 1, "W56:AF W57:FF"},
    {4, 0x24, 0xFE, lowLimit, nullptr, -1, "W56:FF W57:FF"},
    {4, 0x24, 0xFE, lowLimit, nullptr, 1, "W56:50 W57:C3"},
    {4, 0xFF, 0xFF, lowLimit, nullptr, -1, ""},
    {4, 0x1C, 0x02, lowLimit, nullptr, 1, ""},  // 20000 RPM
    {7, 0x10, 0xC0, highLimit, nullptr, 1, "W4A:10 W4B:C1"},
};

TEST(LimitEntry, ATextOrAStepIsWrittenWholeOnceOrNotAtAll) {
  for (const EntryRow& row : entryRows) {
    for (const auto medium : {TestBench::Medium::Board, TestBench::Medium::Smbus}) {
      SCOPED_TRACE(std::to_string(row.Channel) + " " + (row.Text == nullptr ? "step" : row.Text));
      VisualBench bench(medium);
      bench.Work.Fans.ProgrammedPulses.fill(2);
      bench.Work.Power.PowerMode = row.Channel == currentChannel;
      bench.MeasureVccp(1.5F);
      bench.Poke(channels[row.Channel].LowLimitRegister, row.Low);
      bench.Poke(channels[row.Channel].HighLimitRegister, row.High);
      bench.Model.SelectChannel(row.Channel);
      bench.Traffic();
      std::string result;
      try {
        row.Text == nullptr ? bench.Model.StepLimit(row.Entered, row.Steps)
                            : bench.Model.TypeLimit(row.Entered, row.Text);
      } catch (const OutOfRange& reason) {
        result = std::string("!") + reason.what();
      }
      EXPECT_EQ(bench.Traffic() + result, row.Expected);
    }
  }
}

}  // namespace
}  // namespace krx
