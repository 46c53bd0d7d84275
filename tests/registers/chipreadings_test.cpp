// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/chipreadings.h"

#include <gtest/gtest.h>

#include "link/commserror.h"
#include "support/testbench.h"

namespace krx {
namespace {

TEST(ChipReadings, EachTemperatureAndVoltageHasItsOwnBitsOfTheExtensionRegisters) {
  TestBench bench;
  bench.Poke("77:9E 76:D8");  // Remote2 2, Local 1, Remote1 3, 12V 2; 5V 3, Vcc 1, Vccp 2, 2.5V 0
  const std::pair<std::string, float> fractions[] = {{".25", .25F}, {".75", .75F}, {".5", .5F}};
  for (int channel = 0; channel < 3; ++channel) {
    const TempFractionReading reading = TempFraction(bench.Bus, channel);
    EXPECT_EQ(std::pair(reading.Text, reading.Value), fractions[channel]) << channel;
  }
  const int extensions[] = {3, 2, 2, 1, 0};
  for (int channel = 0; channel < 5; ++channel) EXPECT_EQ(VoltageExtension(bench.Bus, channel), extensions[channel]);
  EXPECT_EQ(bench.Traffic(), "R77 R77 R77 R76 R77 R76 R76 R76");
  bench.Poke("77:CF");
  EXPECT_EQ(TempFraction(bench.Bus, 0).Text + TempFraction(bench.Bus, 1).Text, " .75");
}

TEST(ChipReadings, HysteresisComesFromTheZonesOwnHalfByte) {
  TestBench bench;
  bench.Poke("6D:4C 6E:5A");
  const int celsius[] = {0xC, 0x4, 0x5};
  for (int zone = 0; zone < 3; ++zone) EXPECT_EQ(HysteresisOf(bench.Bus, zone), celsius[zone]) << zone;
}

TEST(ChipReadings, ATachLimitIsWrittenLowByteFirstAndNotAtAllWhenItDoesNotFit) {
  TestBench bench;
  FanCommon fans;
  fans.ProgrammedPulses[3] = 2;
  TachLimitWrite(bench.Bus, fans, 1, 0);
  TachLimitWrite(bench.Bus, fans, 4, 1000);
  EXPECT_EQ(bench.Traffic(), "W54:FF W55:FF W5A:30 W5B:2A");
  for (const float rpm : {-1.F, 82.F, 160.F}) EXPECT_THROW(TachLimitWrite(bench.Bus, fans, 4, rpm), OutOfRange) << rpm;
  for (const int fan : {0, 5}) EXPECT_THROW(TachLimitWrite(bench.Bus, fans, fan, 1000), std::out_of_range);
  EXPECT_EQ(bench.Traffic(), "");
}

}  // namespace
}  // namespace krx
