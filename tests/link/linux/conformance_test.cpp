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
  FakeI2cAdapter Smbus{Behind->ObtainSmbusController()};
  BoardDevice Board{Behind->ObtainPrinterPortAdapter()->ObtainBusDevice()};
  BitSlave Slave{Board, [this] { return Time.Seconds(); }};
  FakeParport Port{Slave};
  FakeKernel Fake;
  std::unique_ptr<CommsModule> Module;
};

/// Registers of the chip, and of an address where none is, by one of the two buses of the computer.
template <typename Bus>
void ExpectRegisters(Bus& bus, std::uint8_t chip, std::uint8_t absent) {
  EXPECT_EQ(bus.ReadByteData(chip, 0x3E), 0x41);
  for (const int value : {0x00, 0x55, 0x80, 0xFF}) {
    bus.WriteByteData(chip, 0x4E, static_cast<std::uint8_t>(value));
    EXPECT_EQ(bus.ReadByteData(chip, 0x4E), value);
  }
  EXPECT_EQ(bus.ReadByteData(chip, 0x4D), 0xFF) << "the limit before";
  EXPECT_EQ(bus.ReadByteData(chip, 0x4F), 0x7F) << "the limit behind";
  EXPECT_THROW(bus.ReadByteData(absent, 0x3E), NoAcknowledge);
  EXPECT_THROW(bus.WriteByteData(absent, 0x30, 1), NoAcknowledge);
  EXPECT_EQ(bus.ReadByteData(chip, 0x3E), 0x41);
}

class AnyComputer : public testing::TestWithParam<bool> {
 protected:
  Computer computer{GetParam()};
};

TEST_P(AnyComputer, ReachesTheChipOnEachBusWhicheverMediumIsSelected) {
  for (const int medium : {1, 0}) {
    ExpectRegisters(*computer.Module->ObtainPrinterPortAdapter()->ObtainBusDevice(), 0x5A, 0x58);
    ExpectRegisters(*computer.Module->ObtainSmbusController(), 0x2E, 0x2C);
    computer.Module->SelectMedium(medium);
  }
  computer.Module.reset();
  EXPECT_EQ(computer.Fake.OpenNow(), 0U);
}

TEST_P(AnyComputer, BoardAnswersBesideTheChip) {
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
    EXPECT_EQ(adapter->ObtainBusDevice()->GetBusMode(), mode);
    EXPECT_EQ(device->ReadByteData(0x5A, 0x3E), 0x41);
  }
  EXPECT_EQ(computer.Slave.Violations, "");
}

INSTANTIATE_TEST_SUITE_P(SimulatedAndKernel, AnyComputer, testing::Bool());

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
