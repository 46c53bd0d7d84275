// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/conversions.h"

#include <gtest/gtest.h>

#include <cmath>

#include "link/commserror.h"

namespace krx {
namespace {

TEST(Conversions, TheFractionIncreasesTheMagnitudeOfANegativeTemperature) {
  const std::tuple<std::uint8_t, float, float> rows[] = {{0x7F, .75F, 127.75F}, {0x80, 0, -128},    {0xFF, 0, -1},
                                                         {0xFE, 0, -2},         {0xFF, .5F, -1.5F}, {0, .25F, .25F},
                                                         {0xF6, .25F, -10.25F}};
  for (const auto& [byte, fraction, celsius] : rows) EXPECT_EQ(TempFromByte(byte, fraction), celsius) << int{byte};
}

TEST(Conversions, WholeDegreesBecomeASignedByteOrAreRejected) {
  for (const auto& [degrees, byte] : {std::pair{-128, 0x80}, {-2, 0xFE}, {0, 0}, {127, 0x7F}}) {
    EXPECT_EQ(TempToByte(degrees), byte);
  }
  for (const int degrees : {-129, 128}) EXPECT_THROW(TempToByte(degrees), OutOfRange);
}

TEST(Conversions, VoltsFollowTheScaleOfTheirChannel) {
  const float fullScale[] = {6.630F, 15.912F, 2.9886F, 4.284F, 3.264F};
  for (int channel = 0; channel < 5; ++channel) {
    EXPECT_FLOAT_EQ(VoltageFromByte(channel, 255), fullScale[channel]);
    EXPECT_FLOAT_EQ(VoltageFromCode(channel, 1020), fullScale[channel]);
  }
  for (const int channel : {-1, 5}) EXPECT_EQ(VoltageFromCode(channel, 1023) + VoltageFromByte(channel, 255), 0);
}

TEST(Conversions, AVoltageLimitIsFlooredInSinglePrecisionAndCapped) {
  // 0.338 V would be 12 in double precision, and 0.26 V is 9 and not 10.
  const std::tuple<const char*, float, int> rows[] = {{"5V", 5.0F, 192},   {"5V", 7.0F, 255},  {"Vccp", 1.5F, 127},
                                                      {"12V", 16.0F, 255}, {"Vcc", 3.3F, 196}, {"5V", 0, 0},
                                                      {"5V", 0.338F, 13},  {"5V", 0.26F, 9}};
  for (const auto& [name, volts, byte] : rows) EXPECT_EQ(VoltageToByte(name, volts), byte) << name << ' ' << volts;
  for (const float volts : {-0.001F, std::nanf("")}) EXPECT_THROW(VoltageToByte("5V", volts), OutOfRange);
  EXPECT_THROW(VoltageToByte("3.3V", 1), CommsError);
}

TEST(Conversions, TheTachRelationIsItsOwnInverseAndAStoppedFanIsZero) {
  EXPECT_EQ(TachToRPM(0), 65535);
  EXPECT_EQ(TachToRPM(2250), 2400);
  EXPECT_EQ(TachToRPM(2400), 2250);
  EXPECT_GE(TachToRPM(65060), 83);
  for (const float stopped : {65061.F, 65300.F, 65535.F}) EXPECT_EQ(TachToRPM(stopped), 0) << stopped;
}

TEST(Conversions, ALimitCountIsCorrectedRoundedToEvenAndChecked) {
  // A quarter of 2400 RPM is 562.5 counts, of 800 RPM 1687.5.
  const std::tuple<float, float, int> rows[] = {{1000, 2, 10800}, {0, 4, 65535}, {2400, .25F, 562}, {800, .25F, 1688},
                                                {83, 1, 65060},   {1e7F, 1, 1},  {2e7F, 1, 0}};
  for (const auto& [rpm, correction, count] : rows) EXPECT_EQ(TachLimitCount(rpm, correction), count) << rpm;
  for (const float rpm : {-1.F, -1e9F, 1.F, 82.F, std::nanf("")}) EXPECT_THROW(TachLimitCount(rpm, 1), OutOfRange);
  EXPECT_THROW(TachLimitCount(100, 2), OutOfRange);
}

TEST(Conversions, DutyAndThermInPercent) {
  EXPECT_EQ(DutyToPercent(255), 100);
  EXPECT_NEAR(DutyToPercent(128), 50.196, 0.001);
  EXPECT_FLOAT_EQ(ThermShare(10, 1).value(), 22.76F);
  EXPECT_EQ(ThermShare(44, 1), 100) << "capped";
  EXPECT_FLOAT_EQ(ThermShare(44, 4).value(), 25.036F);
  for (const float seconds : {0.F, -1.F}) EXPECT_EQ(ThermShare(44, seconds), std::nullopt);
  EXPECT_FLOAT_EQ(ThermTime(10), 227.6F);
}

}  // namespace
}  // namespace krx
