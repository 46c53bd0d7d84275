// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "fakeparport.h"
#include "link/linux/linuxcomms.h"
#include "link/linux/nodeholder.h"
#include "link/registeraccess.h"
#include "link/searchwizard.h"
#include "support/testbench.h"

namespace krx {
namespace {

/// An SMBus adapter with simulated chips behind it.
struct Adapter {
  Adapter(Clock& clock, std::uint8_t firstChip) : Simulated(clock, {.SmbusChips = {{firstChip}, {0x2E}}, .Wait = {}}) {}
  Simulation Simulated;
  FakeI2cAdapter Bus{Simulated.MakeCommsModule()->ObtainSmbusController()};
};

/// A computer with two host adapters and a printer port, and this program on it.
class RealSearch : public testing::Test {
 protected:
  RealSearch() {
    roots.Adapter(1, "SMBus PIIX4 adapter port 0 at 0b00");
    roots.Adapter(3, "SMBus I801 adapter at 0700");
    roots.Adapter(0, "i915 gmbus dpc");  // without a node: opening it would be an error of its own
    for (const char* entry : {"parport4", "lp.0"})
      std::filesystem::create_directories(roots.Roots.Sys + "/bus/parport/devices/" + entry);
    roots.File(roots.Roots.Proc + "/4711/comm", "krx5580-console\x1b");
    kernel.Nodes[first] = [this] { return std::make_unique<FakeI2cFile>(one.Bus); };
    kernel.Nodes[second] = [this] { return std::make_unique<FakeI2cFile>(two.Bus); };
    kernel.Nodes[parport] = [this] { return std::make_unique<FakeParportFile>(port); };
    options.Roots = roots.Roots;
  }

  /// "place / place ..." of what is found.
  std::string Find(const SearchMedia& media = {true, true, false}) {
    search.ClearFinds();
    reports.clear();
    for (const SearchReport& report : search.Search(media, 0, nullptr)) reports += report.Text;
    std::string places;
    for (const ResultRow& row : search.Rows()) places += (places.empty() ? "" : " / ") + row.Place();
    return places;
  }
  void Finish(std::size_t row) { search.Finish(search.Rows().at(row)); }
  std::string Write() {
    return ErrorOf([&] { WriteByte(link, 0x4E, 0x55); });
  }

