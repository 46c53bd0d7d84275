// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/limits.h"

#include <gtest/gtest.h>

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
    {"NegativeLow", 0, 0x0A, 0x50, Marker::Low, -10, "W50:F6 W51:50"},
    {"LowestTemperatureIsKept", 2, 0x80, 0x50, Marker::High, 70, "W52:80 W53:46"},
    {"HalfGoesToTheEvenDegree", 0, 0x0A, 0x50, Marker::High, 64.5, "W50:0A W51:40"},
    {"LowStopsAtHigh", 0, 0x0A, 0x50, Marker::Low, 120, "W50:50 W51:50"},
    {"FanLowByteFirstNoHighLimit", 4, 0xE8, 0x03, Marker::Low, 2400, "W56:94 W57:11"},
    {"NoFanLimit", 6, 0xE8, 0x03, Marker::Low, 0, "W5A:FF W5B:FF"},
    {"FanHighCannotBeDragged", 3, 0xE8, 0x03, Marker::High, 5000, ""},
    {"VoltageRoundsDown", 7, 0x10, 0xFF, Marker::Low, 5.0, "W4A:C0 W4B:FF"},
    {"VoltageAboveTheByteIs255", 8, 0x10, 0xC0, Marker::High, 17, "W4C:10 W4D:FF"},
    {"Vccp", 9, 0x00, 0xFF, Marker::Low, 1.5, "W46:7F W47:FF"},
    {"Vcc", 10, 0x00, 0xFF, Marker::Low, 1.67, "W48:63 W49:FF"},
    {"TwoPointFive", 11, 0x00, 0xC8, Marker::Low, 1.28, "W44:64 W45:C8"},
};

TEST(Limits, ADragWritesOnceOnEitherMedium) {
  for (const DragRow& row : dragRows) {
    for (const Medium medium : {Medium::Board, Medium::Smbus}) {
      SCOPED_TRACE(std::string(row.Name) + (medium == Medium::Board ? " board" : " SMBus"));
      VisualBench bench(medium);
      bench.Work.Fans.ProgrammedPulses.fill(2);
      bench.Poke(channels[row.Channel].LowLimitRegister, static_cast<std::uint8_t>(row.Low));
      bench.Poke(channels[row.Channel].HighLimitRegister, static_cast<std::uint8_t>(row.High));
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

TEST(Limits, NoByteWalksWhenTheOtherMarkerIsDragged) {
  for (const std::size_t channel : {1U, 7U, 8U, 9U, 10U, 11U}) {
    VisualBench bench;
    const std::uint8_t low = channels[channel].LowLimitRegister;
    for (int byte = 0; byte < 256; ++byte) {
      bench.Poke(low, static_cast<std::uint8_t>(byte));
      bench.Model.SelectChannel(channel);
      bench.Model.MarkerMoving(Marker::High, 100);
      bench.Model.MarkerMoving(Marker::High, 50);
      ASSERT_EQ(bench.Peek(low), byte) << "channel " << channel;
    }
  }
}

TEST(Limits, PlacesFansByTheirPulsesAndKeepsAPlacedMarkerOutsideTheScale) {
  VisualBench bench;
  bench.Work.Fans.ProgrammedPulses = {1, 2, 1, 1};
  bench.Poke(0x56, 0xE8);
  bench.Poke(0x57, 0x03);
  bench.Model.SelectChannel(4);
  EXPECT_EQ(bench.Model.State().Gauge.Low(), 10800);
  EXPECT_EQ(bench.Model.State().Gauge.High(), 20000);
  bench.Poke(0x4E, 0x81);
  bench.Model.SelectChannel(1);
  EXPECT_EQ(bench.Model.State().Gauge.Low(), -127);
}

TEST(Limits, ACurrentLimitGoesThroughTheSenseVoltage) {
  VisualBench bench;
  bench.Work.Power.PowerMode = true;
  bench.Work.Measured.Voltages[2] = 1.5F;
  bench.Poke(0x44, 0xC0);  // 2.4576 V: 19.2 A
  bench.Model.SelectChannel(11);
  EXPECT_NEAR(bench.Model.State().Gauge.Low(), 19.2, 1e-4);
  EXPECT_EQ(bench.Model.State().Gauge.Scale().Maximum, 180);
  bench.Traffic();
  bench.Model.MarkerMoving(Marker::High, 100);  // 2.7 V
  EXPECT_EQ(bench.Traffic(), "W44:C0 W45:D2");
  // A negative sense voltage has no code: nothing is written and the marker goes back.
  bench.Work.Power.SenseRoutOffset = 5;
  EXPECT_THROW(bench.Model.MarkerMoving(Marker::High, 30), Overflow);
  EXPECT_EQ(bench.Traffic(), "");
  EXPECT_EQ(bench.Model.State().Gauge.High(), 100);
}

TEST(Limits, AFailedWritePutsTheMarkerBack) {
  VisualBench bench;
  bench.Poke(0x51, 0x50);
  bench.Model.SelectChannel(0);
  bench.FailTransfer(2);  // the high limit
  EXPECT_THROW(bench.Model.MarkerMoving(Marker::High, 60), CommsError);
  EXPECT_EQ(bench.Model.State().Gauge.High(), 80);
  EXPECT_EQ(bench.Peek(0x51), 0x50);
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
    // Nobody knows whether it arrived: neither of the two bytes may be written as if it were the chip's.
    fail(bench, 0x50, 30);
    EXPECT_EQ(move(Marker::High, 62), "W51:3E");
    EXPECT_EQ(move(Marker::Low, 20), "W50:14 W51:3E") << "the marker's old place, wanted by the user";
    fail(bench, 0x51, 30);
    ReadByte(bench.Bus, 0x51);
    EXPECT_EQ(move(Marker::Low, 21), "W50:15 W51:3E");
    bench.FailTransfer(2);
    EXPECT_THROW(move(Marker::High, 70), CommsError);
    EXPECT_EQ(gauge.High(), 62);
    EXPECT_FALSE(gauge.IsKnown(Marker::High));
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

}  // namespace
}  // namespace krx
