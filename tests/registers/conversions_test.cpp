// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/conversions.h"

#include <gtest/gtest.h>

#include <cmath>

#include "link/commserror.h"

namespace krx {
namespace {

TEST(Conversions, TheFractionWidensTheMagnitudeOfANegativeTemperature) {
  struct Row {
    std::uint8_t Byte;
    float Fraction, Celsius;
  };
  const Row rows[] = {{0x7F, .75F, 127.75F}, {0x80, 0, -128}, {0xFF, 0, -1},        {0xFE, 0, -2},
                      {0xFF, .5F, -1.5F},    {0, .25F, .25F}, {0xF6, .25F, -10.25F}};
  for (const Row& row : rows) EXPECT_EQ(TempFromByte(row.Byte, row.Fraction), row.Celsius) << int{row.Byte};
}

TEST(Conversions, WholeDegreesBecomeASignedByteOrAreRejected) {
  EXPECT_EQ(TempToByte(-2), 0xFE);
  for (int degrees = -128; degrees <= 127; ++degrees) EXPECT_EQ(TempFromByte(TempToByte(degrees), 0), degrees);
  for (const int degrees : {-129, 128}) EXPECT_THROW(TempToByte(degrees), OutOfRange);
}

TEST(Conversions, VoltsFollowTheScaleOfTheirChannel) {
  const float fullScale[] = {6.630F, 15.912F, 2.9886F, 4.284F, 3.264F};
  for (int channel = 0; channel < 5; ++channel) {
    EXPECT_FLOAT_EQ(VoltageFromByte(channel, 255), fullScale[channel]);
    EXPECT_EQ(VoltageFromCode(channel, 4 * 200), VoltageFromByte(channel, 200));
  }
  EXPECT_FLOAT_EQ(VoltageFromCode(0, 1023), 6.6495F);
  for (const int channel : {-1, 5}) EXPECT_EQ(VoltageFromCode(channel, 1023) + VoltageFromByte(channel, 255), 0);
}

TEST(Conversions, AVoltageLimitIsFlooredInSinglePrecisionAndCapped) {
  struct Row {
    const char* Name;
    float Volts;
    int Byte;
  };
  const Row rows[] = {{"5V", 5.0F, 192},
                      {"5V", 7.0F, 255},
                      {"Vccp", 1.5F, 127},
                      {"12V", 16.0F, 255},
                      {"Vcc", 3.3F, 196},
                      {"5V", 0, 0},
                      {"5V", 0.338F, 13 /* in double precision 12 */},
                      {"5V", 0.26F, 9 /* not 10 */}};
  for (const Row& row : rows) EXPECT_EQ(VoltageToByte(row.Name, row.Volts), row.Byte) << row.Name << ' ' << row.Volts;
  for (const float volts : {-0.001F, std::nanf("")}) EXPECT_THROW(VoltageToByte("5V", volts), OutOfRange);
  try {
    VoltageToByte("3.3V", 1);
    FAIL();
  } catch (const CommsError& error) {
    EXPECT_EQ(error.BoxText(), "Error: 11, Division by zero");
  }
}

TEST(Conversions, TheTachRelationIsItsOwnInverseWithAFanThatStandsStillAtZero) {
  EXPECT_EQ(TachToRPM(0), 65535);
  EXPECT_EQ(TachToRPM(2250), 2400);
  EXPECT_EQ(TachToRPM(2400), 2250);
  EXPECT_GE(TachToRPM(65060), 83);
  for (const float stopped : {65061.F, 65300.F, 65535.F}) EXPECT_EQ(TachToRPM(stopped), 0) << stopped;
}

TEST(Conversions, ALimitCountIsCorrectedRoundedToEvenAndChecked) {
  struct Row {
    float Rpm, Correction;
    int Count;
  };
  const Row rows[] = {{1000, 2, 10800},
                      {0, 4, 65535},
                      {2400, .25F, 562 /* of 562.5 */},
                      {800, .25F, 1688 /* of 1687.5 */},
                      {83, 1, 65060},
                      {1e7F, 1, 1},
                      {2e7F, 1, 0}};
  for (const Row& row : rows) EXPECT_EQ(TachLimitCount(row.Rpm, row.Correction), row.Count) << row.Rpm;
  for (const float rpm : {-1.F, -1e9F, 1.F, 82.F, std::nanf("")})
    EXPECT_THROW(TachLimitCount(rpm, 1), OutOfRange) << rpm;
  EXPECT_THROW(TachLimitCount(100, 2), OutOfRange);
}

TEST(Conversions, DutyAndThermInPercent) {
  EXPECT_EQ(DutyToPercent(0), 0);
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
