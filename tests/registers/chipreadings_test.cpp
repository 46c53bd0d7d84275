// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/chipreadings.h"

#include <gtest/gtest.h>

#include "support/fakecomms.h"

namespace krx {
namespace {

using Diary = std::vector<std::string>;

TEST(ChipReadings, EachTemperatureAndVoltageHasItsOwnBitsOfTheExtensionRegisters) {
  FakeBench bench;
  bench.Bus.Registers[0x77] = 0b01'10'11'10;  // Remote2, Local, Remote1, 12V
  bench.Bus.Registers[0x76] = 0b11'01'10'00;  // 5V, Vcc, Vccp, 2.5V
  const std::pair<const char*, float> fractions[] = {{".5", .5F}, {".75", .75F}, {".25", .25F}};
  for (int channel = 0; channel < 3; ++channel) {
    const TempFractionReading reading = TempFraction(bench.Link, channel);
    EXPECT_EQ(reading.Text, fractions[channel].first);
    EXPECT_EQ(reading.Value, fractions[channel].second);
  }
  EXPECT_EQ(bench.Bus.Diary, Diary(3, "port read 5A 77"));

  bench.Bus.Diary.clear();
  const int extensions[] = {3, 2, 2, 1, 0};
  for (int channel = 0; channel < 5; ++channel) EXPECT_EQ(VoltageExtension(bench.Link, channel), extensions[channel]);
  const std::string in76 = "port read 5A 76";
  EXPECT_EQ(bench.Bus.Diary, (Diary{in76, "port read 5A 77", in76, in76, in76}));
}

TEST(ChipReadings, NoFractionIsABlank) {
  FakeBench bench;
  EXPECT_EQ(TempFraction(bench.Link, 1).Text, " ");
  EXPECT_EQ(TempFraction(bench.Link, 1).Value, 0);
}

TEST(ChipReadings, HysteresisComesFromTheZonesOwnHalfByte) {
  FakeBench bench;
  bench.Bus.Registers[0x6D] = 0x4C;
  bench.Bus.Registers[0x6E] = 0x5A;
  const int celsius[] = {0xC, 0x4, 0x5};
  for (int zone = 0; zone < 3; ++zone) EXPECT_EQ(HysteresisOf(bench.Link, zone), celsius[zone]) << zone;
}

TEST(ChipReadings, ATachLimitIsWrittenLowByteFirstAndNotAtAllWhenItDoesNotFit) {
  FakeBench bench;
  FanCommon fans;
  TachLimitWrite(bench.Link, fans, 1, 0);
  EXPECT_EQ(bench.Bus.Diary, (Diary{"port write 5A 54 FF", "port write 5A 55 FF"}));

  bench.Bus.Diary.clear();
  fans.ProgrammedPulses[3] = 2;
  TachLimitWrite(bench.Link, fans, 4, 1000);
  EXPECT_EQ(bench.Bus.Diary, (Diary{"port write 5A 5A 30", "port write 5A 5B 2A"}));

  bench.Bus.Diary.clear();
  for (const float rpm : {-1.F, 82.F, 160.F}) EXPECT_THROW(TachLimitWrite(bench.Link, fans, 4, rpm), OutOfRange) << rpm;
  for (const int fan : {0, 5}) EXPECT_THROW(TachLimitWrite(bench.Link, fans, fan, 1000), std::out_of_range);
  EXPECT_EQ(bench.Bus.Diary, Diary{});
}

}  // namespace
}  // namespace krx
