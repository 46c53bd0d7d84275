// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/parportboard.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "fakeparport.h"
#include "support/testbench.h"

namespace krx {
namespace {

class Parport : public testing::Test {
 protected:
  Parport() { Plug(); }
  void TearDown() override { EXPECT_EQ(port.Slave.Violations, ""); }
  void Plug() {
    kernel.Nodes[path] = [this] { return std::make_unique<FakeParportFile>(port); };
    roots.File(path, "");
  }
  ParportBoard Board(const PortWiring& wiring = DefaultWiring()) {
    return {kernel, clock, roots.Roots, wiring, std::nullopt};
  }
  std::unique_ptr<BusDevice> Simulated() {
    return simulated.MakeCommsModule()->ObtainPrinterPortAdapter()->ObtainBusDevice();
  }
  /// The error thrown when reading the company ID.
  static std::string Error(ParportBoard& board) {
    return ErrorOf([&] { board.ReadByteData(0x5A, 0x3E); });
  }

  TestRoots roots;
  ManualClock clock;
  Simulation simulated{clock, {}};
  FakeParport port{Simulated(), [this] { return clock.Seconds(); }};
  FakeKernel kernel;
  ParportBoard board = Board();
  const std::string path = roots.Roots.Dev + "/parport0";
};

TEST_F(Parport, PutsEachOperationOnTheBusBitByBit) {
  EXPECT_EQ(board.ReadByteData(0x5A, 0x3E), 0x41);
  board.WriteByteData(0x5A, 0x30, 0xFF);
  board.SendByte(0x90, 0xA5);
  EXPECT_EQ(board.ReceiveByte(0x90), 0xA5);
  EXPECT_EQ(port.Slave.Seen, "S 5A+ 3E+ Sr 5B+ 41- P S 5A+ 30+ FF+ P S 90+ A5+ P S 91+ A5- P ");
  EXPECT_EQ(ErrorOf([&] { board.ReadByteData(0x5C, 0x3E); }), "silent ENXIO no device answers at 2Eh");
  EXPECT_TRUE(port.Slave.Seen.ends_with("S 5C- P ")) << port.Slave.Seen;
  port.Device.Refused = 0x3D;
  EXPECT_EQ(ErrorOf([&] { board.ReadByteData(0x5A, 0x3D); }),
            "failed EIO the device at 2Dh did not acknowledge a byte");
  EXPECT_TRUE(port.Slave.Seen.ends_with("S 5A+ 3D- P "));
  EXPECT_EQ(port.Data & 0x0F, 0x0F) << "unassigned lines";
  EXPECT_EQ(port.Holder, nullptr);
  for (const bool mode : {false, true}) {  // in mode 1 the clock cannot be read back
    board.SetBusMode(mode);
    port.Slave.ClockRises.clear();
    board.ReadByteData(0x5A, 0x3E);
    EXPECT_NEAR(port.Slave.ClockRises[1] - port.Slave.ClockRises[0], mode ? 110e-6 : 20e-6, 10e-6);
  }
}

TEST_F(Parport, WorksOverEveryWiring) {
  const char* wirings[] = {
      "sda_out=data.0\nscl_out=data.1\nsda_in=status.3\nscl_in=status.4",
      "sda_out=control.1!\nscl_out=control.3!\nsda_in=status.7!\nscl_in=status.5!",
      "sda_out=control.2\nscl_out=data.3!\nsda_in=status.6!\nscl_in=status.7",
  };
  for (const char* text : wirings) {
    const PortWiring wiring = ParseWiring(text);
    FakeParport cable(
        Simulated(), [this] { return clock.Seconds(); }, wiring.Modes[0]);
    cable.Control = cable.Data = 0;
    cable.Apply();
    clock.Advance(1);
    cable.Slave.Violations.clear();
    cable.Slave.Seen.clear();
    kernel.Nodes[path] = [&] { return std::make_unique<FakeParportFile>(cable); };
    ParportBoard wired = Board(wiring);
    EXPECT_EQ(wired.ReadByteData(0x5A, 0x3E), 0x41) << text;
    wired.WriteByteData(0x5A, 0x55, 0xAA);
    EXPECT_TRUE(cable.Slave.Seen.ends_with("S 5A+ 3E+ Sr 5B+ 41- P S 5A+ 55+ AA+ P ")) << cable.Slave.Seen;
    EXPECT_EQ(cable.Slave.Violations, "") << text;
  }
}

TEST_F(Parport, WaitsForAStretchedClockUpToItsLimit) {
  port.Slave.StretchSeconds = 0.034;
  EXPECT_EQ(board.ReadByteData(0x5A, 0x3E), 0x41);
  port.Slave.StretchSeconds = 0.036;
  const double start = clock.Seconds();
  EXPECT_EQ(
      Error(board),
      "failed ETIMEDOUT the clock stays low for more than 35 ms: a device holds it, or wiring or power is faulty");
  EXPECT_NEAR(clock.Seconds() - start, 0.035, 0.001);
  EXPECT_EQ(port.Data & 0xC0, 0) << "both lines released";
  port.Slave.Violations.clear();  // released while the clock was held low
  port.Slave.StretchSeconds = 0;
  clock.Advance(0.1);
  EXPECT_EQ(board.ReadByteData(0x5A, 0x3E), 0x41);
}

TEST_F(Parport, FreesADeviceThatWasInterrupted) {
  port.Slave.HangInByte(7);
  EXPECT_EQ(board.ReadByteData(0x5A, 0x3E), 0x41);
  port.Slave.HangInByte(12);
  port.Slave.ClockRises.clear();
  EXPECT_TRUE(Error(board).starts_with("failed EBUSY the data line stays low"));
  EXPECT_EQ(port.Slave.ClockRises.size(), 9U);
  port.Slave.Violations.clear();
}

TEST_F(Parport, ControlByteSwitchesTheHeatersAndNothingElse) {
  EXPECT_EQ(board.ReadStatusByte(), 0x00);
  board.SetControlByte(0xFF);
  EXPECT_EQ(port.Data, 0x3F) << "the bus lines are released, which is low in the register";
  EXPECT_EQ(board.ReadStatusByte(), 0x30);
  board.SetControlByte(0xEF);
  EXPECT_EQ(board.ReadStatusByte(), 0x20);
  port.Data = 0x00;  // a printer was used in between
  port.Apply();
  board.ReadByteData(0x5A, 0x3E);
  EXPECT_EQ(port.Heaters, 0x20);
  port.Gone = true;
  EXPECT_THROW(board.SetControlByte(0x30), CommsError);
  port.Gone = false;
  EXPECT_EQ(board.ReadStatusByte(), 0x20) << "a failed switching must not happen later";
  EXPECT_EQ(port.Slave.Seen, "S 5A+ 3E+ Sr 5B+ 41- P ");

  PortWiring blind = DefaultWiring();
  blind.Modes[0].Heater1In.reset();
  ParportBoard other = Board(blind);
  other.SetControlByte(0x10);
  EXPECT_EQ(other.ReadStatusByte(), 0x10) << "as set, if it cannot be read";
}

TEST_F(Parport, AnUnusedPortIsNotTouched) {
  port.Data = 0x7F;
  port.Heaters = 0x30;
  board.SetControlByte(0);
  board.SelectPort(0);
  EXPECT_EQ(kernel.Opened, 0);
  board.ReadByteData(0x5A, 0x3E);
  EXPECT_EQ(port.Heaters, 0) << "the stored byte";

  board.Close();
  port.Data |= 0x30;
  port.Apply();
  ParportBoard reader = Board();
  reader.ReadByteData(0x5A, 0x3E);
  EXPECT_EQ(port.Heaters, 0x30) << "without a control byte no heater is switched";

  const std::string second = roots.Roots.Dev + "/parport1";
  roots.File(second, "");
  FakeParport next{Simulated(), [this] { return clock.Seconds(); }};
  kernel.Nodes[second] = [&] { return std::make_unique<FakeParportFile>(next); };
  reader.SetControlByte(0x30);
  reader.SelectPort(1);
  EXPECT_EQ(kernel.OpenNow(), 0U) << "the first is closed";
  reader.SetControlByte(0);
  EXPECT_EQ(kernel.OpenNow(), 0U) << "the second is not used yet";
  reader.ReadByteData(0x5A, 0x3E);
  EXPECT_EQ(next.Heaters, 0) << "those of the other port";
  EXPECT_EQ(port.Heaters, 0x30);
  port.Slave.Seen.clear();
}

TEST_F(Parport, SharesThePortWaitsForAProgramAndNamesItsHolder) {
  ParportBoard other = Board();
  const std::string process = roots.Roots.Proc + "/4711";
  const std::string used = "failed EBUSY printer port 0 is in use by ";
  roots.File(process + "/comm", "logicprobe");
  std::filesystem::create_directories(process + "/fd");
  EXPECT_EQ(Error(board), "");
  EXPECT_EQ(port.Exclusive, nullptr) << "another program could not even open it";
  EXPECT_EQ(Error(other), "") << "between two transactions the port is free";

  roots.Active("lp");
  EXPECT_EQ(Error(board), used + "lp") << "a printer is not waited for";
  roots.Active("ppdev0");
  EXPECT_EQ(Error(board), "") << "a program that is between claim and release: the kernel lets us wait";

  // The claim would block for ever; the handler of the signal that ends it is restored.
  port.OtherActive = true;
  EXPECT_EQ(Error(board), used + "another program");
  struct sigaction action {};
  sigaction(SIGRTMIN + 5, nullptr, &action);
  EXPECT_EQ(action.sa_handler, SIG_DFL);
  EXPECT_EQ(kernel.OpenNow(), 1U) << "a queued claim is cancelled";
  kernel.HeldByOthers[{path, 0}] = 4711;
  EXPECT_EQ(Error(board), used + "logicprobe (process 4711)");
  kernel.HeldByOthers.clear();
  std::filesystem::create_symlink(path, process + "/fd/3");
  EXPECT_EQ(Error(board), used + "logicprobe (process 4711)");
  port.OtherActive = false;
  port.Exclusive = &port;
  EXPECT_EQ(Error(board), used + "logicprobe (process 4711)");
  port.Exclusive = nullptr;
  EXPECT_EQ(Error(board), "");
}

TEST_F(Parport, SaysWhatToDoAndWorksAgainWhenThePortIsBack) {
  EXPECT_EQ(Error(board), "");
  port.Gone = true;
  EXPECT_EQ(Error(board), "failed ENODEV printer port 0 was disconnected: plug its adapter in again");
  EXPECT_EQ(kernel.OpenNow(), 0U);
  std::filesystem::remove(path);
  EXPECT_EQ(board.PortCount(), 0);
  EXPECT_EQ(Error(board), "failed ENODEV no printer port found, or it was disconnected");
  EXPECT_EQ(ErrorOf([&] { board.SelectPort(0); }), "failed ENODEV printer port 0 does not exist");
  port.Gone = false;
  Plug();
  EXPECT_EQ(Error(board), "");

  const std::pair<int, std::string> cases[] = {
      {ENOENT,
       path + " does not exist: load its driver with \"modprobe ppdev\", or choose another port with --printer-port"},
      {EACCES, "no permission for " + path + ": join the group lp (\"adduser USER lp\") and log in again"},
      {ENXIO, "no printer port for " + path + ": the driver parport_pc is not loaded, or the PC has no such port"},
  };
  for (const auto& [number, text] : cases) {
    kernel.OpenErrors[path] = number;
    ParportBoard fresh = Board();
    EXPECT_EQ(Error(fresh), "failed " + ErrorSymbol(number) + " " + text);
  }
}

constexpr const char* usual =
    "# the usual board\n"
    "sda_out = data.7!\nscl_out=data.6!\n\n  sda_in = status.7!  # busy\r\nscl_in = status.6\n"
    "heater1_out = data.4\nheater2_out = data.5\nheater1_in = status.4\nheater2_in = status.5\n";

TEST(PortWiring, DefaultEqualsTheDocumentedFileAndASecondSectionIsBusMode1) {
  EXPECT_EQ(ParseWiring(usual), DefaultWiring());
  EXPECT_TRUE(DefaultWiring().Modes[0].SclIn);
  EXPECT_FALSE(DefaultWiring().Modes[1].SclIn) << "bus mode 1 does not read the clock back";
  const std::string other =
      "[bus mode 1]\nsda_out = control.3!\nscl_out = data.0\nsda_in = status.3\nscl_in = status.5\n";
  const PortWiring wiring = ParseWiring(usual + other);
  EXPECT_EQ(wiring.Modes[0], DefaultWiring().Modes[0]);
  EXPECT_EQ(wiring.Modes[1].SdaOut, (PortLine{PortRegister::Control, 3, true}));
  EXPECT_EQ(wiring.Modes[1].SclIn, (PortLine{PortRegister::Status, 5, false}));
  EXPECT_FALSE(wiring.Modes[1].Heater1Out);
}

TEST(PortWiring, RejectsInvalidWiringsAndNamesTheLine) {
  const std::string xs = "line 1: \"" + std::string(60, 'x') + "...\" does not have the form \"role = register.bit\"";
  const std::pair<std::string, const char*> cases[] = {
      {"sda_out = data.7\nscl_out = data.7!\n", "line 2: sda_out and scl_out are on the same pin"},
      {"heater1_out = status.4", "line 1: heater1_out cannot be on status: these pins are inputs"},
      {"sda_out = data.7\nscl_out = data.6\n", "bus mode 0: sda_in is missing"},
      {usual + std::string("[bus mode 1]\n"), "bus mode 1: sda_out is missing"},
      {"", "bus mode 0: sda_out is missing"},
      {"sda_in = status.2", "line 1: status has bits 3 to 7 only"},
      {"sda_out = control.5", "line 1: control has bits 0 to 3 only"},
      {"sda_out = data.8", "line 1: data has bits 0 to 7 only"},
      {"sda_out = data.77", "line 1: \"data.77\" is not a pin; use register.bit, such as data.7 or status.7!"},
      {"sda_out = !data.7", "line 1: \"!data.7\" is not a pin; use register.bit, such as data.7 or status.7!"},
      {"sda = data.7", "line 1: unknown role \"sda\""},
      {"sda_out data.7", "line 1: \"sda_out data.7\" does not have the form \"role = register.bit\""},
      {"sda_out = data.7\nsda_out = data.6", "line 2: sda_out is assigned twice"},
      {"\x1b[2J\x9b\xc2\x9b\xc3\xa4 = data.7", "line 1: unknown role \"\\x1B[2J\\x9B\\xC2\\x9B\xc3\xa4\""},
      {std::string(70, 'x'), xs.c_str()},
      {"[mode 2]", "line 1: unknown section \"[mode 2]\"; only [bus mode 1] is allowed, once"},
  };
  for (const auto& [text, refusal] : cases) {
    EXPECT_EQ(ErrorOf([&] { ParseWiring(text); }), std::string("failed EINVAL ") + refusal) << text;
  }
}

TEST(PortWiring, AnUnreadableFileIsNamedAndOneMayHave64KiB) {
  EXPECT_EQ(ErrorOf([] { ReadWiringFile("/nowhere/board.wiring"); }),
            "failed ENOENT cannot read the wiring file /nowhere/board.wiring: no such file or directory (ENOENT)");
  EXPECT_THROW(ReadWiringFile("/"), CommsError) << "a directory";
  EXPECT_THROW(ReadWiringFile("/dev/zero"), CommsError) << "no end";
  TestRoots roots;
  const std::string path = roots.Base + "/wiring\t";
  const std::string comment = std::string("#") + std::string(64 * 1024 - std::string(usual).size() - 2, 'c') + '\n';
  std::ofstream(path) << comment << usual;
  EXPECT_EQ(ReadWiringFile(path), DefaultWiring());
  std::ofstream(path, std::ios::app) << '\n';
  EXPECT_TRUE(ErrorOf([&] { ReadWiringFile(path); }).ends_with("/wiring\\x09: larger than 64 KiB"));
}

}  // namespace
}  // namespace krx
