// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simdrive.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "simulator/simwords.h"
#include "support/testbench.h"

namespace krx {
namespace {

/// A monitoring chip without noise.
struct DriveBench : TestBench {
  explicit DriveBench(const char* settings) : TestBench(Medium::Smbus, {.Noise = 0}) {
    Write("40:01");
    Write(settings);
  }
  /// The duty after holding the temperatures for this time.
  int Duty(double local, double remote1, double remote2, double seconds = 0.2) {
    for (int zone = 0; const double celsius : {local, remote1, remote2}) Plant().HoldTemperature(zone++, celsius);
    Advance(seconds);
    return Peek(static_cast<std::uint8_t>(0x30 + Pwm));
  }
  int Pwm = 0;
};

// Tmin: Local 20, Remote1 30, Remote2 40; 6.7, 4.19 and 5.03 % per °C; minimum 0x33 = 51.
TEST(SimDrive, EachBehaviourFollowsItsZones) {
  DriveBench bench("68:14 67:1E 69:28 60:74 5F:94 61:84 64:33 30:66");  // 0x66 is latched before manual control
  const int local = 51 + 68, remote1 = 51 + 53, remote2 = 51 + 64;
  const std::pair<const char*, int> behaviours[] = {{"5C:00", remote1}, {"5C:20", local}, {"5C:40", remote2},
                                                    {"5C:60", 255},     {"5C:80", 0},     {"5C:A0", local},
                                                    {"5C:C0", local},   {"5C:E0", 0x66}};
  for (const auto& [behaviour, duty] : behaviours) {
    bench.Write(behaviour);
    EXPECT_EQ(bench.Duty(24, 35, 45), duty) << behaviour;
  }
  bench.Write("5C:A0");
  EXPECT_EQ(bench.Duty(20, 99, 45), remote2) << "code 5 does not look at Remote1";
  bench.Write("5C:C0");
  EXPECT_EQ(bench.Duty(20, 99, 45), 255);
  bench.Write("5C:A0 40:00");
  EXPECT_EQ(bench.Peek(0x30), 255) << "monitoring off";
}

TEST(SimDrive, SwitchesOffOnlyBelowTheHysteresisAndOnAgainAtTmin) {
  DriveBench bench("67:28 6D:50 5C:00");  // Remote1, no spin-up
  const std::tuple<double, const char*, int> rows[] = {{40, "62:00", 128},  {35, "62:00", 128},    {34.75, "62:00", 0},
                                                       {39.75, "62:00", 0}, {39.75, "62:20", 128}, {39.75, "62:00", 0},
                                                       {40, "62:00", 128},  {100, "62:00", 255}};
  for (const auto& [celsius, hold, duty] : rows) {
    bench.Write(hold);
    EXPECT_EQ(bench.Duty(25, celsius, 25), duty) << celsius << " " << hold;
  }
}

TEST(SimDrive, ASlowRampBeginsAtTheMinimumAndContinuesDuringTheSpinUp) {
  DriveBench bench("67:28 5F:34 62:0C 5C:03");  // 16.75 % per °C, 64 counts a second, 400 ms
  EXPECT_EQ(bench.Duty(25, 25, 25, 10), 0);
  EXPECT_EQ(bench.Duty(25, 42, 25, 0.3), 255);  // target 128 + 85 = 213
  EXPECT_NEAR(bench.Duty(25, 42, 25, 0.3), 160, 9);
  EXPECT_EQ(bench.Duty(25, 42, 25, 1.5), 213);
}

TEST(SimDrive, EachCodeHasItsSpinUpTimeAndItsRampRate) {
  const std::pair<int, int> rows[] = {{0, 2}, {10, 4}, {25, 6}, {40, 10}, {67, 16}, {100, 24}, {200, 48}, {400, 96}};
  for (int code = 0; const auto& [steps, countsInAQuarterSecond] : rows) {
    DriveBench bench("67:28 5F:34 64:00 65:00 66:00 5C:00 5D:00 5E:00");
    bench.Pwm = code % 3;
    EXPECT_EQ(bench.Duty(25, 25, 25), 0);
    bench.Write(fmt::format("5{:X}:0{}", 0xC + bench.Pwm, code));
    int full = 0;
    for (int step = 0; step < 420; ++step) full += bench.Duty(25, 42, 25, 0.01) == 255 ? 1 : 0;
    EXPECT_EQ(full, steps) << code;
    const char* const acoustics[] = {"40:21 62:0{:X}", "40:21 63:{:X}0", "40:21 63:0{:X}"};
    bench.Write(fmt::format(fmt::runtime(acoustics[bench.Pwm]), 8 + code));
    EXPECT_EQ(bench.Duty(25, 25, 25, 30), 0);
    const int before = bench.Duty(25, 50, 25);
    EXPECT_NEAR(bench.Duty(25, 50, 25, 0.25) - before, countsInAQuarterSecond, 1) << code;
    ++code;
  }
}

TEST(SimDrive, ManualControlKeepsTheDutyUnlessOneWasWrittenSince) {
  DriveBench bench("67:1E 5F:94");
  const int automatic = 128 + 53;
  // 5C:00 follows Remote1, 5C:E0 is manual control, 5C:80 is Always Off; 40:09 is full speed.
  const std::pair<const char*, int> rows[] = {
      {"5C:00", automatic}, {"5C:E0", automatic}, {"30:40", 0x40}, {"5C:00", automatic}, {"5C:E0", automatic},
      {"5C:00", automatic}, {"30:50", automatic}, {"5C:E0", 0x50}, {"5C:80", 0},         {"5C:E0", 0},
      {"30:60", 0x60},      {"40:09", 255},       {"30:70", 255},  {"40:01", 0x70},
  };
  for (const auto& [write, duty] : rows) {
    bench.Write(write);
    EXPECT_EQ(bench.Duty(25, 35, 25, 1), duty) << write;
  }
}

TEST(SimDrive, AnOverheatedZoneAndAnOpenDiodeGetFullDuty) {
  DriveBench bench("67:1E 6A:32 6D:40 5F:F4 5C:00");  // THERM limit 50 °C, hysteresis 4 °C, 0.84 % per °C
  const auto gives = [&](double celsius) {
    const int duty = bench.Duty(25, celsius, 25);
    return fmt::format("{} {:02X}", duty, bench.Peek(0x42));
  };
  EXPECT_EQ(gives(49), "169 00");
  EXPECT_EQ(gives(50), "255 02");
  EXPECT_EQ(gives(46), "255 02") << "not below limit - hysteresis";
  EXPECT_EQ(gives(45.75), "162 00");
  EXPECT_EQ(gives(49), "169 00");
  bench.Sim.AddFault(*ParseFault("diode=1"));
  EXPECT_EQ(gives(49), "255 40");
  bench.Write("5C:40");  // Remote2 drives it
  EXPECT_EQ(gives(49), "0 40");
}

TEST(SimDrive, TheFansDutyFollowsPolarityAndPinFunction) {
  DriveBench bench("30:33 31:33 5C:F0 5D:E0");
  EXPECT_EQ(bench.Chip().FanDuty(), (std::array<double, 3>{0.8, 0.2, 1}));
  bench.Write("78:01");  // PWM2 is the alert output
  EXPECT_EQ(bench.Chip().FanDuty(), (std::array<double, 3>{0.8, 1, 1}));
  bench.Pwm = 1;
  bench.Poke("31:80");
  EXPECT_EQ(bench.Duty(25, 25, 25), 0x80);
}

TEST(SimDrive, DynamicTminMovesOneDegreePerPeriodBetweenLowLimitAndOperatingPoint) {
  // Remote1: operating point 70, Tmin 60, low limit 57 °C; code 1: down every second, up every two
  DriveBench bench("33:46 67:3C 4E:39 5C:00 36:20 37:40");
  const std::tuple<double, double, int> rows[] = {{71, 1.15, 59}, {71, 1, 58},  {71, 5, 57}, {70, 5, 57},
                                                  {65, 4.15, 59}, {69, 60, 70}, {20, 30, 70}};
  const auto tmin = [&](double celsius, double seconds) {
    bench.Duty(25, celsius, 25, seconds);
    return bench.Peek(0x67);
  };
  for (const auto& [celsius, seconds, wanted] : rows) EXPECT_EQ(tmin(celsius, seconds), wanted) << celsius;
  bench.Write("36:21");  // code 5: 16 s
  EXPECT_EQ(tmin(80, 15.9), 70);
  EXPECT_EQ(tmin(80, 0.4), 69);
  bench.Sim.AddFault(*ParseFault("diode=1"));
  EXPECT_EQ(tmin(80, 60), 69) << "an open diode is not cold";
}

TEST(SimDrive, EachZoneHasItsOwnDynamicTminAndProchotLowersTheEnabledZones) {
  // Enabled, followed and heated zone by zone: Local, Remote1, Remote2; code 0: down every half second
  const std::pair<const char*, int> zones[] = {{"36:40", 0x68}, {"36:20", 0x67}, {"36:80", 0x69}};
  for (const auto& [enable, tmin] : zones) {
    DriveBench bench("68:32 67:32 69:32");
    bench.Write(enable);
    bench.Duty(110, 110, 110, 1.15);
    for (const int reg : {0x68, 0x67, 0x69})
      EXPECT_EQ(bench.Peek(static_cast<std::uint8_t>(reg)), reg == tmin ? 48 : 50);
  }
  DriveBench bench("68:32 69:32 78:02 36:D0 37:01");  // THERM of 78 °C at Remote1 counts for Remote2, whose code is 1
  bench.Duty(25, 78, 25, 1.15);
  EXPECT_EQ(bench.Peek(0x69), 49);
  EXPECT_EQ(bench.Peek(0x68), 50) << "none of its fans is running";
}

}  // namespace
}  // namespace krx
