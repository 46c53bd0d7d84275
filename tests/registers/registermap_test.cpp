// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/registermap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace krx {
namespace {

TEST(RegisterMap, EveryPanelEntryAndEveryNameLeadsToOneRegister) {
  for (int entry = 1; entry <= 90; ++entry) {
    const RegisterEntry* row = LookupEntry(entry);
    ASSERT_NE(row, nullptr) << entry;
    EXPECT_EQ(LookupAddress(row->Address), row);
    EXPECT_EQ(LookupName(row->PanelName), row) << row->PanelName;
    const std::string_view saved = SaveLabel(row->Address).value_or(row->PanelName);
    EXPECT_EQ(LookupName(saved), row) << saved;
  }
  for (const int entry : {-1, 0, 91}) EXPECT_EQ(LookupEntry(entry), nullptr);
}

TEST(RegisterMap, HoldsTheAddressesTheChipHas) {
  const auto known = [](int address) {
    return address >= 0x20 && address <= 0x7F && !(address >= 0x38 && address <= 0x3C) && address != 0x7C;
  };
  for (int address = -1; address < 0x200; ++address) {
    EXPECT_EQ(LookupAddress(address) != nullptr, known(address)) << address;
  }
  EXPECT_EQ(std::ranges::count_if(Registers(), [](const auto& row) { return SaveLabel(row.Address).has_value(); }), 65);
}

TEST(RegisterMap, ShowsAndSavesUnderTheNamesInUse) {
  using enum Access;
  struct Row {
    int Entry, Address;
    std::string PanelName, SaveLabel;
    krx::Access Access;
    std::string Bit0, Bit5;
  };
  const Row rows[] = {
      {1, 0x3E, "Company ID", "none", ReadOnly, "Bit 0", "Bit 5"},
      {90, 0x7D, "Configuration Reg. 4", "Configuration 4", Editable, "AL2.5V", "Res"},
      {42, 0x7A, "PROCHOT Limit", "PROCHOT Mask", Editable, "LIMT0", "LIMT5"},
      {41, 0x79, "PROCHOT Status", "none", ReadOnly, "TMR0", "TMR5"},
      {77, 0x61, "Remote 2 Trange/PWM3 Freq.", "Remote2 Trange/PWM3 Freq", Editable, "Freq0", "Range5"},
      {65, 0x43, "VID Register", "none", Editable, "VID0", "VID5"},
      {2, 0x3F, "Revision", "none", ReadOnly, "Stp", "Ver"},
      {25, 0x76, "Extended Resolution 1", "Extended Resolution 1", Editable, "2.5V", "Vcc"},
      {39, 0x7F, "Test Register 2", "none", Editable, "Bit 0", "Bit 5"},
      {22, 0x55, "Tach1 Minimum High Byte", "Tach1 Min High", Editable, "Bit 8", "Bit 13"},
      {13, 0x25, "Remote1 Temp. High Byte", "none", ReadOnly, "Bit 2", "Bit 7"},
      {88, 0x36, "Dynamic Tmin Reg1", "Dynamic Tmin Control1", Editable, "CYR2", "R1T"},
      {37, 0x74, "Interrupt Mask 1 Reg.", "Int. Mask 1", Editable, "2.5V", "LT"},
  };
  for (const Row& row : rows) {
    const RegisterEntry* entry = LookupEntry(row.Entry);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->Address, row.Address);
    EXPECT_EQ(entry->PanelName, row.PanelName);
    EXPECT_EQ(SaveLabel(row.Address).value_or("none"), row.SaveLabel);
    EXPECT_EQ(entry->Access, row.Access) << row.PanelName;
    EXPECT_EQ(BitNames(entry->Bits)[0], row.Bit0) << row.PanelName;
    EXPECT_EQ(BitNames(entry->Bits)[5], row.Bit5) << row.PanelName;
  }
}

TEST(RegisterMap, FindsANameInAnyCaseWithBlanksAroundItButNeverAnEmptyOne) {
  EXPECT_EQ(LookupName("\tprochot MASK ")->Address, 0x7A);
  for (const char* name : {"", "  ", "PROCHOT", "none"}) EXPECT_EQ(LookupName(name), nullptr) << name;
}

}  // namespace
}  // namespace krx
