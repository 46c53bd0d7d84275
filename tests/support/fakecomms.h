// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "link/commserror.h"
#include "link/linknewcomport06.h"

namespace krx {

/// 256 plain registers behind both media, and a diary of what happened: "wait, input held",
/// "port read 5A 3E", "smbus write 2D 30 FF". It never behaves like the chip; the simulated board does.
struct FakeBus {
  std::array<std::uint8_t, 256> Registers{};
  std::vector<std::string> Diary;
  bool Failing = false;
  int LiveObjects = 0;  ///< adapters, devices and controllers that have not been released

  std::uint8_t Read(const char* medium, std::uint8_t address, std::uint8_t reg) {
    Diary.push_back(fmt::format("{} read {:02X} {:02X}", medium, address, reg));
    if (Failing) throw NoAcknowledge(9, "No acknowledge");
    return Registers[reg];
  }
  void Write(const char* medium, std::uint8_t address, std::uint8_t reg, std::uint8_t data) {
    Diary.push_back(fmt::format("{} write {:02X} {:02X} {:02X}", medium, address, reg, data));
    if (Failing) throw NoAcknowledge(9, "No acknowledge");
    Registers[reg] = data;
  }
};

struct FakeObject {
  explicit FakeObject(FakeBus& bus) : Bus(bus) { ++Bus.LiveObjects; }
  ~FakeObject() { --Bus.LiveObjects; }
  FakeObject(const FakeObject&) = delete;
  FakeObject& operator=(const FakeObject&) = delete;
  FakeBus& Bus;
};

struct FakeDevice : FakeObject, BusDevice {
  using FakeObject::FakeObject;
  void SendByte(std::uint8_t, std::uint8_t) override {}
  std::uint8_t ReceiveByte(std::uint8_t) override { return 0; }
  void SetControlByte(std::uint8_t) override {}
  std::uint8_t ReadStatusByte() override { return 0; }
  void SetDeviceAddress(std::uint8_t) override {}
  void SetBusMode(bool) override {}
  bool GetBusMode() override { return false; }
  std::uint8_t ReadByteData(std::uint8_t a, std::uint8_t r) override { return Bus.Read("port", a, r); }
  void WriteByteData(std::uint8_t a, std::uint8_t r, std::uint8_t d) override { Bus.Write("port", a, r, d); }
  void Complete() override {}
};

struct FakeAdapter : FakeObject, PrinterPortAdapter {
  using FakeObject::FakeObject;
  std::uint8_t PortCount() override { return 1; }
  void SelectPort(std::uint8_t) override {}
  std::int32_t CurrentPort() override { return 0; }
  std::unique_ptr<BusDevice> ObtainBusDevice() override { return std::make_unique<FakeDevice>(Bus); }
};

struct FakeController : FakeObject, SmbusController {
  using FakeObject::FakeObject;
  std::string ChipsetReport() override { return {}; }
  void WriteByteData(std::uint8_t a, std::uint8_t r, std::uint8_t d) override { Bus.Write("smbus", a, r, d); }
  std::uint8_t ReadByteData(std::uint8_t a, std::uint8_t r) override { return Bus.Read("smbus", a, r); }
  void SetTargetAddress(std::uint8_t) override {}
};

struct FakeComms : CommsModule {
  explicit FakeComms(FakeBus& bus) : Bus(bus) {}
  std::unique_ptr<PrinterPortAdapter> ObtainPrinterPortAdapter() override { return std::make_unique<FakeAdapter>(Bus); }
  std::unique_ptr<SmbusController> ObtainSmbusController() override { return std::make_unique<FakeController>(Bus); }
  void SelectMedium(int) override {}
  FakeBus& Bus;
};

/// Every look at the counter takes 10 µs.
struct FakeClock : Clock {
  std::int64_t Frequency() override { return CountsPerSecond; }
  std::int64_t Counter() override { return Now += 10; }
  double FallbackSeconds() override { return 1e-6 * static_cast<double>(Now += 10); }
  std::int64_t CountsPerSecond = 1'000'000;
  std::int64_t Now = 0;  ///< µs
};

/// Returns from each wait after at most 2 ms, and lets one handler run in the first.
struct FakePump : EventPump {
  FakePump(FakeBus& bus, FakeClock& clock) : Bus(bus), Time(clock) {}
  void Pump(double seconds, PumpMode mode) override {
    Bus.Diary.push_back(mode == PumpMode::HoldUserInput ? "wait, input held" : "wait");
    Time.Now += std::min<std::int64_t>(2000, static_cast<std::int64_t>(seconds * 1e6));
    if (const auto handler = std::exchange(Handler, nullptr)) handler();
  }
  std::function<void()> Handler;
  FakeBus& Bus;
  FakeClock& Time;
};

/// A link at the printer port's chip 0x5A on the plain registers.
struct FakeBench {
  FakeBus Bus;
  FakeClock Time;
  FakePump Pump{Bus, Time};
  CommsRoot Root{[this] { return std::make_unique<FakeComms>(Bus); }};
  krx::Link Link{Root, Time, Pump};
  FakeBench() {
    Link.CommsMedium = 1;
    Link.ChipAddress = 0x5A;
  }
};

}  // namespace krx
