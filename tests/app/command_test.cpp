// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/command.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "app/testhost.h"

namespace krx {
namespace {

using Words = std::vector<std::string>;

TEST(Command, WhatCannotBeUnderstoodEndsWithTwoAndSaysWhy) {
  const struct {
    Words Arguments;
    std::string Says;
  } rows[] = {
      {{}, "A subcommand is required"},
      {{"frobnicate"}, "there is no command \"frobnicate\""},
      {{"read"}, "register is required"},
      {{"read", "0x40", "40"}, "register 40 is ambiguous: 0x40 or 40h for the hexadecimal number, 0x28 for the"},
      {{"read", "5C"}, "register 5C is ambiguous: 0x5C or 5Ch for the hexadecimal number\n"},
      {{"read", "0x38"}, "the chip has no register 38h"},
      {{"read", "0x40h"}, "no register is called \"0x40h\""},
      {{"read", "Remote1"}, "no register is called \"Remote1\""},
      {{"write", "0x30", "80"}, "value 80 is ambiguous: 0x80 or 80h for the hexadecimal number, 0x50 for the decimal"},
      {{"write", "0x30", "0x100"}, "value 0x100 does not fit a byte"},
      {{"write", "0x30", "-1"}, "-1"},
      {{"write", "0x3E", "0x00"}, "3Eh \"Company ID\" is only read"},
      {{"watch", "--interval", "nan"}, "--interval takes a number from 0.1 to 3600, not \"nan\""},
      {{"watch", "--interval", "0.05"}, "--interval takes a number from 0.1 to 3600"},
      {{"watch", "--count", "0"}, "--count takes a number from 1 to"},
      {{"watch", "--count", "1.5"}, "--count takes a whole number"},
      {{"watch", "--speed", "nan"}, "must be a number from 1 to 1000"},
      {{"watch", "--medium", "usb"}, "--medium"},
      {{"read", "--address", "2E", "0x40"}, "value 2E is ambiguous"},
  };
  for (const auto& row : rows) {
    TestHost host;
    EXPECT_EQ(RunCommand(row.Arguments, host), 2) << row.Says;
    EXPECT_EQ(host.Data.str(), "") << row.Says;
    EXPECT_NE(host.Talk.str().find(row.Says), std::string::npos) << row.Says << " in: " << host.Talk.str();
  }
}

TEST(Command, WhatCannotBeCarriedOutEndsWithOneAndSaysWhy) {
  const struct {
    Words Arguments;
    std::string Says;
  } rows[] = {
      {{"dump", "--fault", "absent=0"}, "no KRX5580 answers on: Simulated board"},
      {{"dump", "--fault", "company=55"}, "no KRX5580 answers on: Simulated board"},
      {{"dump", "--address", "2Ch"}, "no KRX5580 answers at 2Ch on: Simulated board"},
      {{"dump", "--bus", "smbus", "--address", "2Dh"}, "no KRX5580 answers at 2Dh"},
      {{"dump", "--fault", "nonsense"}, "The fault \"nonsense\" cannot be read"},
      {{"dump", "--smbus", "1"}, "need --medium linux"},
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

TEST(Command, JsonNamesARegisterByAddressAndGivesItsValueAsANumber) {
  TestHost host;
  EXPECT_EQ(RunCommand({"read", "--json", "--bus", "smbus", "3Eh"}, host), 0);
  EXPECT_EQ(host.Data.str(), "{\"address\":\"0x3E\",\"name\":\"Company ID\",\"value\":65}\n");
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
  EXPECT_EQ(host.Data.str(),
            "{\"address\":\"0x3D\",\"name\":\"Device ID\",\"value\":null}\n"
            "{\"address\":\"0x3E\",\"name\":\"Company ID\",\"value\":65}\n"
            "{\"address\":\"0x3F\",\"name\":\"Revision\",\"value\":16}\n");
  EXPECT_NE(host.Talk.str().find("krx5580: 3Dh: Error: 57, Device I/O error\n"), std::string::npos);
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
}

TEST(Command, AnOutputThatCannotBeWrittenIsAFailure) {
  TestHost host;
  host.Data.setstate(std::ios::badbit);
  EXPECT_EQ(RunCommand({"read", "0x3E"}, host), 1);
  EXPECT_NE(host.Talk.str().find("the output could not be written"), std::string::npos);
}

}  // namespace
}  // namespace krx
