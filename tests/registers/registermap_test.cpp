// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/registermap.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>

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
  for (int address = -1; address < 0x200; ++address) {
    const bool gap = (address >= 0x38 && address <= 0x3C) || address == 0x7C;
    EXPECT_EQ(LookupAddress(address) != nullptr, address >= 0x20 && address <= 0x7F && !gap) << address;
  }
  EXPECT_EQ(std::ranges::count_if(Registers(), [](const auto& row) { return SaveLabel(row.Address).has_value(); }), 65);
}

TEST(RegisterMap, ShowsAndSavesUnderTheNamesInUse) {
  // Address, panel name, save label, access, names of bits 0 and 5.
  const std::pair<int, const char*> rows[] = {
      {1, "3E, Company ID, none, read, Bit 0, Bit 5"},
      {90, "7D, Configuration Reg. 4, Configuration 4, edit, AL2.5V, Res"},
      {42, "7A, PROCHOT Limit, PROCHOT Mask, edit, LIMT0, LIMT5"},
      {77, "61, Remote 2 Trange/PWM3 Freq., Remote2 Trange/PWM3 Freq, edit, Freq0, Range5"},
      {65, "43, VID Register, none, edit, VID0, VID5"},
      {2, "3F, Revision, none, read, Stp, Ver"},
      {25, "76, Extended Resolution 1, Extended Resolution 1, edit, 2.5V, Vcc"},
      {22, "55, Tach1 Minimum High Byte, Tach1 Min High, edit, Bit 8, Bit 13"},
      {13, "25, Remote1 Temp. High Byte, none, read, Bit 2, Bit 7"},
      {88, "36, Dynamic Tmin Reg1, Dynamic Tmin Control1, edit, CYR2, R1T"},
      {37, "74, Interrupt Mask 1 Reg., Int. Mask 1, edit, 2.5V, LT"},
  };
  for (const auto& [panelEntry, text] : rows) {
    const RegisterEntry& row = *LookupEntry(panelEntry);
    EXPECT_EQ(
        fmt::format("{:X}, {}, {}, {}, {}, {}", row.Address, row.PanelName, SaveLabel(row.Address).value_or("none"),
                    row.Access == Access::Editable ? "edit" : "read", BitNames(row.Bits)[0], BitNames(row.Bits)[5]),
        text);
  }
}

TEST(RegisterMap, FindsANameInAnyCaseWithBlanksAroundItButNeverAnEmptyOne) {
  EXPECT_EQ(LookupName("\tprochot MASK ")->Address, 0x7A);
  for (const char* name : {"", "  ", "PROCHOT", "none"}) EXPECT_EQ(LookupName(name), nullptr) << name;
}

}  // namespace
}  // namespace krx
