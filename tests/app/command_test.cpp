// SPDX-License-Identifier: GPL-3.0-or-later
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "app/chipconnection.h"
#include "app/jsontext.h"
#include "app/testhost.h"

namespace krx {
namespace {

TEST(Command, UsageErrorsEndWithTwoAndSayWhy) {
  const std::pair<std::string, std::string> rows[] = {
      {"", "missing command: watch, scan, read, dump or write; see krx5580 --help"},
      {"frobnicate", "unknown command \"frobnicate\"; see krx5580 --help"},
      {"read", "missing argument REG...; see krx5580 read --help"},
      {"read 0x40 --colour", "unknown option \"--colour\"; see krx5580 read --help"},
      {"write 0x30 1 2", "unexpected argument \"2\"; see krx5580 write --help"},
      {"dump --speed", "--speed needs a value; see krx5580 dump --help"},
      {"dump --json=0", "--json takes no value; see krx5580 dump --help"},
      {"read 0x40 40", "register 40 is ambiguous: use 0x40 or 40h for hexadecimal, 0x28 for decimal\n"},
      {"read 5C", "register 5C is ambiguous: use 0x5C or 5Ch for hexadecimal\n"},
      {"read 0x38", "the chip has no register 38h"},
      {"read 0x40h", "unknown register \"0x40h\""},
      {"write 0x30 80", "value 80 is ambiguous: use 0x80 or 80h for hexadecimal, 0x50 for decimal"},
      {"write 0x30 0x100", "value 0x100 does not fit into a byte"},
      {"write 0x30 -1", "\"-1\" is not a value: use 0x28 or 28h"},
      {"write 0x3E 0x00", "3Eh \"Company ID\" is read-only"},
      {"watch --interval nan", "--interval takes a number from 0.1 to 3600, not \"nan\""},
      {"watch --interval 0.05", "--interval takes a number from 0.1 to 3600"},
      {"watch --count 0", "--count takes a whole number from 1 to 1000000000, not \"0\""},
      {"watch --seed 4294967296", "--seed takes a whole number from 0 to 4294967295, not"},
      {"watch --medium 1", "--medium takes simulated, linux or auto, not \"1\""},
      {"watch --bus 0", "--bus takes printer-port or smbus, not \"0\""},
      {"dump --fault fail=3 --fault nonsense", "--fault nonsense: unknown fault; use fail=, slow="},
      {"dump --fault slow=60", "--fault slow=60: slow= takes a number from 0 to 10"},
      {"dump --board vid,load=99", "--board vid,load=99: load= takes a number from 0 to 10"},
      {"dump --smbus 1", "--smbus needs --medium linux"},
      {"dump --wiring f --force --medium simulated", "--wiring needs --medium linux"},
      {"dump --medium linux --printer-port -1", "--printer-port takes a whole number from 0 to 1048575"},
      {"dump --medium linux --speed 2 --fault fail=3", "--fault needs --medium simulated"},
      {"dump --medium linux --smbus 1 --bus printer-port", "--smbus cannot be combined with --bus printer"},
      {"read --address 2E 0x40", "--address takes 2Ch, 2Dh or 2Eh, not \"2E\""},
      {"scan --address 5Ah", "--address takes 2Ch, 2Dh or 2Eh, not \"5Ah\""},
      {"dump --medium linux --wiring /nowhere\x1b",
       "cannot read the wiring file /nowhere\\x1B: no such file or directory (ENOENT)"},
  };
  for (const auto& [line, says] : rows) {
    TestHost host;
    EXPECT_EQ(host.Run(line), 2) << line;
    EXPECT_EQ(host.Data.str(), "") << line;
    EXPECT_TRUE(host.Talk.str().starts_with("krx5580: " + says)) << says << " in: " << host.Talk.str();
  }
}

TEST(Command, PrintsDataAndMessagesThatNameTheMediumAndEndsWithACode) {
  const std::string on = "krx5580: Simulated board, chip at 2Dh on printer port 0\n",
                    error = "Error: 57, Device I/O error\n";
  const std::string board = R"("source":"Simulated board, chip at 2Dh on printer port 0"})";
  const std::string smbus = R"("source":"Simulated board, chip at 2Eh on the SMBus"})";
  const std::string limit = "0x7A  0x00  00000000  PROCHOT Limit\n", id = "0x3E  0x41  01000001  Company ID\n";
  const std::tuple<std::string, int, std::string, std::string> rows[] = {
      {"--version", 0, "krx5580 0.1.0\n", ""},
      {"dump --fault absent=0", 1, "", "krx5580: no KRX5580 found on: Simulated board\n"},
      {"dump --address 2Ch", 1, "", "krx5580: no KRX5580 found at 2Ch on: Simulated board\n"},
      {"dump --bus smbus --address 2Dh", 1, "", "krx5580: no KRX5580 found at 2Dh on: Simulated board\n"},
      // A register is given by address, panel name or save label, ignoring case.
      {R"(read 0x7a 7Ah "prochot limit" "PROCHOT Mask" "COMPANY ID")", 0, limit + limit + limit + limit + id, on},
      {"read 3Eh --json", 0, R"({"address":"0x3E","name":"Company ID","value":65,)" + board + "\n", on},
      {"read 0x3D 0x3E --fault fail=1,reg=3D", 1, "0x3D  ----  --------  Device ID\n" + id,
       on + "krx5580: 3Dh: " + error},
      {"read 3Dh --fault fail=1,reg=3D --json", 1,
       R"({"address":"0x3D","name":"Device ID","value":null,)" + board + "\n", on + "krx5580: 3Dh: " + error},
      {"write 68h 28h --bus smbus --json", 0,
       R"({"address":"0x68","name":"Local Temp Tmin","value":40,)" + smbus + "\n",
       "krx5580: Simulated board, chip at 2Eh on the SMBus\n"},
      {R"(write "local tmin" 28h)", 0, "0x68  0x28  00101000  Local Temp Tmin\n", on},
      // VID5..VID0 are read-only.
      {"write 43h 0xFF", 0, "0x43  0xCE  11001110  VID Register\n",
       on + "krx5580: wrote 0xFF to 43h, but it reads 0xCE\n"},
      {"write 68h 28h --fault fail=1,op=read,reg=68", 1, "0x68  ----  --------  Local Temp Tmin\n",
       on + "krx5580: wrote 0x28 to 68h, but reading it back failed: " + error},
      {"write 68h 28h --fault fail=1,op=write", 1, "", on + "krx5580: " + error},
      {"scan --json", 0,
       R"({"address":"0x2D","bus":"printer-port","port":0,"busMode":0,)" + board + "\n" +
           R"({"address":"0x2E","bus":"smbus",)" + smbus + "\n",
       "krx5580: searched: Simulated board\n"},
      {"scan --fault fail=7", 1, "2Dh  printer port 0, bus mode 0\n2Eh  SMBus\n",  // the first transfer on the SMBus
       "krx5580: Search SMBus: " + error + "krx5580: searched: Simulated board\n"},
  };
  for (const auto& [line, code, data, talk] : rows) {
    TestHost host;
    EXPECT_EQ(host.Run(line), code) << line;
    EXPECT_EQ(host.Data.str(), data) << line;
    EXPECT_EQ(host.Talk.str(), talk) << line;
  }
  TestHost help;
  EXPECT_EQ(help.Run("watch --help"), 0);
  EXPECT_NE(help.Data.str().find("--interval"), std::string::npos);
  TestHost full;
  full.Data.setstate(std::ios::badbit);
  EXPECT_EQ(full.Run("read 0x3E"), 1);
  EXPECT_TRUE(full.Said("cannot write the output"));
}

TEST(Command, DumpReadsEveryRegisterOnceInAddressOrderAndStopsOnADeadBus) {
  TestHost host;
  EXPECT_EQ(host.Run("dump"), 0);
  const auto lines = host.Lines();
  EXPECT_EQ(lines.size(), 90U);
  EXPECT_TRUE(lines.front().starts_with("0x20")) << lines.front();
  EXPECT_TRUE(lines.back().starts_with("0x7F")) << lines.back();
  EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end()));
  TestHost dead;
  EXPECT_EQ(dead.Run("dump --fault fail=12+"), 1);  // the search makes nine reads
  EXPECT_TRUE(dead.Lines().back().starts_with("0x24  ----"));
  EXPECT_TRUE(dead.Said("3 consecutive failures, remaining registers skipped"));
}

