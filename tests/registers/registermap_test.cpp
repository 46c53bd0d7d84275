// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/registermap.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <tuple>

#include "registers/fields.h"

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

TEST(RegisterMap, HasExactlyTheAddressesOfTheChip) {
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

TEST(RegisterFields, CoverEveryRegisterOnceAndReservedBitsNot) {
  std::string reserved;
  for (const RegisterEntry& row : Registers()) {
    int covered = 0;
    for (const RegisterField& field : FieldsOf(row.Address)) {
      EXPECT_EQ(covered & field.Mask(), 0) << field.Name;
      covered |= field.Mask();
    }
    if (covered != 0xFF) reserved += fmt::format("{:02X}:{:02X} ", row.Address, 0xFF - covered);
  }
  EXPECT_EQ(reserved, "36:02 6E:0F 6F:FE 7D:F0 ");
}

TEST(RegisterFields, AChangeIsDescribedByFieldInItsUnit) {
  const std::tuple<int, std::optional<std::uint8_t>, std::uint8_t, const char*> rows[] = {
      {0x5D, 0x02, 0xE2, "PWM2 behaviour: Remote1 Control → Manual Control"},
      {0x5D, 0x02, 0x17, "PWM2 polarity: active low → active high; PWM2 spin-up: 250 ms → 4 sec"},
      {0x5D, 0x02, 0x02, ""},
      {0x5D, std::nullopt, 0xE2, ""},  // unknown which field changed
      {0x67, std::nullopt, 0xF6, "Remote1 Tmin: ? → -10 °C"},
      {0x60, 0xC4, 0x44, "Local Trange: 32°C → 5°C"},
      {0x63, 0x80, 0xF0, "PWM2 ramp rate: 1 → 48"},
      {0x31, 0xFF, 0x80, "PWM2 duty: 100.0 % → 50.2 %"},
      {0x47, 0xFF, 0x80, "Vccp high limit: 2.989 V → 1.500 V"},
      {0x6D, 0x44, 0x4A, "Local hysteresis: 4 °C → 10 °C"},
      {0x7B, 0x55, 0x95, "Tach4 pulses per revolution: 2 → 3"},
      {0x73, 0x00, 0x04, "Tach3 source: three-wire fan → two-wire fan"},
      {0x37, 0x00, 0x2F,
       "Local cycle: 0.5 s down, 1 s up → 16 s down, 32 s up; "
       "Remote2 cycle: 0.5 s down, 1 s up → 64 s down, 128 s up"},
      {0x40, 0x00, 0x11, "2.5V input: a voltage → the processor's current; Monitoring: off → on"},
      {0x79, 0x00, 0x07, "PROCHOT Status (THERM timer): 0.00 ms → 159.32 ms"},
      {0x7A, 0x00, 0x07, "PROCHOT Limit (THERM timer): 0 counts → 7 counts"},
      {0x6A, 0x64, 0x80, "Remote1 THERM limit: 100 °C → no limit"},
      {0x6B, 0x80, 0x81, "Local THERM limit: no limit → -127 °C"},
      {0x36, 0x00, 0x01, "Remote1 cycle, code bit 2: 0 → 1"},
      {0x37, 0x40, 0x80, "Remote1 cycle, code bits 1:0: 01 → 10"},
      {0x6E, 0x40, 0x4F, "reserved bits: 00h → 0Fh"},
      {0x7D, 0x80, 0x02, "THERM pin: Tach4 pin → 5V pin; reserved bits: 80h → 00h"},
      {0x6F, std::nullopt, 0x11, "XOR tree test: ? → on"},
      {0x62, 0x80, 0x20, "PWM3 hysteresis: off → on; PWM1 hysteresis: on → off"},
      {0x43, 0x0E, 0x0F, "VID5 to VID0: 001110 → 001111"},
      {0x3E, 0x00, 0x41, "Company ID: 00h → 41h"},
      {0x54, 0xFF, 0x12, "Tach1 Minimum Low Byte: 255 counts → 18 counts"},
      {0x55, 0xFF, 0x12, "Tach1 Minimum High Byte: 255 × 256 counts → 18 × 256 counts"},
      {0x77, 0x00, 0x0D,
       "Remote1 temperature, fraction: 0.00 °C → 0.75 °C; 12V input, lower two bits: +0.0000 V → +0.0156 V"},
      {0x76, 0x00, 0x0C, "Vccp input, lower two bits: +0.0000 V → +0.0088 V"},
      {0x38, 0x00, 0x01, ""},
  };
  for (const auto& [address, from, to, text] : rows) EXPECT_EQ(ChangeText(address, from, to), text);
}

}  // namespace
}  // namespace krx
