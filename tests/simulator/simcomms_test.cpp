// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simcomms.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

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
}

TEST(SimComms, TheSameSeedAndTimesGiveTheSameBytesHoweverOftenTheModelIsLookedAt) {
  const auto run = [](std::uint32_t seed, int looks) {
    SimOptions options;
    options.Seed = seed;
    options.Speed = 20;
    TestBench bench(TestBench::Medium::Smbus, options);
    bench.Chip().Write(0x40, 0x01);
    bench.Chip().Write(0x5C, 0x02);
    for (int look = 0; look < looks; ++look) bench.Advance(6.0 / looks);
    std::string bytes;
    for (int reg = 0x20; reg < 0x33; ++reg) bytes += static_cast<char>(bench.Peek(static_cast<std::uint8_t>(reg)));
    return bytes;
  };
  EXPECT_EQ(run(1, 1), run(1, 300));
  EXPECT_NE(run(1, 1), run(2, 1));
}

TEST(SimComms, TheHeatBalanceMeetsTheBoardsFigures) {
  SimOptions options;
  options.Noise = 0;
  const auto remote1 = [&](std::uint8_t pwmConfig, std::uint8_t control, double seconds) {
    TestBench bench(TestBench::Medium::Board, options);
    WriteByte(bench.Bus, 0x5C, pwmConfig);
    bench.Root.Get().ObtainPrinterPortAdapter()->ObtainBusDevice()->SetControlByte(control);
    bench.Advance(seconds);
    return bench.Plant().State().Celsius[1];
  };
  EXPECT_NEAR(remote1(0x62, 0x00, 5), 33.4, 0.5);  // full fan, little load
  EXPECT_GT(remote1(0x82, 0x10, 1045), 100);       // heater, no fan
  EXPECT_LT(remote1(0x82, 0x20, 1045), 65);        // the other heater is not beneath this diode
  EXPECT_LT(remote1(0x62, 0x10, 1045), 75);
  options.Load = 10;
  EXPECT_GT(remote1(0x62, 0x00, 60), 60);  // at the peak of a heavy load
}

TEST(SimComms, ALongGapAtFullSpeedIsCaughtUpInBoundedTime) {
  SimOptions options;
  options.Speed = 1000;
  TestBench bench(TestBench::Medium::Smbus, options);
  WriteByte(bench.Bus, 0x40, 0x01);
  const auto before = std::chrono::steady_clock::now();
  bench.Advance(30 * 86'400.0);
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(30));
  EXPECT_NE(ReadByte(bench.Bus, 0x25), 0x80);
}

