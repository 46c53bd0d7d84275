// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/limitentry.h"

#include <gtest/gtest.h>

#include "console/visualbench.h"
#include "link/commserror.h"

namespace krx {
namespace {

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
    {1, 0x81, 0x7F, highLimit, "300", 0, "!-127 to 127 °C, whole degrees"},
    {1, 0x81, 0x7F, highLimit, "25.5", 0, "!-127 to 127 °C, whole degrees"},
    {1, 0x81, 0x7F, highLimit, "hot", 0, "!-127 to 127 °C, whole degrees"},
    {1, 0x81, 0x7F, highLimit, "6 0", 0, "!-127 to 127 °C, whole degrees"},
    {1, 0x81, 0x7F, highLimit, "", 0, "!-127 to 127 °C, whole degrees"},
    {1, 0x81, 0x7F, highLimit, "1e999", 0, "!-127 to 127 °C, whole degrees"},
    {1, 0x81, 0x7F, highLimit, "-20", 0, "W4E:81 W4F:EC"},
    {1, 0x81, 0x7F, highLimit, " 60 °C ", 0, "W4E:81 W4F:3C"},
    {1, 0x81, 0x7F, highLimit, "127", 0, ""},
    {1, 0x81, 0x7F, lowLimit, "-60", 0, "W4E:C4 W4F:7F"},
    {1, 0x81, 0x7F, lowLimit, "-127 °C", 0, ""},
    {0, 0x0A, 0x50, lowLimit, "-127", 0, "W50:81 W51:50"},
    {0, 0x0A, 0x50, lowLimit, "-128", 0, "W50:80 W51:50"},
    {0, 0x0A, 0x50, lowLimit, "-129", 0, "!-128 to 80 °C, whole degrees"},
    {0, 0x0A, 0x50, lowLimit, "80", 0, "W50:50 W51:50"},
    {0, 0x0A, 0x50, lowLimit, "81", 0, "!-128 to 80 °C, whole degrees"},
    {0, 0x0A, 0x50, highLimit, "9", 0, "!10 to 127 °C, whole degrees"},
    {4, 0xE8, 0x03, lowLimit, "164", 0, "!0 or at least 165 RPM"},
    {4, 0xE8, 0x03, lowLimit, "-1", 0, "!0 or at least 165 RPM"},
    {4, 0xE8, 0x03, lowLimit, "165", 0, "W56:AF W57:FF"},
    {4, 0xE8, 0x03, lowLimit, "0 RPM", 0, "W56:FF W57:FF"},
    {4, 0xE8, 0x03, lowLimit, "25000", 0, "W56:B0 W57:01"},
    {4, 0xE8, 0x03, lowLimit, "10800", 0, ""},
    {4, 0xE8, 0x03, highLimit, "5000", 0, ""},
    {7, 0x10, 0xC0, highLimit, "6.630 V", 0, "W4A:10 W4B:FF"},
    {7, 0x10, 0xC0, highLimit, "6.631", 0, "!0.416 to 6.630 V"},
    {7, 0x10, 0xC0, highLimit, "0.415", 0, "!0.416 to 6.630 V"},
    {7, 0x10, 0xC0, lowLimit, "-0.1", 0, "!0.000 to 4.992 V"},
    {7, 0x10, 0xC0, lowLimit, "4.992", 0, "W4A:C0 W4B:C0"},
    {9, 0x00, 0x80, highLimit, "2.989", 0, "W46:00 W47:FF"},
    {9, 0x00, 0xFF, highLimit, "2.989", 0, ""},
    {9, 0x00, 0x80, highLimit, "2.99", 0, "!0.000 to 2.989 V"},
    // A current: 1.5 V core voltage, 0.003 Ohm, -0.9 V.
    {11, 0xC0, 0xF0, highLimit, "288", 0, "W44:C0 W45:FF"},
    {11, 0xC0, 0xF0, highLimit, "289", 0, "!19.20 to 288.00 A"},
    {11, 0xC0, 0xF0, lowLimit, "-700 A", 0, "W44:17 W45:F0"},
    {11, 0xC0, 0xF0, lowLimit, "-801", 0, "!-800.00 to 224.00 A"},

    {0, 0x0A, 0x50, highLimit, nullptr, 1, "W50:0A W51:51"},
    {0, 0x0A, 0x7F, highLimit, nullptr, 1, ""},
    {0, 0x81, 0x50, lowLimit, nullptr, -1, "W50:80 W51:50"},
    {0, 0x50, 0x50, lowLimit, nullptr, 1, ""},
    {4, 0xFF, 0xFF, lowLimit, nullptr, 1, "W56:AF W57:FF"},
    {4, 0x24, 0xFE, lowLimit, nullptr, -1, "W56:FF W57:FF"},
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
      bench.Work.Measured.Voltages[2] = 1.5F;
      bench.Poke(channels[row.Channel].LowLimitRegister, static_cast<std::uint8_t>(row.Low));
      bench.Poke(channels[row.Channel].HighLimitRegister, static_cast<std::uint8_t>(row.High));
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

TEST(LimitEntry, TheGaugesKeysPassOverTheSpeedsWithoutACount) {
  VisualBench bench;
  bench.Work.Fans.ProgrammedPulses.fill(2);
  bench.Model.SelectChannel(3);
  const double ends[][3] = {{0, 100, 165}, {165, 65, 0}, {165, 265, 265}, {1000, 0, 0}, {0, 0, 0}};
  for (const auto& [from, wanted, end] : ends) EXPECT_EQ(bench.Model.LimitStepEnd(from, wanted), end) << wanted;
  bench.Model.SelectChannel(0);
  EXPECT_EQ(bench.Model.LimitStepEnd(0, 1), 1) << "a temperature has every degree";
}

TEST(LimitEntry, AFailedWriteLeavesTheLimitUnknown) {
  VisualBench bench;
  bench.Poke(0x51, 0x50);
  bench.Model.SelectChannel(0);
  bench.FailTransfer(2);
  EXPECT_THROW(bench.Model.TypeLimit(Marker::High, "-60"), CommsError);
  EXPECT_EQ(LimitText(0, Marker::High, false, bench.Model.State().Gauge), "") << "the byte may have arrived";
}

}  // namespace
}  // namespace krx