  TestRoots roots;
  const std::string first = roots.Roots.Dev + "/i2c-1", second = roots.Roots.Dev + "/i2c-3",
                    parport = roots.Roots.Dev + "/parport4";
  ManualClock clock;
  ScriptedPump pump{clock};
  Adapter one{clock, 0x2C}, two{clock, 0x2D};
  Simulation board{clock, {}};
  FakeParport port{board.MakeCommsModule()->ObtainPrinterPortAdapter()->ObtainBusDevice(),
                   [this] { return clock.Seconds(); }};
  FakeKernel kernel;
  LinuxOptions options;
  CommsRoot root{[this] { return std::make_unique<LinuxComms>(options, kernel, clock); }};
  Link link{root, clock, pump};
  ChipSearch search{link};
  std::string reports;
  const std::string piix = "SMBus PIIX4 adapter port 0 at 0b00, i2c-1", i801 = "SMBus I801 adapter at 0700, i2c-3";
  const std::string holder = "krx5580-console\\x1B (process 4711)";
};

TEST(RealKernel, ALockIsSeenByEveryProcessAndEndsWithItsHolder) {
  TestRoots roots;
  const std::string path = roots.Roots.Dev + "/i2c-1";
  roots.File(path, "a file locks as a device node does");
  const pid_t child = fork();
  RealKernel kernel;
  const int descriptor = kernel.Open(path);
  if (child == 0) {
    kernel.Lock(descriptor, {0x2E, 1});
    for (;;) pause();
  }
  for (int tries = 0; tries < 1000 && kernel.LockHolder(descriptor, {0x2E, 1}) == 0; ++tries) usleep(10'000);
  EXPECT_EQ(kernel.LockHolder(descriptor, {0x2E, 1}), child);
  EXPECT_EQ(kernel.LockHolder(descriptor, {0, 128}), child);
  EXPECT_EQ(kernel.LockHolder(descriptor, {0x2D, 1}), 0) << "the address beside it";
  EXPECT_EQ(kernel.Lock(descriptor, {0x2E, 1}), -EAGAIN);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_EQ(kernel.Lock(descriptor, {0x2E, 1}), 0);
  kernel.Close(descriptor);
  for (const auto& [process, text] : {std::pair{0, "another process"}, {-1, "another process"}, {1, "process 1"}})
    EXPECT_EQ(ProcessText(roots.Roots, process), text);
}

TEST_F(RealSearch, TheLibraryReachesTheBoardAndTheSmbusWhicheverMediumIsSelected) {
  CommsModule& module = root.Get();
  const auto adapter = module.ObtainPrinterPortAdapter();
  EXPECT_EQ(adapter->PortCount(), 1);
  EXPECT_EQ(adapter->CurrentPort(), 0);
  EXPECT_THROW(adapter->SelectPort(1), CommsError);
  const auto device = adapter->ObtainBusDevice();
  for (const int medium : {1, 0}) {
    EXPECT_EQ(device->ReadByteData(0x5A, 0x3E), 0x41);
    EXPECT_THROW(device->WriteByteData(0x58, 0x30, 1), NoAcknowledge);
    EXPECT_EQ(module.ObtainSmbusController()->ReadByteData(0x2E, 0x3E), 0x41);
    EXPECT_THROW(module.ObtainSmbusController()->WriteByteData(0x2D, 0x30, 1), NoAcknowledge);
    module.SelectMedium(medium);
    EXPECT_EQ(kernel.OpenNow(), 1U) << "the other medium's is closed";
  }
  device->SendByte(0x90, 0x5C);
  EXPECT_EQ(device->ReceiveByte(0x90), 0x5C);
  EXPECT_THROW(device->ReceiveByte(0x98), NoAcknowledge);
  device->SetControlByte(0x20);
  EXPECT_EQ(device->ReadStatusByte(), 0x20);
  for (const bool mode : {true, false}) {
    device->SetBusMode(mode);
    EXPECT_EQ(adapter->ObtainBusDevice()->GetBusMode(), mode);
    EXPECT_EQ(device->ReadByteData(0x5A, 0x3E), 0x41);
  }
  EXPECT_EQ(port.Slave.Violations, "");
}

TEST_F(RealSearch, EveryAdapterIsSearchedAndADeviceThatOnlyAcknowledgesHidesNoChip) {
  EXPECT_EQ(Find(), "2Dh on printer port 4 / 2Dh on printer port 4 / 2Ch on " + piix + " / 2Dh on " + i801 +
                        " / 2Eh on " + piix + " / 2Eh on " + i801);
  EXPECT_EQ(search.Searched(), "printer port 4 and " + piix + " and " + i801);
  EXPECT_EQ(FindLinuxBus(options), piix + " and " + i801 + " and printer port 4");
  const auto rows = search.Rows();
  EXPECT_EQ(rows[4].Text, rows[5].Text) << "the rows only name the bus";
  EXPECT_TRUE(rows[0].Text.starts_with("Found an KRX5580 at:2Dh, on printer port:0h")) << "as the adapter counts";

  for (const std::size_t row : {5U, 4U}) {
    Finish(row);
    EXPECT_EQ(search.ChosenBus(), rows[row].Bus);
    EXPECT_EQ(search.TakeChip(), std::nullopt);
    EXPECT_EQ(kernel.OpenNow(), 1U) << "the bus that was not chosen is closed";
    EXPECT_EQ(kernel.Locked, (std::set<std::pair<std::string, off_t>>{{row == 5 ? second : first, 0x2E}}));
    EXPECT_EQ(Write(), "");
    EXPECT_EQ((row == 5 ? two : one).Simulated.SmbusChip(1).Peek(0x4E), 0x55);
    EXPECT_EQ(one.Simulated.SmbusChip(1).Peek(0x4E) == 0x55, row == 4) << "a byte for the other adapter's chip";
  }
  one.Bus.TransferError = ENXIO;
  const int transfers = two.Bus.Transfers;
  EXPECT_EQ(Write(), "silent ENXIO no device answers at 2Eh");
  EXPECT_EQ(two.Bus.Transfers, transfers) << "a chip that stopped responding must not be searched elsewhere";

  one.Bus.TransferError = 0;
  one.Simulated.AddFault({.What = Fault::Kind::WrongCompanyId, .Op = {}, .Register = {}, .Value = 0x55});
  EXPECT_EQ(Find({false, true, false}), "2Dh on " + i801 + " / 2Eh on " + i801);
}

TEST_F(RealSearch, SearchesTheNamedBusesOnlyAndSaysWhatWasSearchedAndWhatFailed) {
  const std::string leftAlone = "Error: 19, SMBus not used: only a printer port was selected";
  const std::string missing = " does not exist: load its driver with \"modprobe i2c-dev\", or choose another bus with ";
  // What was named, and what is found, searched and reported.
  const std::tuple<std::optional<int>, std::optional<int>, std::string, std::string, std::string> cases[] = {
      {3, {}, "2Dh on " + i801 + " / 2Eh on " + i801, i801, ""},
      {{}, 4, "2Dh on printer port 4 / 2Dh on printer port 4", "printer port 4", leftAlone},
      {7, {}, "", "i2c-7", "/i2c-7" + missing + "--smbus"},
  };
  for (const auto& [smbus, printerPort, found, searched, reported] : cases) {
    options.Smbus = smbus;
    options.PrinterPort = printerPort;
    root.Change([this] { return std::make_unique<LinuxComms>(options, kernel, clock); });
    EXPECT_EQ(Find(), found);
    EXPECT_EQ(search.Searched(), searched);
    EXPECT_TRUE(reports.ends_with(reported)) << reports;
    EXPECT_EQ(FindLinuxBus(options), searched);
  }
  search.ClearFinds();
  const std::string error = ErrorOf([&] { search.ConnectFirst({true, true, false}); });
  EXPECT_NE(error.find("No KRX5580 found on: i2c-7. Search SMBus: Error: 2, "), error.npos) << error;
  options.Smbus = 0;
  options.PrinterPort = 4;
  EXPECT_EQ(FindLinuxBus(options), "i915 gmbus dpc, i2c-0 and printer port 4");
  options = {.Smbus = {}, .PrinterPort = {}, .Roots = {"/nowhere", "/nowhere", "/nowhere"}};
  EXPECT_EQ(FindLinuxBus(options), std::nullopt);
  root.Change([this] { return std::make_unique<LinuxComms>(options, kernel, clock); });
  EXPECT_TRUE(ErrorOf([&] { search.ConnectFirst({true}); }).ends_with("found: this computer has no such bus"));
}

TEST_F(RealSearch, AChipThatAnotherProgramWritesToIsReadOnly) {
  kernel.HeldByOthers[{second, 0x2E}] = 4711;
  EXPECT_TRUE(Find().ends_with("2Eh on " + i801 + ", in use by " + holder));
  Finish(5);
  EXPECT_EQ(search.TakeChip(), holder);
  const int transfers = two.Bus.Transfers;
  EXPECT_EQ(Write(), "failed EBUSY the chip at 2Eh on i2c-3 is in use by " + holder + " and can only be read");
  EXPECT_EQ(two.Bus.Transfers, transfers);
  EXPECT_EQ(ReadByte(link, 0x3E), 0x41);
  Finish(3);
  EXPECT_EQ(search.TakeChip(), std::nullopt) << "the neighbouring chip has its own lock";
  Finish(5);
  link.WritesHeldBack = true;
  EXPECT_EQ(search.TakeChip(), std::nullopt) << "a read-only run acquires no lock";
  kernel.HeldByOthers.clear();
  EXPECT_EQ(Write(), "") << "the other program has ended";
  EXPECT_TRUE(kernel.Locked.contains({second, 0x2E}));
}

TEST_F(RealSearch, APortThatAnotherProgramHoldsKeepsItsHeaters) {
  port.Data |= 0x30;
  port.Apply();
  kernel.HeldByOthers[{parport, 0}] = 4711;
  search.Load();
  const std::string place = "2Dh on printer port 4, in use by " + holder;
  EXPECT_EQ(Find({true, false, false}), place + " / " + place) << "in both bus modes";
  EXPECT_EQ(port.Heaters, 0x30) << "the other program's";
  Finish(0);
  EXPECT_EQ(search.TakeChip(), holder);
  port.Slave.Seen.clear();
  const auto bus = root.Get().ObtainPrinterPortAdapter()->ObtainBusDevice();
  EXPECT_EQ(Write(), "failed EBUSY the board on printer port 4 is in use by " + holder + " and can only be read");
  EXPECT_THROW(bus->SetControlByte(0), CommsError);
  EXPECT_THROW(bus->SendByte(0x90, 0), CommsError);
  EXPECT_EQ(port.Slave.Seen, "");
  EXPECT_EQ(ReadByte(link, 0x3E), 0x41);
  EXPECT_EQ(port.Heaters, 0x30);

  kernel.HeldByOthers.clear();
  EXPECT_EQ(search.TakeChip(), std::nullopt);
  EXPECT_EQ(ReadByte(link, 0x3E), 0x41);
  EXPECT_EQ(port.Heaters, 0) << "what was set at the start";
  EXPECT_EQ(port.Slave.Violations, "");
}

}  // namespace
}  // namespace krx
