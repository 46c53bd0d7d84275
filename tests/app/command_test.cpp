// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/command.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

#include "app/chipconnection.h"
#include "app/jsontext.h"
#include "app/testhost.h"

namespace krx {
namespace {

using Words = std::vector<std::string>;

TEST(Command, WhatCannotBeUnderstoodEndsWithTwoAndSaysWhy) {
  const struct {
    Words Arguments;
    std::string Says;
  } rows[] = {
      {{}, "a command is missing: watch, scan, read, dump or write; see krx5580 --help"},
      {{"frobnicate"}, "there is no command \"frobnicate\": see krx5580 --help"},
      {{"read"}, "REG... is missing; see krx5580 read --help"},
      {{"read", "0x40", "--colour"}, "there is no option \"--colour\"; see krx5580 read --help"},
      {{"write", "0x30", "1", "2"}, "\"2\" is one argument too many; see krx5580 write --help"},
      {{"dump", "--speed"}, "--speed takes a value; see krx5580 dump --help"},
      {{"dump", "--json=0"}, "--json takes no value; see krx5580 dump --help"},
      {{"read", "0x40", "40"}, "register 40 is ambiguous: 0x40 or 40h for the hexadecimal number, 0x28 for the"},
      {{"read", "5C"}, "register 5C is ambiguous: 0x5C or 5Ch for the hexadecimal number\n"},
      {{"read", "0x38"}, "the chip has no register 38h"},
      {{"read", "0x40h"}, "no register is called \"0x40h\""},
      {{"read", "Remote1"}, "no register is called \"Remote1\""},
      {{"write", "0x30", "80"}, "value 80 is ambiguous: 0x80 or 80h for the hexadecimal number, 0x50 for the decimal"},
      {{"write", "0x30", "0x100"}, "value 0x100 does not fit a byte"},
      {{"write", "0x30", "-1"}, "\"-1\" is no value: write 0x28 or 28h"},
      {{"write", "0x3E", "0x00"}, "3Eh \"Company ID\" is only read"},
      {{"watch", "--interval", "nan"}, "--interval takes a number from 0.1 to 3600, not \"nan\""},
      {{"watch", "--interval", "0.05"}, "--interval takes a number from 0.1 to 3600"},
      {{"watch", "--count", "0"}, "--count takes a whole number from 1 to 1000000000, not \"0\""},
      {{"watch", "--count", "1.5"}, "--count takes a whole number from 1 to"},
      {{"watch", "--speed", "nan"}, "--speed takes a number from 1 to 1000, not \"nan\""},
      {{"watch", "--seed", "4294967296"}, "--seed takes a whole number from 0 to 4294967295, not"},
      {{"watch", "--medium", "usb"}, "--medium takes simulated, linux or auto, not \"usb\""},
      {{"watch", "--medium", "1"}, "--medium takes simulated, linux or auto, not \"1\""},
      {{"watch", "--bus", "0"}, "--bus takes printer-port or smbus, not \"0\""},
      {{"dump", "--fault", "fail=3", "--fault", "nonsense"}, "--fault nonsense: there are fail=, slow="},
      {{"dump", "--fault", "slow=60"}, "--fault slow=60: slow= takes a number from 0 to 10"},
      {{"dump", "--board", "vid,load=99"}, "--board vid,load=99: load= takes a number from 0 to 10"},
      {{"dump", "--smbus", "1"}, "--smbus needs --medium linux"},
      {{"dump", "--wiring", "f", "--force", "--medium", "simulated"}, "--wiring needs --medium linux"},
      {{"dump", "--medium", "linux", "--printer-port", "-1"}, "--printer-port takes a whole number from 0 to 1048575"},
      {{"dump", "--medium", "linux", "--speed", "2", "--fault", "fail=3"}, "--fault needs --medium simulated"},
      {{"dump", "--medium", "linux", "--smbus", "1", "--bus", "printer-port"},
       "--smbus does not go with --bus printer"},
      {{"read", "--address", "2E", "0x40"}, "--address takes 2Ch, 2Dh or 2Eh, not \"2E\""},
      {{"scan", "--address", "5Ah"}, "--address takes 2Ch, 2Dh or 2Eh, not \"5Ah\""},
      {{"dump", "--medium", "linux", "--wiring", "/nowhere\x1b"}, "cannot read the wiring file /nowhere\\x1B: No such"},
  };
  for (const auto& row : rows) {
    TestHost host;
    EXPECT_EQ(RunCommand(row.Arguments, host), 2) << row.Says;
    EXPECT_EQ(host.Data.str(), "") << row.Says;
    EXPECT_TRUE(host.Talk.str().starts_with("krx5580: " + row.Says)) << row.Says << " in: " << host.Talk.str();
  }
}

TEST(Command, WhatCannotBeCarriedOutEndsWithOneAndSaysWhy) {
  const struct {
    Words Arguments;
    std::string Says;
  } rows[] = {
      {{"dump", "--fault", "absent=0"}, "no KRX5580 answers on: Simulated board"},
      {{"scan", "--fault", "company=55", "--address", "2Eh"}, "no KRX5580 answers at 2Eh on: Simulated board"},
      {{"dump", "--address", "2Ch"}, "no KRX5580 answers at 2Ch on: Simulated board"},
      {{"dump", "--bus", "smbus", "--address", "2Dh"}, "no KRX5580 answers at 2Dh"},
  };
  for (const auto& row : rows) {
    TestHost host;
    EXPECT_EQ(RunCommand(row.Arguments, host), 1) << row.Says;
    EXPECT_EQ(host.Data.str(), "") << row.Says;
    EXPECT_NE(host.Talk.str().find(row.Says), std::string::npos) << row.Says << " in: " << host.Talk.str();
  }
}

TEST(Command, HelpAndVersionAreData) {
  TestHost version;
  EXPECT_EQ(RunCommand({"--version"}, version), 0);
  EXPECT_EQ(version.Data.str(), "krx5580 0.1.0\n");
  EXPECT_EQ(version.Talk.str(), "");
  TestHost help;
  EXPECT_EQ(RunCommand({"watch", "--help"}, help), 0);
  EXPECT_NE(help.Data.str().find("--interval"), std::string::npos);
}

TEST(Command, ARegisterIsNamedByAddressPanelNameOrSaveLabelInAnyCase) {
  TestHost host;
  EXPECT_EQ(RunCommand({"read", "0x7a", "7Ah", "prochot limit", "PROCHOT Mask", "COMPANY ID"}, host), 0);
  const std::string limit = "0x7A  0x00  00000000  PROCHOT Limit\n";
  EXPECT_EQ(host.Data.str(), limit + limit + limit + limit + "0x3E  0x41  01000001  Company ID\n");
}

TEST(Command, EveryCommandNamesTheMediumInItsTalkAndInJson) {
  const std::string board = "Simulated board, chip at 2Dh on printer port 0";
  const std::string smbus = "Simulated board, chip at 2Eh on the SMBus";
  const struct {
    Words Arguments;
    std::string Data, Talk;
  } rows[] = {
      {{"read", "3Eh"}, R"({"address":"0x3E","name":"Company ID","value":65,"source":")" + board + "\"}\n", board},
      {{"write", "68h", "28h", "--bus", "smbus"},
       R"({"address":"0x68","name":"Local Temp Tmin","value":40,"source":")" + smbus + "\"}\n",
       smbus},
      {{"scan"},
       R"({"address":"0x2D","bus":"printer-port","port":0,"busMode":0,"source":")" + board + "\"}\n" +
           R"({"address":"0x2E","bus":"smbus","source":")" + smbus + "\"}\n",
       "searched: Simulated board"},
  };
  for (const auto& row : rows) {
    TestHost host;
    Words arguments = row.Arguments;
    arguments.push_back("--json");
    EXPECT_EQ(RunCommand(arguments, host), 0);
    EXPECT_EQ(host.Data.str(), row.Data);
    EXPECT_EQ(host.Talk.str(), "krx5580: " + row.Talk + "\n");
  }
}