TEST(SimComms, AChipAnswersAtItsAddressPortAndBusModeOnly) {
  SimOptions options;
  options.Ports = 2;
  options.BoardChips = {{0x2D, 0, BusModes::FalseOnly}, {0x2C, 1, BusModes::Both}};
  options.SmbusChips.clear();
  TestBench bench(TestBench::Medium::Board, options);
  const auto adapter = bench.Root.Get().ObtainPrinterPortAdapter();
  std::string found;
  for (std::uint8_t port = 0; port < adapter->PortCount(); ++port) {
    adapter->SelectPort(port);
    const auto device = adapter->ObtainBusDevice();
    for (const bool mode : {false, true}) {
      device->SetBusMode(mode);
      for (const int candidate : {0x58, 0x5A, 0x5C}) {
        try {
          if (device->ReadByteData(static_cast<std::uint8_t>(candidate), 0x3E) != 0x41) continue;
          found += fmt::format("{}{}{:X} ", port, mode ? 't' : 'f', candidate);
        } catch (const NoAcknowledge&) {
        }
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
  EXPECT_EQ(device->ReceiveByte(0x90), 0x00);
  EXPECT_EQ(device->ReceiveByte(0x92), 0x00);
  EXPECT_EQ(device->ReceiveByte(0x94), 0x3F);
  EXPECT_EQ(device->ReceiveByte(0x96), 0x00);
  EXPECT_THROW(device->SendByte(0x98, 0), NoAcknowledge);
  device->SetControlByte(0xFF);
  EXPECT_EQ(device->ReadStatusByte(), 0x30);
  WriteByte(bench.Bus, 0x40, 0x01);
  device->SendByte(0x94, 0x3E);  // one switch of the Temp1 group open
  bench.Advance(0.2);
  EXPECT_EQ(ReadByte(bench.Bus, 0x42) & 0xC0, 0x40);
  EXPECT_EQ(ReadByte(bench.Bus, 0x25), 0x80);
}

TEST(SimComms, VidFollowsTheSwitchesOnlyWhenAskedTo) {
  for (const bool follows : {false, true}) {
    SimOptions options;
    options.VidFollowsU3 = follows;
    TestBench bench(TestBench::Medium::Board, options);
    const auto device = bench.Root.Get().ObtainPrinterPortAdapter()->ObtainBusDevice();
    device->SendByte(0x96, 0x00);
    const int open = ReadByte(bench.Bus, 0x43);
    device->SendByte(0x96, 0x08);
    EXPECT_EQ(((ReadByte(bench.Bus, 0x43) ^ open) & 0x08) != 0, follows);
  }
}

TEST(SimFaults, TheCommandLineWordsPlanWhatTheySay) {
  const auto traffic = [](std::string_view text) {
    TestBench bench;
    const auto fault = ParseFault(text);
    if (!fault) return std::string("refused");
    bench.Sim.AddFault(*fault);
    const auto device = bench.Root.Get().ObtainPrinterPortAdapter()->ObtainBusDevice();
    const auto attempt = [](auto action) {
      try {
        action();
      } catch (const CommsError&) {
      }
    };
    for (int i = 0; i < 2; ++i) {
      attempt([&] { ReadByte(bench.Bus, 0x25); });
      attempt([&] { WriteByte(bench.Bus, 0x5C, 0x62); });
      attempt([&] { device->SendByte(0x90, 1); });
    }
    return bench.BusTraffic();
  };
  EXPECT_EQ(traffic("fail=2"), "R25 W5C:62! S90:01 R25 W5C:62 S90:01");
  EXPECT_EQ(traffic("fail=4+"), "R25 W5C:62 S90:01 R25! W5C:62! S90:01!");
  EXPECT_EQ(traffic("fail=2,op=read"), "R25 W5C:62 S90:01 R25! W5C:62 S90:01");
  EXPECT_EQ(traffic("fail=1+,reg=5C,noack"), "R25 W5C:62! S90:01 R25 W5C:62! S90:01");
  EXPECT_EQ(traffic("absent=0"), "R25! W5C:62! S90:01 R25! W5C:62! S90:01");
}

TEST(SimWords, WhatIsRefusedIsToldWithItsRange) {
  const auto faultRefused = [](const char* text) {
    std::string why = "taken";
    ParseFault(text, &why);
    return why;
  };
  const auto boardRefused = [](const char* text) {
    std::string why = "taken";
    ParseBoard({}, text, &why);
    return why;
  };
  const std::string faults = "there are fail=, slow=, absent=, stall=, runaway=, hunt=, diode=, company= and stuck=";
  const std::string nth = "fail= takes a whole number from 1 to 1000000000";
  const std::string hex = "= takes a hexadecimal number from 00 to FF";
  const std::string withFail = "fail= goes with op=, reg=, number= and noack";
  const struct {
    const char* Text;
    std::string Why;
  } faultRows[] = {
      {"", faults},
      {"nonsense", faults},
      {"fail=0", nth},
      {"fail=1 ", nth},
      {"fail=1,", withFail},
      {"fail=1,number=65536", "number= takes a whole number from 1 to 65535"},
      {"fail=1,reg=G1", "reg" + hex},
      {"fail=1,op=eat", "op= takes one of read, write, send, receive, control, status, complete, mode, port, report"},
      {"slow=-1", "slow= takes a number from 0 to 10"},
      {"slow=10.5", "slow= takes a number from 0 to 10"},
      {"slow=nan", "slow= takes a number from 0 to 10"},
      {"absent=1e9", "absent= takes a number from 0 to 1000000"},
      {"hunt=5", "hunt= takes a whole number from 1 to 4"},
      {"diode=3", "diode= takes a whole number from 1 to 2"},
      {"company=100", "company" + hex},
      {"stuck=100", "stuck" + hex},
      {"stuck=40:00", "stuck=RR: takes a hexadecimal number from 01 to FF"},
      {"slow=10", "taken"},
      {"stuck=40:0F", "taken"},
  };
  for (const auto& row : faultRows) EXPECT_EQ(faultRefused(row.Text), row.Why) << row.Text;
  const struct {
    const char* Text;
    const char* Why;
  } boardRows[] = {
      {"vid=1", "there are vid, pulses=, ports=, load= and noise="},
      {"vid,pulses=5", "pulses= takes a whole number from 1 to 4"},
      {"pulses=2:2", "pulses= takes one number, or four with a colon between two"},
      {"ports=9", "ports= takes a whole number from 0 to 8"},
      {"load=10.1", "load= takes a number from 0 to 10"},
      {"noise=-1", "noise= takes a number from 0 to 10"},
  };
  for (const auto& row : boardRows) EXPECT_EQ(boardRefused(row.Text), row.Why) << row.Text;
  const auto options = ParseBoard({}, "vid,pulses=2:1:3:4,ports=2,load=0,noise=0.5");
  ASSERT_TRUE(options);
  EXPECT_TRUE(options->VidFollowsU3);
  EXPECT_EQ(options->RealPulses, (std::array<double, 4>{2, 1, 3, 4}));
  EXPECT_EQ(options->Ports, 2);
  EXPECT_EQ(options->Load, 0);
  EXPECT_EQ(options->Noise, 0.5);
}

TEST(SimFaults, AWriteDoesNotChangeStuckBits) {
  TestBench bench;
  for (const char* text : {"stuck=5D:E0", "stuck=68", "stuck=30"}) bench.Sim.AddFault(*ParseFault(text));
  WriteByte(bench.Bus, 0x30, 0x40);
  for (const int behaviour : {0x80, 0xE0}) WriteByte(bench.Bus, 0x5C, behaviour);  // Always Off, manual
  EXPECT_EQ(ReadByte(bench.Bus, 0x30), 0) << "nothing was latched";
  WriteByte(bench.Bus, 0x5D, 0xFF);
  WriteByte(bench.Bus, 0x68, 0x28);
  WriteByte(bench.Bus, 0x69, 0x28);
  EXPECT_EQ(ReadByte(bench.Bus, 0x5D), 0x7F);
  EXPECT_EQ(ReadByte(bench.Bus, 0x68), 0x5A);
  EXPECT_EQ(ReadByte(bench.Bus, 0x69), 0x28);
}

TEST(SimFaults, AFailedWriteLeavesTheChipUntouchedAndCarriesItsNumber) {
  TestBench bench;
  bench.Sim.AddFault(*ParseFault("fail=1,number=17"));
  try {
    WriteByte(bench.Bus, 0x5C, 0x00);
    FAIL();
  } catch (const CommsError& error) {
    EXPECT_EQ(error.Number(), 17);
  }
  EXPECT_EQ(bench.Peek(0x5C), 0x62);
  EXPECT_EQ(bench.Sim.FaultsFired(), 1);
}

TEST(SimFaults, BrokenPartsShowInTheRegisters) {
  TestBench bench(TestBench::Medium::Smbus);
  for (const char* text : {"stall=1", "runaway=2", "diode=2", "company=5A", "slow=0.02"}) {
    bench.Sim.AddFault(*ParseFault(text));
  }
  WriteByte(bench.Bus, 0x40, 0x01);
  WriteByte(bench.Bus, 0x5D, 0x80);  // PWM2 Always Off
  bench.Advance(10);
  EXPECT_EQ(ReadByte(bench.Bus, 0x29), 0xFF);
  EXPECT_NEAR(ReadByte(bench.Bus, 0x2B), 5'400'000 * 2 / 360 / 256, 1);
  EXPECT_EQ(ReadByte(bench.Bus, 0x42) & 0xC0, 0x80);
  EXPECT_EQ(ReadByte(bench.Bus, 0x3E), 0x5A);
  const double before = bench.Time.Seconds();
  ReadByte(bench.Bus, 0x20);
  EXPECT_NEAR(bench.Time.Seconds() - before, 0.025, 0.001);
}

}  // namespace
}  // namespace krx
