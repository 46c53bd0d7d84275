// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simcomms.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "link/commserror.h"
#include "link/registeraccess.h"
#include "simulator/simwords.h"
#include "support/testbench.h"

namespace krx {
namespace {

TEST(SimComms, TheTraceHoldsEveryOperationInOrderWithTheFailedOnesMarked) {
  TestBench bench;
  ReadByte(bench.Bus, 0x77);
  WriteByte(bench.Bus, 0x30, 0xFF);
  EXPECT_EQ(bench.Sim.Trace().Text(TraceFilter::All), "A D R77 A D W30:FF");
  bench.FailTransfer(2);
  ReadByte(bench.Bus, 0x25);
  EXPECT_THROW(ReadByte(bench.Bus, 0x2A), CommsError);
  ReadByte(bench.Bus, 0x2B);
  EXPECT_EQ(bench.Traffic(), "R77 W30:FF R25 R2A! R2B");
  EXPECT_EQ(bench.Sim.LiveHandles(), 0);
  for (std::size_t i = 0; i <= SimTrace::capacity; ++i) bench.Sim.Trace().Add({});
  EXPECT_EQ(bench.Sim.Trace().Transfers().size(), SimTrace::capacity) << "the oldest are dropped";
}

TEST(SimComms, TheSameSeedAndTimesGiveTheSameBytesHoweverOftenTheModelIsAccessed) {
  const auto run = [](std::uint32_t seed, int looks) {
    TestBench bench(TestBench::Medium::Smbus, {.Seed = seed, .Speed = 20});
    bench.Write("40:01 5C:02");
    for (int look = 0; look < looks; ++look) bench.Advance(6.0 / looks);
    std::string bytes;
    for (int reg = 0x20; reg < 0x33; ++reg) bytes += static_cast<char>(bench.Peek(static_cast<std::uint8_t>(reg)));
    return bytes;
  };
  EXPECT_EQ(run(1, 1), run(1, 300));
  EXPECT_NE(run(1, 1), run(2, 1));
}

TEST(SimComms, TheHeatBalanceMeetsTheBoardsFigures) {
  const auto celsius = [&](std::uint8_t pwmConfig, std::uint8_t control, double seconds, double load = 2) {
    TestBench bench(TestBench::Medium::Board, {.Noise = 0, .Load = load});
    WriteByte(bench.Bus, 0x5C, pwmConfig);
    bench.Sim.Board().SetControlByte(control);
    bench.Advance(seconds);
    return bench.Plant().State().Celsius;
  };
  EXPECT_EQ(celsius(0x62, 0x00, 0)[0], 26);
  EXPECT_NEAR(celsius(0x62, 0x00, 5)[1], 33.4, 0.5);  // full fan, little load
  EXPECT_GT(celsius(0x82, 0x10, 1045)[1], 100);       // heater, no fan
  EXPECT_LT(celsius(0x82, 0x20, 1045)[1], 65);        // the other heater is not beneath this diode
  EXPECT_LT(celsius(0x62, 0x10, 1045)[1], 75);
  EXPECT_NEAR(celsius(0x82, 0x20, 1045)[2], 63, 6);  // fan 2 keeps running
  EXPECT_LT(celsius(0x82, 0x10, 1045)[2], 50);
  EXPECT_GT(celsius(0x62, 0x00, 60, 10)[1], 60);  // at the peak of a heavy load
}

TEST(SimComms, ALongGapAtFullSpeedIsComputedInBoundedTime) {
  TestBench bench(TestBench::Medium::Smbus, {.Speed = 1000});
  bench.Write("40:01");
  const auto before = std::chrono::steady_clock::now();
  bench.Advance(30 * 86'400.0);
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(30));
  EXPECT_NE(ReadByte(bench.Bus, 0x25), 0x80);
}

/// The error number of the transfer; 0 on success.
int Failure(const std::function<void()>& transfer) {
  try {
    transfer();
    return 0;
  } catch (const CommsError& error) {
    return error.Number();
  }
}

TEST(SimComms, AChipAnswersAtItsAddressPortAndBusModeOnly) {
  TestBench bench(
      TestBench::Medium::Board,
      {.Ports = 2, .BoardChips = {{0x2D, 0, BusModes::FalseOnly}, {0x2C, 1, BusModes::Both}}, .SmbusChips = {}});
  const auto adapter = bench.Root.Get().ObtainPrinterPortAdapter();
  std::string found;
  for (std::uint8_t port = 0; port < adapter->PortCount(); ++port) {
    adapter->SelectPort(port);
    const auto device = adapter->ObtainBusDevice();
    for (const bool mode : {false, true}) {
      device->SetBusMode(mode);
      for (const std::uint8_t candidate : {std::uint8_t{0x58}, std::uint8_t{0x5A}, std::uint8_t{0x5C}}) {
        if (Failure([&] { device->ReadByteData(candidate, 0x3E); }) != 0) continue;
        found += fmt::format("{}{}{:X} ", port, mode ? 't' : 'f', candidate);
      }
    }
  }
  EXPECT_EQ(found, "0f5A 1f58 1t58 ");
  EXPECT_THROW(adapter->SelectPort(2), CommsError);
  EXPECT_THROW(bench.Root.Get().ObtainSmbusController()->ReadByteData(0x2E, 0x3E), NoAcknowledge);
}

TEST(SimComms, TheBoardPowersUpWithItsDiodesConnectedAndMirrorsItsHeaters) {
  TestBench bench;
  const auto device = bench.Root.Get().ObtainPrinterPortAdapter()->ObtainBusDevice();
  const auto byte = [&](int address) { return int{device->ReceiveByte(static_cast<std::uint8_t>(address))}; };
  EXPECT_EQ(std::tuple(byte(0x90), byte(0x92), byte(0x94), byte(0x96)), std::tuple(0, 0, 0x3F, 0));
  EXPECT_THROW(device->SendByte(0x98, 0), NoAcknowledge);
  device->SetControlByte(0xFF);
  EXPECT_EQ(device->ReadStatusByte(), 0x30);
  bench.Write("40:01");
  device->SendByte(0x94, 0x3E);  // one switch of the Temp1 group open
  bench.Advance(0.2);
  EXPECT_EQ(bench.Peek(0x42) & 0xC0, 0x40);
  EXPECT_EQ(bench.Peek(0x25), 0x80);
}

TEST(SimComms, VidFollowsTheSwitchesOnlyWhenAskedTo) {
  for (const auto& [follows, open, closed] : {std::tuple{false, 0x0E, 0x0E}, {true, 0x00, 0x1F}}) {
    TestBench bench(TestBench::Medium::Board, {.VidFollowsU3 = follows});
    for (const int states : {0x00, 0xFF}) {
      *bench.Sim.Board().Device(0x96) = static_cast<std::uint8_t>(states);
      EXPECT_EQ(ReadByte(bench.Bus, 0x43), states == 0 ? open : closed);
    }
  }
}

TEST(SimFaults, TheCommandLineWordsInjectTheirFaults) {
  const std::pair<const char*, const char*> rows[] = {
      {"fail=2", "R25 W5C:62! S90:01 R25 W5C:62 S90:01"},
      {"fail=4+", "R25 W5C:62 S90:01 R25! W5C:62! S90:01!"},
      {"fail=2,op=read", "R25 W5C:62 S90:01 R25! W5C:62 S90:01"},
      {"fail=1+,reg=5C,noack", "R25 W5C:62! S90:01 R25 W5C:62! S90:01"},
      {"absent=0", "R25! W5C:62! S90:01 R25! W5C:62! S90:01"},
  };
  for (const auto& [words, traffic] : rows) {
    TestBench bench;
    bench.Sim.AddFault(*ParseFault(words));
    const auto device = bench.Root.Get().ObtainPrinterPortAdapter()->ObtainBusDevice();
    for (int i = 0; i < 2; ++i) {
      Failure([&] { ReadByte(bench.Bus, 0x25); });
      Failure([&] { WriteByte(bench.Bus, 0x5C, 0x62); });
      Failure([&] { device->SendByte(0x90, 1); });
    }
    EXPECT_EQ(bench.BusTraffic(), traffic) << words;
  }
}

TEST(SimWords, RejectedInputIsReportedWithItsRange) {
  const std::string hex = "= takes a hexadecimal number from 00 to FF";
  struct Row {
    std::string Why;
    std::vector<const char*> Texts;
  };
  const Row faults[] = {
      {"unknown fault; use fail=, slow=, absent=, stall=, runaway=, hunt=, diode=, company= or stuck=",
       {"", "nonsense", "reg=5C"}},
      {"fail= takes a whole number from 1 to 1000000000", {"fail", "fail=0", "fail=1 ", "fail=1.5"}},
      {"fail= accepts only op=, reg=, number= and noack", {"fail=1,"}},
      {"number= takes a whole number from 1 to 65535", {"fail=1,number=65536"}},
      {"op= takes one of read, write, send, receive, control, status, complete, mode, port, report", {"fail=1,op=eat"}},
      {"slow= takes a number from 0 to 10", {"slow=-1", "slow=10.5", "slow=nan"}},
      {"absent= takes a number from 0 to 1000000", {"absent=1e9"}},
      {"hunt= takes a whole number from 1 to 4", {"hunt=5"}},
      {"diode= takes a whole number from 1 to 2", {"diode=3"}},
      {"reg" + hex, {"fail=1,reg=G1"}},
      {"company" + hex, {"company=100"}},
      {"stuck=RR: takes a hexadecimal number from 01 to FF", {"stuck=40:", "stuck=40:00"}},
      {"taken", {"slow=10", "stuck=40:0F"}},
  };
  const Row boards[] = {
      {"unknown option; use vid, pulses=, ports=, load= or noise=", {"", "vid=1"}},
      {"pulses= takes a whole number from 1 to 4", {"vid,pulses=5"}},
      {"pulses= takes one number, or four separated by colons", {"pulses=2:2"}},
      {"ports= takes a whole number from 0 to 8", {"ports=9"}},
      {"load= takes a number from 0 to 10", {"load=10.1"}},
      {"noise= takes a number from 0 to 10", {"noise=-1"}},
  };
  const auto check = [](std::span<const Row> rows, const auto& parse) {
    for (const Row& row : rows) {
      for (const char* const text : row.Texts) {
        std::string why;
        EXPECT_EQ(parse(text, &why) ? "taken" : why, row.Why) << text;
      }
    }
  };
  check(faults, [](const char* text, std::string* why) { return ParseFault(text, why).has_value(); });
  check(boards, [](const char* text, std::string* why) { return ParseBoard({}, text, why).has_value(); });
  const auto options = ParseBoard({}, "vid,pulses=2:1:3:4,ports=2,load=0,noise=0.5");
  ASSERT_TRUE(options);
  EXPECT_EQ(options->RealPulses, (std::array<double, 4>{2, 1, 3, 4}));
  EXPECT_EQ(std::tuple(options->VidFollowsU3, options->Ports, options->Load, options->Noise),
            std::tuple(true, 2, 0, 0.5));
}

TEST(SimFaults, AWriteDoesNotChangeStuckBitsAndNothingWhenItFails) {
  TestBench bench;
  for (const char* text : {"stuck=5D:E0", "stuck=68", "stuck=30"}) bench.Sim.AddFault(*ParseFault(text));
  for (const auto& [reg, value] :
       {std::pair{0x30, 0x40}, {0x5C, 0x80}, {0x5C, 0xE0}, {0x5D, 0xFF}, {0x68, 0x28}, {0x69, 0x28}}) {
    WriteByte(bench.Bus, static_cast<std::uint8_t>(reg), value);
  }
  bench.Sim.AddFault(*ParseFault("fail=1,number=17"));
  EXPECT_EQ(Failure([&] { WriteByte(bench.Bus, 0x69, 0x00); }), 17);
  EXPECT_EQ(bench.Sim.FaultsFired(), 1);
  EXPECT_EQ(bench.Peek(0x30), 0) << "off since Always Off: nothing was latched for manual control";
  EXPECT_EQ(bench.Peek(0x5D), 0x7F);
  EXPECT_EQ(bench.Peek(0x68), 0x5A);
  EXPECT_EQ(bench.Peek(0x69), 0x28);
}

TEST(SimFaults, BrokenPartsShowInTheRegisters) {
  TestBench bench(TestBench::Medium::Smbus);
  for (const char* text : {"stall=1", "runaway=2", "diode=2", "company=5A", "slow=0.02"}) {
    bench.Sim.AddFault(*ParseFault(text));
  }
  bench.Write("40:01 5D:80");  // PWM2 Always Off
  bench.Advance(10);
  EXPECT_EQ(bench.Peek(0x29), 0xFF);
  EXPECT_NEAR(bench.Peek(0x2B), 5'400'000 * 2 / 360 / 256, 1);
  EXPECT_EQ(bench.Peek(0x42) & 0xC0, 0x80);
  const double before = bench.Time.Seconds();
  EXPECT_EQ(ReadByte(bench.Bus, 0x3E), 0x5A);
  EXPECT_NEAR(bench.Time.Seconds() - before, 0.025, 0.001);
  bench.Sim.ClearFaults();
  EXPECT_EQ(ReadByte(bench.Bus, 0x3E), 0x41);
}

}  // namespace
}  // namespace krx
