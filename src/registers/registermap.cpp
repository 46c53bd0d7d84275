// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/registermap.h"

#include <algorithm>

namespace krx {
namespace {

// Address, panel entry, panel name, save label, access, bit names, default.
constexpr RegisterEntry registers[] = {
    {0x20, 50, "2.5V Value", "", Access::ReadOnly, BitSet::Upper10, {}},
    {0x21, 51, "Vccp Value", "", Access::ReadOnly, BitSet::Upper10, {}},
    {0x22, 52, "Vcc Value", "", Access::ReadOnly, BitSet::Upper10, {}},
    {0x23, 53, "5V Value", "", Access::ReadOnly, BitSet::Upper10, {}},
    {0x24, 54, "12V Value", "", Access::ReadOnly, BitSet::Upper10, {}},
    {0x25, 13, "Remote1 Temp. High Byte", "", Access::ReadOnly, BitSet::Upper10, {}},
    {0x26, 14, "Local Temp. High Byte", "", Access::ReadOnly, BitSet::Upper10, {}},
    {0x27, 35, "Remote2 Temp. High Byte", "", Access::ReadOnly, BitSet::Upper10, {}},
    {0x28, 44, "Tach1 Low Byte", "", Access::ReadOnly, BitSet::Plain, {}},
    {0x29, 12, "Tach1 High Byte", "", Access::ReadOnly, BitSet::Upper16, {}},
    {0x2A, 45, "Tach2 Low Byte", "", Access::ReadOnly, BitSet::Plain, {}},
    {0x2B, 29, "Tach2 High Byte", "", Access::ReadOnly, BitSet::Upper16, {}},
    {0x2C, 47, "Tach3 Low Byte", "", Access::ReadOnly, BitSet::Plain, {}},
    {0x2D, 46, "Tach3 High Byte", "", Access::ReadOnly, BitSet::Upper16, {}},
    {0x2E, 49, "Tach4 Low Byte", "", Access::ReadOnly, BitSet::Plain, {}},
    {0x2F, 48, "Tach4 High Byte", "", Access::ReadOnly, BitSet::Upper16, {}},
    {0x30, 66, "PWM1 Current Duty Cycle", "PWM1 Current Duty Cycle", Access::Editable, BitSet::Plain, 0xFF},
    {0x31, 67, "PWM2 Current Duty Cycle", "PWM2 Current Duty Cycle", Access::Editable, BitSet::Plain, 0xFF},
    {0x32, 68, "PWM3 Current Duty Cycle", "PWM3 Current Duty Cycle", Access::Editable, BitSet::Plain, 0xFF},
    {0x33, 86, "Remote1 Op Point", "Remote1 Op-Point", Access::Editable, BitSet::Plain, 0x64},
    {0x34, 85, "Local Op Point", "Local Op-Point", Access::Editable, BitSet::Plain, 0x64},
    {0x35, 87, "Remote2 Op Point", "Remote2 Op-Point", Access::Editable, BitSet::Plain, 0x64},
    {0x36, 88, "Dynamic Tmin Reg1", "Dynamic Tmin Control1", Access::Editable, BitSet::DynTmin1, 0x00},
    {0x37, 89, "Dynamic Tmin Reg2", "Dynamic Tmin Control2", Access::Editable, BitSet::DynTmin2, 0x00},
    {0x3D, 21, "Device ID", "", Access::ReadOnly, BitSet::Plain, {}},
    {0x3E, 1, "Company ID", "", Access::ReadOnly, BitSet::Plain, {}},
    {0x3F, 2, "Revision", "", Access::ReadOnly, BitSet::Revision, {}},
    {0x40, 3, "Configuration Reg. 1", "Configuration 1", Access::Editable, BitSet::Config1, 0x00},
    {0x41, 4, "Interrupt Status 1", "", Access::ReadOnly, BitSet::Interrupt1, {}},
    {0x42, 6, "Interrupt Status 2", "", Access::ReadOnly, BitSet::Interrupt2, {}},
    {0x43, 65, "VID Register", "", Access::Editable, BitSet::VID, {}},
    {0x44, 56, "2.5V Low Limit", "2.5V Low Limit", Access::Editable, BitSet::Plain, 0x00},
    {0x45, 55, "2.5V High Limit", "2.5V High Limit", Access::Editable, BitSet::Plain, 0xFF},
    {0x46, 58, "Vccp Low Limit", "Vccp Low Limit", Access::Editable, BitSet::Plain, 0x00},
    {0x47, 57, "Vccp High Limit", "Vccp High Limit", Access::Editable, BitSet::Plain, 0xFF},
    {0x48, 60, "Vcc Low Limit", "Vcc Low Limit", Access::Editable, BitSet::Plain, 0x00},
    {0x49, 59, "Vcc High Limit", "Vcc High Limit", Access::Editable, BitSet::Plain, 0xFF},
    {0x4A, 62, "5V Low Limit", "5V Low Limit", Access::Editable, BitSet::Plain, 0x00},
    {0x4B, 61, "5V High Limit", "5V High Limit", Access::Editable, BitSet::Plain, 0xFF},
    {0x4C, 64, "12V Low Limit", "12V Low Limit", Access::Editable, BitSet::Plain, 0x00},
    {0x4D, 63, "12V High Limit", "12V High Limit", Access::Editable, BitSet::Plain, 0xFF},
    {0x4E, 18, "Remote1 Temp. Low Limit", "Remote1 Low Limit", Access::Editable, BitSet::Plain, 0x81},
    {0x4F, 17, "Remote1 Temp. High Limit", "Remote1 High Limit", Access::Editable, BitSet::Plain, 0x7F},
    {0x50, 20, "Local Temp. Low Limit", "Local Low Limit", Access::Editable, BitSet::Plain, 0x81},
    {0x51, 19, "Local Temp. High Limit", "Local High Limit", Access::Editable, BitSet::Plain, 0x7F},
    {0x52, 33, "Remote2 Temp. Low Limit", "Remote2 Low Limit", Access::Editable, BitSet::Plain, 0x81},
    {0x53, 32, "Remote2 Temp. High Limit", "Remote2 High Limit", Access::Editable, BitSet::Plain, 0x7F},
    {0x54, 69, "Tach1 Minimum Low Byte", "Tach1 Min Low", Access::Editable, BitSet::Plain, 0xFF},
    {0x55, 22, "Tach1 Minimum High Byte", "Tach1 Min High", Access::Editable, BitSet::Upper16, 0xFF},
    {0x56, 70, "Tach2 Minimum Low Byte", "Tach2 Min Low", Access::Editable, BitSet::Plain, 0xFF},
    {0x57, 31, "Tach2 Minimum High Byte", "Tach2 Min High", Access::Editable, BitSet::Upper16, 0xFF},
    {0x58, 72, "Tach3 Minimum Low Byte", "Tach3 Min Low", Access::Editable, BitSet::Plain, 0xFF},
    {0x59, 71, "Tach3 Minimum High Byte", "Tach3 Min High", Access::Editable, BitSet::Upper16, 0xFF},
    {0x5A, 74, "Tach4 Minimum Low Byte", "Tach4 Min Low", Access::Editable, BitSet::Plain, 0xFF},
    {0x5B, 73, "Tach4 Minimum High Byte", "Tach4 Min High", Access::Editable, BitSet::Upper16, 0xFF},
    {0x5C, 8, "PWM1 Configuration Register", "PWM1 Configuration", Access::Editable, BitSet::PWMConfig, 0x62},
    {0x5D, 75, "PWM2 Configuration Register", "PWM2 Configuration", Access::Editable, BitSet::PWMConfig, 0x62},
    {0x5E, 76, "PWM3 Configuration Register", "PWM3 Configuration", Access::Editable, BitSet::PWMConfig, 0x62},
    {0x5F, 7, "Remote1 Trange/PWM1 Freq", "Remote1 Trange/PWM1 Freq", Access::Editable, BitSet::TrangeFreq, 0xC4},
    {0x60, 11, "Local Trange/PWM2 Freq.", "Local Trange/PWM2 Freq", Access::Editable, BitSet::TrangeFreq, 0xC4},
    {0x61, 77, "Remote 2 Trange/PWM3 Freq.", "Remote2 Trange/PWM3 Freq", Access::Editable, BitSet::TrangeFreq, 0xC4},
    {0x62, 26, "Enhance Acoustics Reg 1", "Enhance Acoustics 1", Access::Editable, BitSet::Acoustics1, 0x00},
    {0x63, 81, "Enhance Acoustics Reg. 2", "Enhance Acoustics 2", Access::Editable, BitSet::Acoustics2, 0x00},
    {0x64, 78, "PWM1 Min. Duty Cycle", "PWM1 Min Duty", Access::Editable, BitSet::Plain, 0x80},
    {0x65, 79, "PWM2 Min. Duty Cycle", "PWM2 Min Duty", Access::Editable, BitSet::Plain, 0x80},
    {0x66, 80, "PWM3 Min. Duty Cycle", "PWM3 Min Duty", Access::Editable, BitSet::Plain, 0x80},
    {0x67, 10, "Remote1 Temp Tmin", "Remote1 Tmin", Access::Editable, BitSet::Plain, 0x5A},
    {0x68, 9, "Local Temp Tmin", "Local Tmin", Access::Editable, BitSet::Plain, 0x5A},
    {0x69, 28, "Remote2 Temp Tmin", "Remote2 Tmin", Access::Editable, BitSet::Plain, 0x5A},
    {0x6A, 24, "Remote1 Therm Limit", "Remote1 THERM", Access::Editable, BitSet::Plain, 0x64},
    {0x6B, 23, "Local Therm Limit", "Local THERM", Access::Editable, BitSet::Plain, 0x64},
    {0x6C, 34, "Remote2 Therm Limit", "Remote2 THERM", Access::Editable, BitSet::Plain, 0x64},
    {0x6D, 82, "Remote1/Local Hysteresis", "Remote1/Local Hysteresis", Access::Editable, BitSet::Hysteresis1, 0x44},
    {0x6E, 83, "Remote2 Hysteresis", "Remote2 Hysteresis", Access::Editable, BitSet::Hysteresis2, 0x40},
    {0x6F, 84, "XOR Tree Test Enable", "XOR Test", Access::Editable, BitSet::XorTest, 0x00},
    {0x70, 16, "Remote1 Temp Offset", "Remote1 Offset", Access::Editable, BitSet::Plain, 0x00},
    {0x71, 15, "Local Temp Offset", "Local Offset", Access::Editable, BitSet::Plain, 0x00},
    {0x72, 30, "Remote2 Temp. Offset", "Remote2 Offset", Access::Editable, BitSet::Plain, 0x00},
    {0x73, 5, "Configuration Reg. 2", "Configuration 2", Access::Editable, BitSet::Config2, 0x00},
    {0x74, 37, "Interrupt Mask 1 Reg.", "Int. Mask 1", Access::Editable, BitSet::Interrupt1, 0x00},
    {0x75, 38, "Interrupt Mask 2 Reg.", "Int. Mask 2", Access::Editable, BitSet::Interrupt2, 0x00},
    {0x76, 25, "Extended Resolution 1", "Extended Resolution 1", Access::Editable, BitSet::ExtRes1, 0x00},
    {0x77, 40, "Extended Resolution 2", "Extended Resolution 2", Access::Editable, BitSet::ExtRes2, 0x00},
    {0x78, 36, "Configuration Reg. 3", "Configuration 3", Access::Editable, BitSet::Config3, 0x00},
    {0x79, 41, "PROCHOT Status", "", Access::ReadOnly, BitSet::ProchotStatus, {}},
    {0x7A, 42, "PROCHOT Limit", "PROCHOT Mask", Access::Editable, BitSet::ProchotLimit, 0x00},
    {0x7B, 43, "Fan Pulses Per Revolution", "Fan Pulses per Rev", Access::Editable, BitSet::FanPulses, 0x55},
    {0x7D, 90, "Configuration Reg. 4", "Configuration 4", Access::Editable, BitSet::Config4, 0x00},
    {0x7E, 27, "Test Register 1", "", Access::Editable, BitSet::Plain, {}},
    {0x7F, 39, "Test Register 2", "", Access::Editable, BitSet::Plain, {}},
};
static_assert(std::size(registers) == 90);
static_assert(std::ranges::is_sorted(registers, {}, &RegisterEntry::Address));

using Names = std::array<std::string_view, 8>;

struct BitNameRow {
  BitSet Set;
  Names FromB7;  ///< as written: b7 first
};

constexpr BitNameRow bitNameRows[] = {
    {BitSet::Plain, {"Bit 7", "Bit 6", "Bit 5", "Bit 4", "Bit 3", "Bit 2", "Bit 1", "Bit 0"}},
    {BitSet::Upper10, {"Bit 9", "Bit 8", "Bit 7", "Bit 6", "Bit 5", "Bit 4", "Bit 3", "Bit 2"}},
    {BitSet::Upper16, {"Bit 15", "Bit 14", "Bit 13", "Bit 12", "Bit 11", "Bit 10", "Bit 9", "Bit 8"}},
    {BitSet::Config1, {"VCC", "TODIS", "DisableSpinUp", "V*I", "FSPD", "RDY", "LOCK", "STRT"}},
    {BitSet::Config2, {"SHDN", "CONV", "ATTN", "AVG", "Ain4", "Ain3", "Ain2", "Ain1"}},
    {BitSet::Config3, {"DC4", "DC3", "DC2", "DC1", "FAST", "BOOST", "PHOT", "ALERT"}},
    {BitSet::Config4, {"Res", "Res", "Res", "Res", "AinL", "AinL", "TH5V", "AL2.5V"}},
    {BitSet::Interrupt1, {"OOL", "R2T", "LT", "R1T", "5V", "Vcc", "Vccp", "2.5V"}},
    {BitSet::Interrupt2, {"D2", "D1", "F4P", "FAN3", "FAN2", "FAN1", "OVT", "12V/VC"}},
    {BitSet::VID, {"VIDSEL", "THLD", "VID5", "VID4", "VID3", "VID2", "VID1", "VID0"}},
    {BitSet::Revision, {"Ver", "Ver", "Ver", "Ver", "Stp", "Stp", "Stp", "Stp"}},
    {BitSet::PWMConfig, {"BHVR2", "BHVR1", "BHVR0", "INV", "SLOW", "Spin2", "Spin1", "Spin0"}},
    {BitSet::TrangeFreq, {"Range7", "Range6", "Range5", "Range4", "THRM", "Freq2", "Freq1", "Freq0"}},
    {BitSet::Acoustics1, {"Min3", "Min2", "Min1", "SYNC", "EN1", "ACOU1", "ACOU1", "ACOU1"}},
    {BitSet::Acoustics2, {"EN2", "ACOU2", "ACOU2", "ACOU2", "EN3", "ACOU3", "ACOU3", "ACOU3"}},
    {BitSet::Hysteresis1, {"HysR1", "HysR1", "HysR1", "HysR1", "HysL", "HysL", "HysL", "HysL"}},
    {BitSet::Hysteresis2, {"HysR2", "HysR2", "HysR2", "HysR2", "Res", "Res", "Res", "Res"}},
    {BitSet::XorTest, {"Res", "Res", "Res", "Res", "Res", "Res", "Res", "XEN"}},
    {BitSet::ExtRes1, {"5V", "5V", "Vcc", "Vcc", "Vccp", "Vccp", "2.5V", "2.5V"}},
    {BitSet::ExtRes2, {"TDM2", "TDM2", "LTMP", "LTMP", "TDM1", "TDM1", "12V", "12V"}},
    {BitSet::ProchotStatus, {"TMR7", "TMR6", "TMR5", "TMR4", "TMR3", "TMR2", "TMR1", "TMR0"}},
    {BitSet::ProchotLimit, {"LIMT7", "LIMT6", "LIMT5", "LIMT4", "LIMT3", "LIMT2", "LIMT1", "LIMT0"}},
    {BitSet::FanPulses, {"Fan4", "Fan4", "Fan3", "Fan3", "Fan2", "Fan2", "Fan1", "Fan1"}},
    {BitSet::DynTmin1, {"R2T", "LT", "R1T", "PHTR2", "PHTL", "PHTR1", "Res", "CYR2"}},
    {BitSet::DynTmin2, {"CYR2", "CYR2", "CYL", "CYL", "CYL", "CYR1", "CYR1", "CYR1"}},
};

constexpr auto namesFromB0 = [] {
  std::array<Names, std::size(bitNameRows)> names{};
  for (const BitNameRow& row : bitNameRows) {
    std::ranges::reverse_copy(row.FromB7, names[static_cast<std::size_t>(row.Set)].begin());
  }
  return names;
}();
static_assert(std::size(bitNameRows) == static_cast<std::size_t>(BitSet::DynTmin2) + 1);

template <typename Predicate>
const RegisterEntry* FindRow(Predicate matches) {
  const auto row = std::ranges::find_if(registers, matches);
  return row == std::end(registers) ? nullptr : row;
}

constexpr char LowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool SameName(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, LowerCase, LowerCase);
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace

std::span<const RegisterEntry> Registers() {
  return registers;
}

const RegisterEntry* LookupEntry(int panelEntry) {
  return FindRow([=](const RegisterEntry& row) { return row.PanelEntry == panelEntry; });
}

const RegisterEntry* LookupAddress(int address) {
  return FindRow([=](const RegisterEntry& row) { return row.Address == address; });
}

const RegisterEntry* LookupName(std::string_view name) {
  const std::string_view wanted = Trimmed(name);
  if (wanted.empty()) return nullptr;  // would match entries without a save label
  return FindRow(
      [=](const RegisterEntry& row) { return SameName(row.PanelName, wanted) || SameName(row.SaveLabel, wanted); });
}

const std::array<std::string_view, 8>& BitNames(BitSet set) {
  return namesFromB0.at(static_cast<std::size_t>(set));
}

std::optional<std::string_view> SaveLabel(int address) {
  const RegisterEntry* row = LookupAddress(address);
  if (row == nullptr || row->SaveLabel.empty()) return std::nullopt;
  return row->SaveLabel;
}

}  // namespace krx
