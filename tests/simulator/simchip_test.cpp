// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simchip.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>

#include "link/registeraccess.h"
#include "simulator/simwords.h"
#include "support/testbench.h"

namespace krx {
namespace {

/// A chip on the SMBus without noise: no switches, exact numbers.
struct QuietChip : TestBench {
  explicit QuietChip(double speed = 1) : TestBench(Medium::Smbus, {.Noise = 0, .Speed = speed}) {}
  int Read(std::uint8_t reg) { return Chip().Read(reg, Time.Seconds()); }
  int Pair(std::uint8_t low) { return Peek(low) + 256 * Peek(static_cast<std::uint8_t>(low + 1)); }
};

TEST(SimChip, APoweredUpChipReadsItsDefaults) {
  const char* const rows[] = {
      "00 00 00 00 00 80 80 80 FF FF FF FF FF FF FF FF ",  // 0x20: values
      "FF FF FF 64 64 64 00 00 00 00 00 00 00 5A 41 10 ",  // 0x30: duties, operating points, identity
      "00 00 00 0E 00 FF 00 FF 00 FF 00 FF 00 FF 81 7F ",  // 0x40: configuration, status, limits
      "81 7F 81 7F FF FF FF FF FF FF FF FF 62 62 62 C4 ",  // 0x50: limits, outputs
      "C4 C4 00 00 80 80 80 5A 5A 5A 64 64 64 44 40 00 ",  // 0x60: automatic control
      "00 00 00 00 00 00 00 00 00 00 00 55 00 00 00 00 ",  // 0x70: offsets, masks, pulses
  };
  TestBench bench;
  bench.Advance(10);
  for (int first = 0x20; const std::string row : rows) {
    std::string bytes;
    for (int reg = first; reg < first + 16; ++reg) {
      bytes += fmt::format("{:02X} ", ReadByte(bench.Bus, static_cast<std::uint8_t>(reg)));
    }
    EXPECT_EQ(bytes, row) << first;
    first += 16;
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
    chip.Chip().Write(address, static_cast<std::uint8_t>(wanted));
    int expected = listed && !readOnly ? wanted : before;
    if (reg == 0x40) expected = 0xFA;                               // RDY
    if (reg == 0x43) expected = (wanted & 0xC0) | (before & 0x3F);  // VID
    if (reg >= 0x30 && reg <= 0x32) expected = 0xFF;                // latched; the output is Always On
    EXPECT_EQ(chip.Peek(address), expected) << std::hex << reg;
  }
}

TEST(SimChip, ConvertsWhenStartedAndThenEvery100Milliseconds) {
  QuietChip chip;
  chip.Advance(1);
  chip.Plant().HoldTemperature(0, 41.5);
  chip.Write("40:01");
  EXPECT_EQ(chip.Read(0x40), 0x05);  // RDY
  std::string values;                // 2.396, 1.471, 3.31, 5.04 and 12.1 V with their two bits each; 41.5 °C
  for (const int reg : {0x20, 0x21, 0x22, 0x23, 0x24, 0x76}) {
    values += fmt::format("{:02X} ", chip.Read(static_cast<std::uint8_t>(reg)));
  }
  EXPECT_EQ(values, "BB 7D C5 C1 C2 C9 ");
  EXPECT_EQ(chip.Peek(0x77) & 0x33, 0x20);
  EXPECT_EQ(chip.Read(0x26), 41);
  const auto later = [&](double celsius, double seconds) {
    chip.Plant().HoldTemperature(0, celsius);
    chip.Advance(seconds);
    return chip.Read(0x26);
  };
  EXPECT_EQ(later(50, 0.09), 41);
  EXPECT_EQ(later(50, 0.02), 50);
  chip.Write("40:00");
  EXPECT_EQ(later(60, 1), 50);
}

TEST(SimChip, NegativeTemperaturesCountTheFractionAwayFromZero) {
  const std::tuple<double, int, int> rows[] = {{127.75, 0x7F, 3}, {0.25, 0, 1},    {-0.5, 0, 0},      {-0.75, 0xFF, 0},
                                               {-1.0, 0xFF, 0},   {-1.5, 0xFF, 2}, {-10.25, 0xF6, 1}, {-128, 0x80, 0},
                                               {-200, 0x80, 0},   {200, 0x7F, 3}};
  for (const auto& [celsius, byte, fraction] : rows) {
    const TemperatureCode code = EncodeTemperature(celsius);
    EXPECT_EQ(std::pair(int{code.Byte}, int{code.Fraction}), std::pair(byte, fraction)) << celsius;
  }
}

TEST(SimChip, AlarmsAreLevelsOfTheLastConversion) {
  QuietChip chip;
  for (int zone = 0; zone < 3; ++zone) chip.Plant().HoldTemperature(zone, zone == 0 ? 28 : 45);
  const std::tuple<const char*, int, int, const char*> rows[] = {
      {"40:01", 0x00, 0x00, "started"},
      {"4F:2C", 0x10, 0x00, "Remote1 above its high limit"},
      {"4F:2D 50:1D", 0x20, 0x00, "at the limit is inside; Local below its low limit"},
      {"50:14 71:F6", 0x20, 0x00, "offset -10"},
      {"71:00 53:2C", 0x40, 0x00, "Remote2 above its high limit"},
      {"53:7F 6C:2D", 0x80, 0x02, "Remote2 at its THERM limit: OVT, and with it OOL"},
      {"6C:80 44:FF", 0x01, 0x00, "no THERM limit; 2.5V below its low limit"},
      {"44:00 47:00", 0x02, 0x00, "Vccp above its high limit"},
      {"47:FF 48:FF", 0x04, 0x00, "Vcc below its low limit"},
      {"48:00 4C:FF", 0x80, 0x01, "12V below its low limit"},
      {"4C:00 4A:F0", 0x08, 0x00, "5V below its low limit"},
      {"7D:02", 0x08, 0x00, "THERM on the 5V pin, but not enabled"},
      {"78:02", 0x00, 0x00, "enabled: the pin is not measured"},
      {"56:00 57:05", 0x80, 0x08, "fan 2 counts 3000, its limit is now 0x0500"},
  };
  for (const auto& [write, status1, status2, why] : rows) {
    chip.Write(write);
    chip.Advance(1.1);
    for (int reading = 0; reading < 2; ++reading) {  // which does not clear it
      EXPECT_EQ(chip.Read(0x41), status1) << why;
      EXPECT_EQ(chip.Read(0x42), status2) << why;
    }
  }
}

TEST(SimChip, CountsTachometersWhetherStartedOrNot) {
  QuietChip chip;
  EXPECT_EQ(chip.Pair(0x28), 2250);  // 5,400,000 * 2 / 4800: two pulses programmed, one real
  EXPECT_EQ(chip.Pair(0x2E), 4500);
  chip.Write("7B:54");  // programmed to the fan's actual pulses
  chip.Advance(1);
  EXPECT_EQ(chip.Pair(0x28), 1125);
  chip.Write("5C:80 78:08");  // Always Off; FAST
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
    chip.Write("78:02");
    chip.Advance(1.001);
    EXPECT_EQ(chip.Read(0x79), 21);  // 500 ms in counts of 22.76 ms, as the reader's clock has them
    EXPECT_EQ(chip.Read(0x79), 0);
    chip.Advance(30);
    EXPECT_EQ(chip.Read(0x79), 255);
  }
}

TEST(SimChip, OnTheBoardProchotArrivesOverTheSwitchOfItsPin) {
  for (const auto& [settings, u3, counts] : {std::tuple{"78:02", 0x40, true},
                                             {"78:02", 0xBF, false},
                                             {"78:02 7D:02", 0x10, true},
                                             {"78:02 7D:02", 0xEF, false}}) {
    TestBench bench;
    *bench.Sim.Board().Device(0x96) = static_cast<std::uint8_t>(u3);
    bench.Write(settings);
    bench.Plant().HoldTemperature(1, 80);
    bench.Advance(0.1);
    EXPECT_EQ(bench.Peek(0x79) > 0, counts) << settings << " " << u3;
  }
}

// At this speed everything is measured again between two transfers on the SMBus.
TEST(SimChip, ValuesInTwoRegistersAreCoherentAtEverySpeed) {
  for (const char* fault : {"stall=4", "slow=1.1"}) {
    TestBench bench(TestBench::Medium::Smbus, {.Speed = 100});
    bench.Sim.AddFault(*ParseFault(fault));
    bench.Write("40:01 78:08 5C:E0");
    const auto change = [&](bool up) {
      for (int zone = 0; zone < 3; ++zone) bench.Plant().HoldTemperature(zone, up ? 90.25 : 20.75);
      bench.Write(up ? "30:FF" : "30:50");
      bench.Advance(0.02);
    };
    const auto readOn = [&](std::uint8_t first, std::uint8_t upper, double seconds) {
      change(true);
      ReadByte(bench.Bus, first);
      change(false);
      bench.Advance(seconds);
      return ReadByte(bench.Bus, upper);
    };
    for (const auto& [first, upper] : std::initializer_list<std::pair<std::uint8_t, std::uint8_t>>{
             {0x28, 0x29}, {0x77, 0x26}, {0x77, 0x25}, {0x77, 0x27}}) {
      change(true);
      const int together = bench.Peek(upper);
      EXPECT_EQ(readOn(first, upper, 0), together) << fault << std::hex << " " << int{upper};
      EXPECT_NE(ReadByte(bench.Bus, upper), together) << "once";
      EXPECT_NE(readOn(first, upper, 1.1), together) << "the latch has expired";
    }
  }
}

}  // namespace
}  // namespace krx