TEST(Command, AScanWhoseBusFailedListsTheRestAndEndsWithOne) {
  TestHost host;
  EXPECT_EQ(RunCommand({"scan", "--fault", "fail=7"}, host), 1);  // the first transfer on the SMBus
  EXPECT_EQ(host.Data.str(), "2Dh  printer port 0, bus mode 0\n2Eh  SMBus\n");
  EXPECT_EQ(host.Talk.str(),
            "krx5580: Search SMBus: Error: 57, Device I/O error\nkrx5580: searched: Simulated board\n");
}

TEST(JsonText, IsAStringForEveryReader) {
  EXPECT_EQ(JsonText("i2c \"a\\b\"\t\x1B\x7F"), R"("i2c \"a\\b\"\u0009\u001b\u007f")");
  EXPECT_EQ(JsonText("25 °C €\U0001F600"), "\"25 °C €\U0001F600\"");
  // Cut off, overlong, a surrogate, beyond the last character, a byte that follows nothing.
  for (const char* text : {"\xC2", "\xC1\x81", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80", "\xE2\x82"}) {
    std::string expected = "\"";
    for (const char* at = text; *at != '\0'; ++at) expected += "\\ufffd";
    EXPECT_EQ(JsonText(text), expected + '"');
  }
}

TEST(Command, DumpReadsEveryRegisterOnceInTheOrderOfTheAddresses) {
  TestHost host;
  EXPECT_EQ(RunCommand({"dump"}, host), 0);
  const std::string text = host.Data.str();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 90);
  EXPECT_EQ(text.substr(0, 4), "0x20");
  EXPECT_NE(text.find("0x7B"), std::string::npos);
  EXPECT_EQ(text.find("0x7C"), std::string::npos);
}