TEST(JsonText, IsAlwaysAValidString) {
  EXPECT_EQ(JsonText("i2c \"a\\b\"\t\x1B\x7F"), R"("i2c \"a\\b\"\u0009\u001b\u007f")");
  EXPECT_EQ(JsonText("25 °C €\U0001F600"), "\"25 °C €\U0001F600\"");
  // Truncated, overlong, a surrogate, beyond the last character, a stray continuation byte.
  for (const std::string text : {"\xC2", "\xC1\x81", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80", "\xE2\x82"}) {
    const std::vector<const char*> marks(text.size(), "\\ufffd");
    EXPECT_EQ(JsonText(text), fmt::format("\"{}\"", fmt::join(marks, "")));
  }
}

TEST(Command, AFoundChipNamesTheAdapterThatHoldsIt) {
  const ResultRow port = PrinterRow({0x5A, 0, true, 4, {}}, 1),
                  bus = SmbusRow({0x2E, SmbusAdapter{3, "here, i2c-3"}, {}});
  EXPECT_EQ(FoundChipLine(port, false, "x"), "2Dh  printer port 4, bus mode 1");
  EXPECT_EQ(FoundChipLine(port, true, "x"),
            R"({"address":"0x2D","bus":"printer-port","port":4,"busMode":1,"source":"x"})");
  EXPECT_EQ(FoundChipLine(bus, false, "x"), "2Eh  here, i2c-3");
  EXPECT_EQ(FoundChipLine(bus, true, "x"), R"({"address":"0x2E","bus":"smbus","adapter":"i2c-3","source":"x"})");
}

}  // namespace
}  // namespace krx
