// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simdrive.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "simulator/simwords.h"
#include "support/testbench.h"

namespace krx {
namespace {

struct DriveBench : TestBench {
  DriveBench()
      : TestBench(Medium::Smbus, [] {
          SimOptions options;
          options.Noise = 0;
          return options;
        }()) {}
  void Write(std::uint8_t reg, int value) { Chip().Write(reg, static_cast<std::uint8_t>(value)); }
  void Hold(double local, double remote1, double remote2) {
    Plant().HoldTemperature(0, local);
    Plant().HoldTemperature(1, remote1);
    Plant().HoldTemperature(2, remote2);
  }
  int Duty(int pwm = 0) { return Peek(static_cast<std::uint8_t>(0x30 + pwm)); }
};

// Tmin: Local 20, Remote1 30, Remote2 40; Trange 10 °C (6.7 % per °C), minimum 0x33; all zones 5 °C above Tmin.
TEST(SimDrive, EachBehaviourFollowsItsZones) {
  DriveBench bench;
  bench.Write(0x40, 0x01);
  bench.Write(0x68, 20);
  bench.Write(0x67, 30);
  bench.Write(0x69, 40);
  bench.Write(0x60, 0x74);  // Local
  bench.Write(0x5F, 0x94);  // Remote1, 4.19 % per °C
  bench.Write(0x61, 0x84);  // Remote2, 5.03 % per °C
  bench.Write(0x64, 0x33);
  bench.Hold(24, 35, 45);
  const int local = 51 + 68, remote1 = 51 + 53, remote2 = 51 + 64;
  const int expected[] = {remote1, local, remote2, 255, 0, local, local, 0x66};
  bench.Write(0x30, 0x66);  // latched before manual control
  for (int behaviour = 0; behaviour < 8; ++behaviour) {
    bench.Write(0x5C, behaviour << 5);
    bench.Advance(0.2);
    EXPECT_EQ(bench.Duty(), expected[behaviour]) << behaviour;
  }
  bench.Write(0x5C, 5 << 5);
  bench.Hold(20, 99, 45);
  bench.Advance(0.2);
  EXPECT_EQ(bench.Duty(), remote2) << "code 5 does not look at Remote1";
  bench.Write(0x5C, 6 << 5);
  bench.Advance(0.2);
  EXPECT_EQ(bench.Duty(), 255);
  bench.Write(0x40, 0x00);
  bench.Write(0x5C, 5 << 5);
  EXPECT_EQ(bench.Duty(), 255) << "monitoring off";
}

TEST(SimDrive, SwitchesOffOnlyBelowTheHysteresisAndOnAgainAtTmin) {
  DriveBench bench;
  bench.Write(0x40, 0x01);
  bench.Write(0x67, 40);
  bench.Write(0x6D, 0x50);
  bench.Write(0x5C, 0x00);  // Remote1, no spin-up
  const struct {
    double Celsius;
    int Hold, Duty;
  } rows[] = {{40, 0, 128},       {35, 0, 128},  {34.75, 0, 0}, {39.75, 0, 0},
              {39.75, 0x20, 128}, {39.75, 0, 0}, {40, 0, 128},  {100, 0, 255}};
  for (const auto& row : rows) {
    bench.Write(0x62, row.Hold);
    bench.Hold(25, row.Celsius, 25);
    bench.Advance(0.2);
    EXPECT_EQ(bench.Duty(), row.Duty) << row.Celsius << " " << row.Hold;
  }
}

TEST(SimDrive, SpinsUpAtFullDutyAndFollowsSlowlyWithAcoustics) {
  DriveBench bench;
  bench.Write(0x40, 0x01);
  bench.Write(0x67, 40);
  bench.Write(0x5F, 0x34);  // 16.75 % per °C
  bench.Write(0x62, 0x0C);  // ramp rate 8: 64 counts a second
  bench.Write(0x5C, 0x03);  // Remote1, 400 ms
  bench.Hold(25, 25, 25);
  bench.Advance(10);
  EXPECT_EQ(bench.Duty(), 0);
  bench.Hold(25, 42, 25);  // asks for 128 + 85 = 213
  bench.Advance(0.3);
  EXPECT_EQ(bench.Duty(), 255);
  bench.Advance(0.3);
  EXPECT_LT(bench.Duty(), 170);
  EXPECT_GT(bench.Duty(), 150);
  bench.Advance(1.5);
  EXPECT_EQ(bench.Duty(), 213);
  bench.Hold(25, 25, 25);
  bench.Advance(10);
  bench.Write(0x40, 0x21);  // no spin-up
  bench.Hold(25, 42, 25);
  bench.Advance(0.3);
  EXPECT_LT(bench.Duty(), 150);
  bench.Write(0x64, 0x00);
  bench.Write(0x62, 0x08);  // ramp rate 1: less than a tenth of a count in a step
  bench.Hold(25, 25, 25);
  bench.Advance(40);
  EXPECT_EQ(bench.Duty(), 0);
  bench.Hold(25, 42, 25);
  bench.Advance(2.1);
  EXPECT_NEAR(bench.Duty(), 16, 2) << "a slow ramp starts from nothing too";
}

TEST(SimDrive, ManualControlKeepsTheDutyUnlessOneWasWrittenSince) {
  DriveBench bench;
  bench.Write(0x40, 0x01);
  bench.Write(0x67, 30);
  bench.Write(0x5F, 0x94);
  bench.Hold(25, 35, 25);
  const int automatic = 128 + 53, manual = 0xE0, alwaysOff = 0x80, fullSpeed = 0x09;
  const struct {
    std::uint8_t Reg;
    int Value, Duty;
  } rows[] = {
      {0x5C, 0x00, automatic},   {0x5C, manual, automatic}, {0x30, 0x40, 0x40},      {0x5C, 0x00, automatic},
      {0x5C, manual, automatic}, {0x5C, 0x00, automatic},   {0x30, 0x50, automatic}, {0x5C, manual, 0x50},
      {0x5C, alwaysOff, 0},      {0x5C, manual, 0},         {0x30, 0x60, 0x60},      {0x40, fullSpeed, 255},
      {0x30, 0x70, 255},         {0x40, 0x01, 0x70},
  };
  for (const auto& row : rows) {
    bench.Write(row.Reg, row.Value);
    bench.Advance(1);
    EXPECT_EQ(bench.Duty(), row.Duty) << &row - rows;
  }
}

TEST(SimDrive, AnOverheatedZoneAndAnOpenDiodeGetFullDuty) {
  DriveBench bench;
  bench.Write(0x40, 0x01);
  bench.Write(0x67, 30);
  bench.Write(0x6A, 50);    // Remote1's THERM limit
  bench.Write(0x6D, 0x40);  // 4 °C
  bench.Write(0x5F, 0xF4);  // 0.84 % per °C
  bench.Write(0x5C, 0x00);
  const auto gives = [&](double celsius) {
    bench.Hold(25, celsius, 25);
    bench.Advance(0.2);
    return fmt::format("{} {:02X}", bench.Duty(), bench.Peek(0x42));
  };
  EXPECT_EQ(gives(49), "169 00");
  EXPECT_EQ(gives(50), "255 02");
  EXPECT_EQ(gives(46), "255 02") << "not below limit - hysteresis";
  EXPECT_EQ(gives(45.75), "162 00");
  EXPECT_EQ(gives(49), "169 00");
  bench.Sim.AddFault(*ParseFault("diode=1"));
  EXPECT_EQ(gives(49), "255 40");
  bench.Write(0x5C, 0x40);  // Remote2 drives it
  EXPECT_EQ(gives(49), "0 40");
}

TEST(SimDrive, WhatTheFanSeesFollowsPolarityAndTheUseOfThePin) {
  DriveBench bench;
  bench.Write(0x30, 51);
  bench.Write(0x31, 51);
  bench.Write(0x5C, 0xF0);
  bench.Write(0x5D, 0xE0);
  EXPECT_EQ(bench.Duty(), 51);
  EXPECT_DOUBLE_EQ(bench.Chip().FanDuty()[0], 0.8);
  EXPECT_DOUBLE_EQ(bench.Chip().FanDuty()[1], 0.2);
  bench.Write(0x78, 0x01);  // PWM2 is the alert output
  EXPECT_DOUBLE_EQ(bench.Chip().FanDuty()[0], 0.8);
  EXPECT_DOUBLE_EQ(bench.Chip().FanDuty()[1], 1);
}

TEST(SimDrive, DynamicTminMovesOneDegreePerPeriodBetweenLowLimitAndOperatingPoint) {
  DriveBench bench;
  bench.Write(0x40, 0x01);
  bench.Write(0x33, 70);
  bench.Write(0x67, 60);
  bench.Write(0x4E, 57);
  bench.Write(0x5C, 0x00);
  bench.Write(0x36, 0x20);  // Remote1
  bench.Write(0x37, 0x40);  // code 1: down every second, up every two
  const struct {
    double Celsius, Seconds;
    int Tmin;
  } rows[] = {{71, 1.15, 59}, {71, 1, 58}, {71, 5, 57}, {70, 5, 57}, {65, 4.15, 59}, {69, 60, 70}, {20, 30, 70}};
  for (const auto& row : rows) {
    bench.Hold(25, row.Celsius, 25);
    bench.Advance(row.Seconds);
    EXPECT_EQ(bench.Peek(0x67), row.Tmin) << row.Celsius;
  }
  bench.Write(0x36, 0x21);  // code 5: 16 s
  bench.Hold(25, 80, 25);
  bench.Advance(15.9);
  EXPECT_EQ(bench.Peek(0x67), 70);
  bench.Advance(0.4);
  EXPECT_EQ(bench.Peek(0x67), 69);
  bench.Sim.AddFault(*ParseFault("diode=1"));
  bench.Advance(60);
  EXPECT_EQ(bench.Peek(0x67), 69) << "an open diode is not cold";
}

}  // namespace
}  // namespace krx