TEST(Command, ARegisterThatCannotBeReadIsShownWithoutAValueAndTheOthersAreRead) {
  TestHost host;
  EXPECT_EQ(RunCommand({"read", "0x3D", "0x3E", "0x3F", "--fault", "fail=1,reg=3D", "--json"}, host), 1);
  const std::string values = std::regex_replace(host.Data.str(), std::regex(R"(,"source":"[^"]*")"), "");
  EXPECT_EQ(values,
            "{\"address\":\"0x3D\",\"name\":\"Device ID\",\"value\":null}\n"
            "{\"address\":\"0x3E\",\"name\":\"Company ID\",\"value\":65}\n"
            "{\"address\":\"0x3F\",\"name\":\"Revision\",\"value\":16}\n");
  EXPECT_NE(host.Talk.str().find("krx5580: 3Dh: Error: 57, Device I/O error\n"), std::string::npos);
}

TEST(Command, AFoundChipNamesTheAdapterThatHoldsIt) {
  const struct {
    ResultRow Row;
    const char *Text, *Json;
  } rows[] = {
      {PrinterRow({0x5A, 0, true, 4, {}}, 1), "2Dh  printer port 4, bus mode 1",
       R"({"address":"0x2D","bus":"printer-port","port":4,"busMode":1,"source":"here"})"},
      {SmbusRow({0x2E, SmbusAdapter{3, "SMBus I801 adapter at 0700, i2c-3"}, {}}),
       "2Eh  SMBus I801 adapter at 0700, i2c-3",
       R"({"address":"0x2E","bus":"smbus","adapter":"i2c-3","source":"here"})"},
      {SmbusRow({0x2E, {}, {}}), "2Eh  SMBus", R"({"address":"0x2E","bus":"smbus","source":"here"})"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FoundChipLine(row.Row, false, "here"), row.Text);
    EXPECT_EQ(FoundChipLine(row.Row, true, "here"), row.Json);
  }
}

TEST(Command, ABusThatStaysDeadIsGivenUpAfterThreeRegisters) {
  TestHost host;
  // The search takes nine reads of its own.
  EXPECT_EQ(RunCommand({"dump", "--fault", "fail=12+"}, host), 1);
  EXPECT_EQ(host.Data.str().find("0x25"), std::string::npos);
  EXPECT_NE(host.Talk.str().find("3 failures in a row, the rest is left unread"), std::string::npos);
}

TEST(Command, AWriteIsReadBackAndADifferenceIsTold) {
  TestHost host;
  EXPECT_EQ(RunCommand({"write", "local tmin", "28h"}, host), 0);
  EXPECT_EQ(host.Data.str(), "0x68  0x28  00101000  Local Temp Tmin\n");
  TestHost fixed;  // the chip keeps VID5..VID0 to itself
  EXPECT_EQ(RunCommand({"write", "43h", "0xFF"}, fixed), 0);
  EXPECT_NE(fixed.Talk.str().find("krx5580: 43h was written 0xFF and reads 0x"), std::string::npos);
  TestHost sent;
  EXPECT_EQ(RunCommand({"write", "68h", "28h", "--fault", "fail=1,op=read,reg=68"}, sent), 1);
  EXPECT_EQ(sent.Data.str(), "0x68  ----  --------  Local Temp Tmin\n");
  EXPECT_TRUE(sent.Talk.str().ends_with(
      "krx5580: 68h was written 0x28, but it could not be read back: Error: 57, Device I/O error\n"));
  TestHost refused;
  EXPECT_EQ(RunCommand({"write", "68h", "28h", "--fault", "fail=1,op=write"}, refused), 1);
  EXPECT_TRUE(refused.Talk.str().ends_with("port 0\nkrx5580: Error: 57, Device I/O error\n"));
}

TEST(Command, AnOutputThatCannotBeWrittenIsAFailure) {
  TestHost host;
  host.Data.setstate(std::ios::badbit);
  EXPECT_EQ(RunCommand({"read", "0x3E"}, host), 1);
  EXPECT_NE(host.Talk.str().find("the output could not be written"), std::string::npos);
}

}  // namespace
}  // namespace krx
