// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simchip.h"

#include <gtest/gtest.h>

#include <string>

#include "link/registeraccess.h"
#include "simulator/simwords.h"
#include "support/testbench.h"

namespace krx {
namespace {

SimOptions Quiet(double speed) {
  SimOptions options;
  options.Noise = 0;
  options.Speed = speed;
  return options;
}

/// A chip on the SMBus without noise: no switches, exact numbers.
struct QuietChip : TestBench {
  explicit QuietChip(double speed = 1) : TestBench(Medium::Smbus, Quiet(speed)) {}
  void Write(std::uint8_t reg, int value) { Chip().Write(reg, static_cast<std::uint8_t>(value)); }
  int Read(std::uint8_t reg) { return Chip().Read(reg, Time.Seconds()); }
  int Pair(std::uint8_t low) { return Peek(low) + 256 * Peek(static_cast<std::uint8_t>(low + 1)); }
};

TEST(SimChip, AFreshChipReadsTheDefaultsOfAllSavedRegisters) {
  const struct {
    int First, Last, Value;
  } rows[] = {
      {0x30, 0x32, 0xFF}, {0x33, 0x35, 0x64}, {0x36, 0x37, 0x00}, {0x40, 0x40, 0x00}, {0x44, 0x44, 0x00},
      {0x45, 0x45, 0xFF}, {0x46, 0x46, 0x00}, {0x47, 0x47, 0xFF}, {0x48, 0x48, 0x00}, {0x49, 0x49, 0xFF},
      {0x4A, 0x4A, 0x00}, {0x4B, 0x4B, 0xFF}, {0x4C, 0x4C, 0x00}, {0x4D, 0x4D, 0xFF}, {0x4E, 0x4E, 0x81},
      {0x4F, 0x4F, 0x7F}, {0x50, 0x50, 0x81}, {0x51, 0x51, 0x7F}, {0x52, 0x52, 0x81}, {0x53, 0x53, 0x7F},
      {0x54, 0x5B, 0xFF}, {0x5C, 0x5E, 0x62}, {0x5F, 0x61, 0xC4}, {0x62, 0x63, 0x00}, {0x64, 0x66, 0x80},
      {0x67, 0x69, 0x5A}, {0x6A, 0x6C, 0x64}, {0x6D, 0x6D, 0x44}, {0x6E, 0x6E, 0x40}, {0x6F, 0x78, 0x00},
      {0x7A, 0x7A, 0x00}, {0x7B, 0x7B, 0x55}, {0x7D, 0x7D, 0x00}, {0x3D, 0x3D, 0x5A}, {0x3E, 0x3E, 0x41},
      {0x3F, 0x3F, 0x10}, {0x25, 0x27, 0x80}, {0x20, 0x24, 0x00},
  };
  TestBench bench;
  bench.Advance(10);
  for (const auto& row : rows) {
    for (int reg = row.First; reg <= row.Last; ++reg) {
      EXPECT_EQ(ReadByte(bench.Bus, static_cast<std::uint8_t>(reg)), row.Value) << std::hex << reg;
    }
  }
}

TEST(SimChip, AWriteChangesOnlyWritableBits) {
  QuietChip chip;
  for (int reg = 0; reg <= 0xFF; ++reg) {
    const bool listed = (reg >= 0x20 && reg <= 0x37) || (reg >= 0x3D && reg <= 0x7F && reg != 0x7C);
    const bool readOnly = reg <= 0x2F || (reg >= 0x3D && reg <= 0x3F) || reg == 0x41 || reg == 0x42 || reg == 0x76 ||
                          reg == 0x77 || reg == 0x79;
    const auto address = static_cast<std::uint8_t>(reg);
    const int before = chip.Peek(address);
    const int wanted = reg == 0x40 ? 0xFE : before ^ 0xFF;
    chip.Write(address, wanted);
    int expected = listed && !readOnly ? wanted : before;
    if (reg == 0x40) expected = 0xFA;                               // RDY
    if (reg == 0x43) expected = (wanted & 0xC0) | (before & 0x3F);  // VID
    if (reg >= 0x30 && reg <= 0x32) expected = 0xFF;                // latched; the output is Always On
    EXPECT_EQ(chip.Peek(address), expected) << std::hex << reg;
  }
}

TEST(SimChip, ConvertsWhenStartedAndThenEvery100Milliseconds) {
  QuietChip chip;
  chip.Plant().HoldTemperature(0, 41.5);
  chip.Advance(1);
  EXPECT_EQ(chip.Read(0x26), 0x80);
  chip.Write(0x40, 0x01);
  EXPECT_EQ(chip.Read(0x40), 0x05);  // RDY
  EXPECT_EQ(chip.Read(0x77) & 0x30, 0x20);
  EXPECT_EQ(chip.Read(0x26), 41);
  chip.Plant().HoldTemperature(0, 50);
  chip.Advance(0.09);
  EXPECT_EQ(chip.Read(0x26), 41);
  chip.Advance(0.02);
  EXPECT_EQ(chip.Read(0x26), 50);
  chip.Write(0x40, 0x00);
  chip.Plant().HoldTemperature(0, 60);
  chip.Advance(1);
  EXPECT_EQ(chip.Read(0x26), 50);
}

TEST(SimChip, NegativeTemperaturesCountTheFractionAwayFromZero) {
  const struct {
    double Celsius;
    int Byte, Fraction;
  } rows[] = {{127.75, 0x7F, 3}, {0.25, 0, 1},      {-0.5, 0, 0},    {-0.75, 0xFF, 0}, {-1.0, 0xFF, 0},
              {-1.5, 0xFF, 2},   {-10.25, 0xF6, 1}, {-128, 0x80, 0}, {-200, 0x80, 0},  {200, 0x7F, 3}};
  for (const auto& row : rows) {
    const TemperatureCode code = EncodeTemperature(row.Celsius);
    EXPECT_EQ(code.Byte, row.Byte) << row.Celsius;
    EXPECT_EQ(code.Fraction, row.Fraction) << row.Celsius;
  }
}

TEST(SimChip, AlarmsAreLevelsOfTheLastConversion) {
  QuietChip chip;
  chip.Plant().HoldTemperature(0, 28);
  chip.Plant().HoldTemperature(1, 45);
  chip.Plant().HoldTemperature(2, 45);
  const struct {
    std::uint8_t Reg;
    int Value;
    int Status1, Status2;
  } rows[] = {
      {0x40, 0x01, 0x00, 0x00}, {0x4F, 44, 0x10, 0x00},    // Remote1 above its high limit
      {0x4F, 45, 0x00, 0x00},                              // at the limit is inside
      {0x50, 29, 0x20, 0x00},                              // Local below its low limit
      {0x50, 20, 0x00, 0x00},   {0x71, 0xF6, 0x20, 0x00},  // offset -10
      {0x71, 0x00, 0x00, 0x00}, {0x6C, 45, 0x80, 0x02},    // Remote2 at its THERM limit: OVT, and with it OOL
      {0x6C, 0x80, 0x00, 0x00},                            // no THERM limit
      {0x4A, 0xF0, 0x08, 0x00},                            // 5V below its low limit
      {0x7D, 0x02, 0x08, 0x00},                            // THERM on the 5V pin, but not enabled
      {0x78, 0x02, 0x00, 0x00},                            // enabled: the pin is not measured
      {0x57, 0x05, 0x80, 0x08},                            // fan 2 counts 3000, its limit is now 0x0500
  };
  for (const auto& row : rows) {
    if (row.Reg == 0x57) chip.Write(0x56, 0x00);
    chip.Write(row.Reg, row.Value);
    chip.Advance(1.1);
    EXPECT_EQ(chip.Read(0x41), row.Status1) << std::hex << int(row.Reg);
    EXPECT_EQ(chip.Read(0x42), row.Status2) << std::hex << int(row.Reg);
    EXPECT_EQ(chip.Read(0x42), row.Status2) << "not cleared by reading";
  }
}

TEST(SimChip, CountsTachometersWhetherStartedOrNot) {
  QuietChip chip;
  EXPECT_EQ(chip.Pair(0x28), 2250);  // 5,400,000 * 2 / 4800: two pulses programmed, one real
  EXPECT_EQ(chip.Pair(0x2E), 4500);
  chip.Write(0x7B, 0x54);  // as many programmed as the fan gives
  chip.Advance(1);
  EXPECT_EQ(chip.Pair(0x28), 1125);
  chip.Write(0x5C, 0x80);  // Always Off
  chip.Write(0x78, 0x08);  // FAST
  chip.Advance(0.3);
  EXPECT_GT(chip.Pair(0x28), 1125);
  chip.Advance(6);
  EXPECT_EQ(chip.Pair(0x28), 0xFFFF);
}

TEST(SimChip, OnTheBoardPulsesNeedTheSwitchesOfTheirTachSource) {
  TestBench bench;
  const auto present = [&] {
    std::string fans;
    for (int fan = 0; fan < 4; ++fan) fans += bench.Peek(static_cast<std::uint8_t>(0x29 + 2 * fan)) != 0xFF ? '1' : '0';
    return fans;
  };
  const auto device = bench.Root.Get().ObtainPrinterPortAdapter()->ObtainBusDevice();
  EXPECT_EQ(present(), "0000");
  device->SendByte(0x90, 0x42);  // tach 1 and 2 wired for three wires
  device->SendByte(0x92, 0xA5);  // tach 3 and 4 for two
  EXPECT_EQ(present(), "1100");
  WriteByte(bench.Bus, 0x73, 0x05);
  EXPECT_EQ(present(), "1110") << "pulses are missed at the next count, and seen at once";
  bench.Advance(1);
  EXPECT_EQ(present(), "0110");
}

TEST(SimChip, ProchotCountsWhileTheInputIsEnabledAndRouted) {
  for (const double speed : {1, 20}) {
    QuietChip chip(speed);
    chip.Plant().HoldTemperature(1, 76);  // half of the time
    chip.Advance(1);
    EXPECT_EQ(chip.Read(0x79), 0);
    chip.Write(0x78, 0x02);
    chip.Advance(1.001);
    EXPECT_EQ(chip.Read(0x79), 21);  // 500 ms in counts of 22.76 ms, as the reader's clock has them
    EXPECT_EQ(chip.Read(0x79), 0);
    chip.Advance(30);
    EXPECT_EQ(chip.Read(0x79), 255);
  }
}

// At this speed everything is measured anew between two transfers on the SMBus.
TEST(SimChip, WhatBelongsTogetherIsReadTogetherAtEverySpeed) {
  for (const char* fault : {"stall=4", "slow=1.1"}) {
    SimOptions options;
    options.Speed = 100;
    TestBench bench(TestBench::Medium::Smbus, options);
    bench.Sim.AddFault(*ParseFault(fault));
    for (const auto& [reg, value] : {std::pair{0x40, 0x01}, {0x78, 0x08}, {0x5C, 0xE0}}) {
      WriteByte(bench.Bus, static_cast<std::uint8_t>(reg), value);
    }
    const auto change = [&](bool up) {
      for (int zone = 0; zone < 3; ++zone) bench.Plant().HoldTemperature(zone, up ? 90.25 : 20.75);
      bench.Chip().Write(0x30, up ? 255 : 80);
      bench.Advance(0.02);
    };
    for (const auto& [first, second] : {std::pair{0x28, 0x29}, {0x77, 0x26}, {0x77, 0x25}, {0x77, 0x27}}) {
      const auto upper = static_cast<std::uint8_t>(second);
      change(true);
      ReadByte(bench.Bus, static_cast<std::uint8_t>(first));
      const int together = bench.Peek(upper);
      change(false);
      EXPECT_NE(bench.Peek(upper), together);
      EXPECT_EQ(ReadByte(bench.Bus, upper), together) << fault << std::hex << " " << second;
      EXPECT_NE(ReadByte(bench.Bus, upper), together) << "once";
      change(true);
      ReadByte(bench.Bus, static_cast<std::uint8_t>(first));
      change(false);
      bench.Advance(1.1);
      EXPECT_NE(ReadByte(bench.Bus, upper), together) << "nobody waits that long";
    }
  }
}

}  // namespace
}  // namespace krx
