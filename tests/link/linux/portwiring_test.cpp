// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/portwiring.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "fakekernel.h"
#include "testroots.h"

namespace krx {
namespace {

constexpr const char* usual =
    "# the usual board\n"
    "sda_out = data.7!\nscl_out=data.6!\n\n  sda_in = status.7!  # busy\r\nscl_in = status.6\n"
    "heater1_out = data.4\nheater2_out = data.5\nheater1_in = status.4\nheater2_in = status.5\n";

TEST(PortWiring, DefaultIsTheTableThatAFileWouldSayAndASecondBlockIsBusMode1AsItStands) {
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

TEST(PortWiring, RefusesWhatCannotWorkAndNamesTheLine) {
  const std::string xs = "line 1: \"" + std::string(60, 'x') + "...\" is no \"role = register.bit\"";
  const std::pair<std::string, const char*> cases[] = {
      {"sda_out = data.7\nscl_out = data.7!\n", "line 2: sda_out and scl_out are on the same pin"},
      {"heater1_out = status.4", "line 1: heater1_out cannot be on status: its pins are inputs"},
      {"sda_out = data.7\nscl_out = data.6\n", "bus mode 0 has no sda_in"},
      {usual + std::string("[bus mode 1]\n"), "bus mode 1 has no sda_out"},
      {"", "bus mode 0 has no sda_out"},
      {"sda_in = status.2", "line 1: status has the bits 3 to 7"},
      {"sda_out = control.5", "line 1: control has the bits 0 to 3"},
      {"sda_out = data.8", "line 1: data has the bits 0 to 7"},
      {"sda_out = data.77", "line 1: \"data.77\" is no line; write register.bit, as in data.7 or status.7!"},
      {"sda_out = !data.7", "line 1: \"!data.7\" is no line; write register.bit, as in data.7 or status.7!"},
      {"sda = data.7", "line 1: there is no role \"sda\""},
      {"sda_out data.7", "line 1: \"sda_out data.7\" is no \"role = register.bit\""},
      {"sda_out = data.7\nsda_out = data.6", "line 2: sda_out is given twice"},
      {"\x1b[2J\x9b\xc2\x9b\xc3\xa4 = data.7", "line 1: there is no role \"\\x1B[2J\\x9B\\xC2\\x9B\xc3\xa4\""},
      {std::string(70, 'x'), xs.c_str()},
      {"[mode 2]", "line 1: \"[mode 2]\" is no block; the only one is [bus mode 1], once"},
  };
  for (const auto& [text, refusal] : cases) {
    EXPECT_EQ(ErrorOf([&] { ParseWiring(text); }), std::string("failed EINVAL ") + refusal) << text;
  }
}

TEST(PortWiring, AnUnreadableFileIsNamedAndOneMayHave64KiB) {
  EXPECT_EQ(ErrorOf([] { ReadWiringFile("/nowhere/board.wiring"); }),
            "failed ENOENT cannot read the wiring file /nowhere/board.wiring: No such file or directory");
  EXPECT_THROW(ReadWiringFile("/"), CommsError) << "a directory";
  EXPECT_THROW(ReadWiringFile("/dev/zero"), CommsError) << "no end";
  TestRoots roots;
  const std::string path = roots.Base + "/wiring\t";
  const std::string comment = std::string("#") + std::string(64 * 1024 - std::string(usual).size() - 2, 'c') + '\n';
  std::ofstream(path) << comment << usual;
  EXPECT_EQ(ReadWiringFile(path), DefaultWiring());
  std::ofstream(path, std::ios::app) << '\n';
  EXPECT_TRUE(ErrorOf([&] { ReadWiringFile(path); }).ends_with("/wiring\\x09: more than 64 KiB"));
}

}  // namespace
}  // namespace krx
