// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/i2cdevsmbus.h"

#include <gtest/gtest.h>

#include "fakekernel.h"
#include "link/linux/i2cadapters.h"
#include "support/testbench.h"

namespace krx {
namespace {

class I2cDev : public testing::Test {
 protected:
  I2cDev() { Appear(); }
  void TearDown() override {
    bus.Close();
    EXPECT_EQ(kernel.OpenNow(), 0U) << "a descriptor was left open";
  }
  void Appear() {
    roots.Adapter(3, "SMBus stub driver");
    kernel.Nodes[path] = [this] { return std::make_unique<FakeI2cFile>(adapter); };
  }
  std::string Error(std::uint8_t address = 0x2E) {
    return ErrorOf([&] { bus.ReadByteData(address, 0x3E); });
  }

  TestRoots roots;
  ManualClock clock;
  Simulation simulation{clock, {}};
  FakeI2cAdapter adapter{simulation.MakeCommsModule()->ObtainSmbusController()};
  FakeKernel kernel;
  I2cDevSmbus bus{kernel, roots.Roots, std::nullopt, false};
  const std::string path = roots.Roots.Dev + "/i2c-3";
};

TEST_F(I2cDev, SaysWhatToDoWhenTheNodeCannotBeOpenedAndWhatATransferErrorMeans) {
  const std::pair<int, std::string> unopened[] = {
      {ENOENT, path + " does not exist: load its driver with \"modprobe i2c-dev\", or choose another bus with --smbus"},
      {EACCES, "no permission for " + path + ": join the group i2c (\"adduser USER i2c\") and log in again"},
      {ENXIO, "no adapter for " + path + ": its driver is not loaded"},
      {EMFILE, "cannot open " + path + " (EMFILE)"},
  };
  for (const auto& [number, text] : unopened) {
    kernel.OpenErrors[path] = number;
    EXPECT_EQ(Error(), "failed " + ErrorSymbol(number) + " " + text);
  }
  kernel.OpenErrors.clear();
  const std::pair<int, const char*> failed[] = {
      {EREMOTEIO, "silent EREMOTEIO no device answers at 2Eh"},
      {ENODEV, "silent ENODEV no device answers at 2Eh"},
      {EBUSY, "failed EBUSY i2c-3 is in use by the firmware: choose another bus with --smbus"},
      {ETIMEDOUT,
       "failed ETIMEDOUT timeout on i2c-3: a device holds the clock low, or wiring or power is faulty; "
       "each transfer can block for up to a second"},
      {EAGAIN, "failed EAGAIN arbitration lost on i2c-3: another master is using the bus"},
      {EIO, "failed EIO transfer to 2Eh on i2c-3 failed (EIO)"},
  };
  for (const auto& [number, text] : failed) {
    adapter.TransferError = number;
    EXPECT_EQ(Error(), text);
  }
  EXPECT_EQ(adapter.Transfers, std::ssize(failed)) << "no transfer is repeated";
  EXPECT_EQ(kernel.Opened, 1);
}

TEST_F(I2cDev, AHeldAddressIsNamedAndNeverReachesAnotherChip) {
  ASSERT_EQ(Error(0x2E), "");
  adapter.BusyAddresses = {0x2C};
  const std::string device = roots.Roots.Sys + "/bus/i2c/devices/3-002c";
  std::filesystem::create_directories(device);
  std::filesystem::create_directory_symlink("../drivers/somedriver", device + "/driver");
  const int transfers = adapter.Transfers;
  EXPECT_EQ(Error(0x2C),
            "failed EBUSY address 2Ch on i2c-3 is in use by the kernel driver somedriver: unbind it (\"echo "
            "3-002c > " +
                device + "/driver/unbind\" as root), or use --force");
  EXPECT_THROW(bus.WriteByteData(0x2C, 0x4E, 1), CommsError);
  EXPECT_EQ(adapter.Transfers, transfers) << "the kernel still has 2Eh: this byte went to the wrong chip";
  EXPECT_EQ(Error(0x2E), "");

  I2cDevSmbus forced(kernel, roots.Roots, 3, true);
  EXPECT_THROW(forced.ReadByteData(0x2C, 0x3E), NoAcknowledge) << "reached the bus";
}

TEST_F(I2cDev, AsksForByteDataInAWholeLong) {
  adapter.Functions |= 0xFFFF'FFFF'0000'0000UL;  // would overwrite memory after a 32-bit variable
  EXPECT_EQ(Error(), "");
  bus.Close();
  adapter.Functions = I2C_FUNC_SMBUS_EMUL & ~static_cast<unsigned long>(I2C_FUNC_SMBUS_WRITE_BYTE_DATA);
  EXPECT_EQ(Error(), "failed EOPNOTSUPP i2c-3 does not support byte data transfers: choose another bus with --smbus");
  adapter.FunctionsError = ENOTTY;
  EXPECT_EQ(Error(), "failed ENOTTY " + path + " is not an I2C bus (ENOTTY)");
  EXPECT_EQ(kernel.OpenNow(), 0U);
}

TEST_F(I2cDev, WorksAgainWhenAnUnpluggedAdapterIsBack) {
  ASSERT_EQ(Error(), "");
  std::filesystem::remove(roots.Roots.Sys + "/bus/i2c/devices/i2c-3");
  kernel.Nodes.clear();
  adapter.TransferError = ENODEV;
  const std::string gone = " the adapter of i2c-3 was disconnected: plug it in again";
  EXPECT_EQ(Error(), "failed ENODEV" + gone) << "not that no device answers";
  EXPECT_EQ(kernel.OpenNow(), 0U) << "keeps the adapter from coming back";
  EXPECT_EQ(Error(), "failed ENOENT" + gone) << "loading a driver would not help";
  Appear();
  adapter.TransferError = 0;
  EXPECT_EQ(Error(), "");

  std::filesystem::remove(roots.Roots.Sys + "/bus/i2c/devices/i2c-3");
  EXPECT_EQ(ErrorOf([&] { I2cDevSmbus(kernel, roots.Roots, {}, false).ReadByteData(0x2E, 0x3E); }),
            "failed ENODEV no SMBus adapter found: load the driver of the PC's SMBus, or choose a bus with "
            "--smbus");
}

TEST(I2cAdapters, ReportTellsTheGenerationByThePciIdsOfTheParent) {
  const std::array<const char*, 4> cases[] = {
      {"SMBus I801 adapter at 0700", "0x8086", "0x2930", "ICH9 (SMBus I801 adapter at 0700, i2c-1)"},
      {"SMBus I801 adapter at 0700", "0x8086", "0x3a60", "ICH10 (SMBus I801 adapter at 0700, i2c-1)"},
      {"SMBus I801 adapter", "0x8086", "0xa323", "ICH Type not in the list (SMBus I801 adapter, i2c-1)"},
      {"SMBus I801 adapter", "0x1022", "0x2930", "ICH Type not in the list (SMBus I801 adapter, i2c-1)"},
      {"SMBus ALI1535 adapter at 0500", "0x10b9", "0x7101", "ALi M1535+, SMBus ALI1535 adapter at 0500, i2c-1"},
      {"Old SMBus I801 adapter", "", "", "Old SMBus I801 adapter, i2c-1"},
      {"i915 gmbus dpc", "0x8086", "0x0412", "Unsupported and unrecognised: no SMBus adapter found"},
  };
  for (const auto& [name, vendor, device, report] : cases) {
    TestRoots roots;
    roots.Adapter(1, name, vendor, device);
    roots.Adapter(0, "i915 gmbus ssc");
    EXPECT_EQ(ChipsetReportOf(ChooseAdapter(roots.Roots, std::nullopt), std::nullopt), report);
    EXPECT_EQ(ChipsetReportOf(ChooseAdapter(roots.Roots, 0), 0), "i915 gmbus ssc, i2c-0");
    EXPECT_EQ(ChipsetReportOf(ChooseAdapter(roots.Roots, 7), 7), "No adapter i2c-7 found");
  }
}

}  // namespace
}  // namespace krx
