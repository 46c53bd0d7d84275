// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "fakei2c.h"
#include "fakeparport.h"
#include "link/linux/linuxcomms.h"
#include "support/testbench.h"
#include "testroots.h"

namespace krx {
namespace {

/// The same computer seen through the simulated library and through the kernel.
struct Computer {
  explicit Computer(bool throughKernel) {
    if (!throughKernel) {
      Module = Simulated.MakeCommsModule();
      return;
    }
    Smbus.Chips = Behind->ObtainSmbusController();
    Port.OnHeaters = [this](std::uint8_t heaters) { Board.Board->SetControlByte(heaters); };
    Roots.Adapter(0, "SMBus I801 adapter at 0700", "0x8086", "0x24c3");
    Roots.File(Roots.Roots.Dev + "/parport0", "");
    Fake.Nodes[Roots.Roots.Dev + "/i2c-0"] = [this] { return std::make_unique<FakeI2cFile>(Smbus); };
    Fake.Nodes[Roots.Roots.Dev + "/parport0"] = [this] { return std::make_unique<FakeParportFile>(Port); };
    LinuxOptions options;
    options.Roots = Roots.Roots;
    Module = std::make_unique<LinuxComms>(options, Fake, Time);
  }

  static SimOptions BothModes() {
    SimOptions options;
    options.BoardChips[0].Modes = BusModes::Both;
    return options;
  }

  TestRoots Roots;
  ManualClock Time;
  Simulation Simulated{Time, BothModes()};
  std::unique_ptr<CommsModule> Behind = Simulated.MakeCommsModule();
  FakeI2cAdapter Smbus;
  BoardDevice Board{Behind->ObtainPrinterPortAdapter()->ObtainBusDevice()};
  BitSlave Slave{Board, [this] { return Time.Seconds(); }};
  FakeParport Port{Slave};
  FakeKernel Fake;
  std::unique_ptr<CommsModule> Module;
};

enum class Bus { Simulated, SimulatedBoard, I2cDev, Parport };

class AnyBus : public testing::TestWithParam<Bus> {
 protected:
  bool OnBoard() const { return GetParam() == Bus::SimulatedBoard || GetParam() == Bus::Parport; }
  bool Kernel() const { return GetParam() == Bus::I2cDev || GetParam() == Bus::Parport; }
  std::uint8_t Chip() const { return OnBoard() ? 0x5A : 0x2E; }

  int Read(std::uint8_t address, std::uint8_t reg) {
    try {
      return OnBoard() ? Device()->ReadByteData(address, reg)
                       : computer.Module->ObtainSmbusController()->ReadByteData(address, reg);
    } catch (const NoAcknowledge&) {
      return -1;
    }
  }
  void Write(std::uint8_t address, std::uint8_t reg, std::uint8_t data) {
    if (OnBoard()) {
      Device()->WriteByteData(address, reg, data);
    } else {
      computer.Module->ObtainSmbusController()->WriteByteData(address, reg, data);
    }
  }
  std::unique_ptr<BusDevice> Device() { return computer.Module->ObtainPrinterPortAdapter()->ObtainBusDevice(); }

  Computer computer{Kernel()};
};

TEST_P(AnyBus, MovesRegistersOfTheChipOnly) {
  EXPECT_EQ(Read(Chip(), 0x3E), 0x41);
  EXPECT_EQ(Read(Chip(), 0x3F), 0x10);
  for (const int value : {0x00, 0x55, 0x80, 0xFF}) {
    Write(Chip(), 0x4E, static_cast<std::uint8_t>(value));
    EXPECT_EQ(Read(Chip(), 0x4E), value);
  }
  EXPECT_EQ(Read(Chip(), 0x4D), 0xFF) << "the limit before";
  EXPECT_EQ(Read(Chip(), 0x4F), 0x7F) << "the limit behind";
}

TEST_P(AnyBus, SilenceIsAnErrorOfItsOwnKind) {
  const auto absent = static_cast<std::uint8_t>(OnBoard() ? 0x58 : 0x2C);
  EXPECT_EQ(Read(absent, 0x3E), -1);
  EXPECT_THROW(Write(absent, 0x30, 1), NoAcknowledge);
  EXPECT_EQ(Read(Chip(), 0x3E), 0x41);
}

TEST_P(AnyBus, BoardAnswersBesideTheChip) {
  const auto adapter = computer.Module->ObtainPrinterPortAdapter();
  EXPECT_EQ(adapter->PortCount(), 1);
  EXPECT_EQ(adapter->CurrentPort(), 0);
  EXPECT_THROW(adapter->SelectPort(1), CommsError);
  adapter->SelectPort(0);
  const auto device = adapter->ObtainBusDevice();
  device->SetControlByte(0);
  device->SendByte(0x90, 0x5C);
  EXPECT_EQ(device->ReceiveByte(0x90), 0x5C);
  EXPECT_EQ(device->ReceiveByte(0x94), 0x3F) << "as it powers up";
  EXPECT_THROW(device->ReceiveByte(0x98), NoAcknowledge);
  EXPECT_THROW(device->SendByte(0x98, 0), NoAcknowledge);
  for (const int heaters : {0x10, 0x30, 0x20, 0x00}) {
    device->SetControlByte(static_cast<std::uint8_t>(heaters));
    device->Complete();
    EXPECT_EQ(device->ReadStatusByte() & 0x30, heaters);
  }
  for (const bool mode : {true, false}) {
    device->SetBusMode(mode);
    EXPECT_EQ(Device()->GetBusMode(), mode) << "kept when the object was released";
    EXPECT_EQ(device->ReadByteData(0x5A, 0x3E), 0x41);
  }
  EXPECT_EQ(computer.Slave.Violations, std::vector<std::string>());
}

TEST_P(AnyBus, SelectingAMediumLeavesBothReachable) {
  for (const int medium : {1, 0}) {
    computer.Module->SelectMedium(medium);
    EXPECT_EQ(Read(Chip(), 0x3E), 0x41);
  }
  computer.Module.reset();
  EXPECT_EQ(computer.Fake.OpenNow(), 0);
}

INSTANTIATE_TEST_SUITE_P(All, AnyBus, testing::Values(Bus::Simulated, Bus::SimulatedBoard, Bus::I2cDev, Bus::Parport));

TEST(LinuxComms, AutoTakesAHostSmbusOrAPrinterPort) {
  TestRoots roots;
  LinuxOptions options;
  options.Roots = roots.Roots;
  EXPECT_EQ(FindLinuxBus(options), std::nullopt);
  roots.Adapter(0, "i915 gmbus ssc");
  EXPECT_EQ(FindLinuxBus(options), std::nullopt);
  std::filesystem::create_directories(roots.Roots.Sys + "/bus/parport/devices/parport1");
  std::filesystem::create_directories(roots.Roots.Sys + "/bus/parport/devices/lp.0");
  EXPECT_EQ(FindLinuxBus(options), "printer port 1");
  roots.Adapter(2, "SMBus I801 adapter at 0700");
  EXPECT_EQ(FindLinuxBus(options), "SMBus I801 adapter at 0700, i2c-2 and printer port 1");
  options.Smbus = 0;
  EXPECT_EQ(FindLinuxBus(options), "i915 gmbus ssc, i2c-0") << "who names one kind leaves the other alone";
  options.PrinterPort = 4;
  EXPECT_EQ(FindLinuxBus(options), "i915 gmbus ssc, i2c-0 and printer port 4");
}

}  // namespace
}  // namespace krx
