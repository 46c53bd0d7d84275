// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/limits.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "link/commserror.h"
#include "link/registeraccess.h"
#include "monitor/limitentry.h"
#include "registers/numerics.h"
#include "support/visualbench.h"

namespace krx {
namespace {

/// A channel whose limits hold two bytes; what a drag, some steps or a typed text make of one of them: the traffic, or
/// "!" and the range.
struct LimitRow {
  std::size_t Channel;
  int Low, High;
  Marker Changed;
  std::string How, Expected;
  bool PowerMode = false;  ///< 1.5 V core voltage, 0.003 Ohm, -0.9 V
};

constexpr Marker lowLimit = Marker::Low, highLimit = Marker::High;

const LimitRow limitRows[] = {
    {1, 0x81, 0x7F, highLimit, "drag 60", "W4E:81 W4F:3C"},
    {2, 0x80, 0x50, highLimit, "drag 70", "W52:80 W53:46"},
    {0, 0x0A, 0x50, highLimit, "drag 64.5", "W50:0A W51:40"},
    {4, 0xE8, 0x03, lowLimit, "drag 2400", "W56:94 W57:11"},
    {3, 0xE8, 0x03, highLimit, "drag 5000", ""},
    {7, 0x0A, 0xC0, highLimit, "drag 7", "W4A:0A W4B:FF"},  // computed the low one would be 09
    {7, 0x10, 0xFF, lowLimit, "drag 5", "W4A:C0 W4B:FF"},
    {8, 0x10, 0xC0, highLimit, "drag 17", "W4C:10 W4D:FF"},
    {10, 0x00, 0xFF, lowLimit, "drag 1.67", "W48:63 W49:FF"},
    {11, 0x00, 0xC8, lowLimit, "drag 1.28", "W44:64 W45:C8"},

    {0, 0x0A, 0x50, highLimit, "step 1", "W50:0A W51:51"},
    {0, 0x81, 0x50, lowLimit, "step -1", "W50:80 W51:50"},
    {0, 0x50, 0x50, lowLimit, "step 1", ""},
    {4, 0xFF, 0xFF, lowLimit, "step 1", "W56:AF W57:FF"},
    {4, 0x24, 0xFE, lowLimit, "step -1", "W56:FF W57:FF"},
    {4, 0x24, 0xFE, lowLimit, "step 1", "W56:50 W57:C3"},
    {4, 0xFF, 0xFF, lowLimit, "step -1", ""},
    {4, 0x1C, 0x02, lowLimit, "step 1", ""},  // 20000 RPM
    {7, 0x10, 0xC0, highLimit, "step 1", "W4A:10 W4B:C1"},

    {1, 0x81, 0x7F, highLimit, "25.5", "!-127 to 127 °C, whole degrees"},
    {1, 0x81, 0x7F, highLimit, "1e999", "!-127 to 127 °C, whole degrees"},
    {1, 0x81, 0x7F, highLimit, " 60 °C ", "W4E:81 W4F:3C"},
    {1, 0x81, 0x7F, highLimit, "127", ""},
    {0, 0x0A, 0x50, lowLimit, "-128", "W50:80 W51:50"},
    {0, 0x0A, 0x50, lowLimit, "-129", "!-128 to 80 °C, whole degrees"},
    {0, 0x0A, 0x50, lowLimit, "81", "!-128 to 80 °C, whole degrees"},
    {0, 0x0A, 0x50, highLimit, "9", "!10 to 127 °C, whole degrees"},
    {4, 0xE8, 0x03, lowLimit, "164", "!0 or at least 165 RPM"},
    {4, 0xE8, 0x03, lowLimit, "165", "W56:AF W57:FF"},
    {4, 0xE8, 0x03, lowLimit, "0 RPM", "W56:FF W57:FF"},
    {4, 0xE8, 0x03, lowLimit, "25000", "W56:B0 W57:01"},
    {4, 0xE8, 0x03, highLimit, "5000", ""},
    {7, 0x10, 0xC0, highLimit, "6.630 V", "W4A:10 W4B:FF"},
    {7, 0x10, 0xC0, highLimit, "6.631", "!0.416 to 6.630 V"},
    {9, 0x00, 0xFF, highLimit, "2.989", ""},
    {9, 0x00, 0x80, highLimit, "2.99", "!0.000 to 2.989 V"},
    {11, 0xC0, 0xF0, highLimit, "288", "W44:C0 W45:FF", true},
    {11, 0xC0, 0xF0, highLimit, "289", "!19.20 to 288.00 A", true},
    {11, 0xC0, 0xF0, lowLimit, "-700 A", "W44:17 W45:F0", true},
    {11, 0xC0, 0xF0, lowLimit, "-801", "!-800.00 to 224.00 A", true},
};

TEST(Limits, ADragATextOrAStepIsWrittenOnceCompletelyOrNotAtAll) {
  for (const LimitRow& row : limitRows) {
    for (const Medium medium : {Medium::Board, Medium::Smbus}) {
      SCOPED_TRACE(fmt::format("{} {} medium {}", row.Channel, row.How, static_cast<int>(medium)));
      VisualBench bench(medium);
      bench.Work.Fans.ProgrammedPulses.fill(2);
      bench.Work.Power.PowerMode = row.PowerMode;
      bench.MeasureVccp(1.5F);
      const Channel& channel = channels[row.Channel];
      bench.Poke({{channel.LowLimitRegister, row.Low}, {channel.HighLimitRegister, row.High}});
      const auto drag = [&](double value) {
        bench.Model.MarkerMoving(row.Changed, value);
        const std::string moving = bench.Traffic();
        bench.Model.MarkerReleased(row.Changed, value);
        return medium == Medium::Board ? moving + bench.Traffic() : bench.Traffic() + moving;
      };
      EXPECT_EQ(drag(1), "") << "nothing is placed yet";
      bench.Model.SelectChannel(row.Channel);
      bench.Traffic();
      const double number = Val(row.How.substr(row.How.find(' ') + 1));
      std::string result;
      try {
        if (row.How.starts_with("drag")) {
          result = drag(number);
        } else if (row.How.starts_with("step")) {
          bench.Model.StepLimit(row.Changed, static_cast<int>(number));
        } else {
          bench.Model.TypeLimit(row.Changed, row.How);
        }
      } catch (const OutOfRange& reason) {
        result = std::string("!") + reason.what();
      }
      EXPECT_EQ(result + bench.Traffic(), row.Expected);
    }
  }
}

TEST(Limits, ACurrentWhoseSenseVoltageHasNoCodeIsNotWrittenAndTheMarkerIsReset) {
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

TEST(Limits, AByteWrittenElsewhereIsShownAndWrittenByTheNextMove) {
  const struct {
    std::string Does;
    int Where, Value, Fails;  ///< register or channel; byte or place of the marker; which transfer, if not 0
    const char *Traffic, *Limits;
  } steps[] = {
      {"write", 0x50, 5, 0, "W50:05", "|"},  // no channel was selected
      {"select", 0, 0, 0, "R50 R51", "5 °C|127 °C"},
      {"write", 0x50, 20, 0, "W50:14", "20 °C|127 °C"},
      {"high", 0, 60, 0, "W50:14 W51:3C", "20 °C|60 °C"},
      {"write", 0x50, 30, 1, "W50:1E!", "|60 °C"},  // unknown whether it was written, so it is not written again
      {"high", 0, 62, 0, "W51:3E", "|62 °C"},
      {"low", 0, 20, 0, "W50:14 W51:3E", "20 °C|62 °C"},  // the marker's old place, set by the user
      {"write", 0x51, 30, 1, "W51:1E!", "20 °C|"},
      {"read", 0x51, 0, 0, "R51", "20 °C|62 °C"},
      {"low", 0, 21, 0, "W50:15 W51:3E", "21 °C|62 °C"},
      {"high", 0, 70, 2, "W50:15 W51:46!", "21 °C|"},
      {"low", 0, 22, 0, "W50:16", "22 °C|"},
      {"select", 3, 0, 0, "R54 R55 R30", "0 RPM|20000 RPM"},
      {"low", 0, 2400, 2, "W54:CA W55:08!", "|20000 RPM"},  // half a pair leaves the count unknown
      {"write", 0x55, 0x10, 0, "W55:10", "1256 RPM|20000 RPM"},
      {"pulses", 0, 2, 0, "", "2513 RPM|20000 RPM"},
  };
  for (const Medium medium : {Medium::Board, Medium::Smbus}) {
    VisualBench bench(medium);
    const GaugeMarkers& gauge = bench.Model.State().Gauge;
    for (const auto& step : steps) {
      if (step.Fails > 0) bench.FailTransfer(step.Fails);
      const auto reg = static_cast<std::uint8_t>(step.Where);
      const Marker marker = step.Does == "low" ? Marker::Low : Marker::High;
      try {
        if (step.Does == "write") WriteByte(bench.Bus, reg, step.Value);
        if (step.Does == "read") ReadByte(bench.Bus, reg);
        if (step.Does == "select") bench.Model.SelectChannel(reg);
        if (step.Does == "low" || step.Does == "high") bench.Model.MarkerMoving(marker, step.Value);
        if (step.Does == "low" || step.Does == "high") bench.Model.MarkerReleased(marker, step.Value);
        if (step.Does == "pulses") bench.Work.Fans.ProgrammedPulses.fill(2), bench.Model.Relabel();
      } catch (const CommsError&) {
      }
      EXPECT_EQ(bench.Traffic(), step.Traffic);
      const auto channel = static_cast<std::size_t>(bench.Work.Display.SelectedChannel);
      const auto text = [&](Marker which) { return LimitText(channel, which, false, gauge); };
      EXPECT_EQ(text(Marker::Low) + "|" + text(Marker::High), step.Limits) << step.Does << " " << step.Value;
    }
    EXPECT_EQ(bench.Model.LimitStepEnd(101, 1), 0) << "such a slow fan has no count";
  }
}

TEST(Limits, AMarkerBeingDraggedStaysWhereItIs) {
  VisualBench bench(Medium::Smbus);
  bench.Model.SelectChannel(0);
  bench.Model.MarkerMoving(Marker::High, 60);
  WriteByte(bench.Bus, 0x51, 70);
  EXPECT_EQ(bench.Model.State().Gauge.High(), 60);
  bench.Model.MarkerReleased(Marker::High, 60);
  EXPECT_EQ(bench.Peek(0x51), 60);
}

}  // namespace
}  // namespace krx
