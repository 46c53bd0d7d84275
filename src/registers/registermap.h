// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace krx {

/// Whether the register panel's value field accepts input.
enum class Access : std::uint8_t { ReadOnly, Editable };

/// The sets of names shown above a register's eight bit positions, in the order of their table.
enum class BitSet : std::uint8_t {
  Plain,
  Upper10,  ///< bits 9..2 of a 10-bit value; the lower two are in 0x76 and 0x77
  Upper16,  ///< bits 15..8 of a 16-bit value; the lower eight are in the previous register
  Config1,
  Config2,
  Config3,
  Config4,
  Interrupt1,
  Interrupt2,
  VID,
  Revision,
  PWMConfig,
  TrangeFreq,
  Acoustics1,
  Acoustics2,
  Hysteresis1,
  Hysteresis2,
  XorTest,
  ExtRes1,
  ExtRes2,
  ProchotStatus,
  ProchotLimit,
  FanPulses,
  DynTmin1,
  DynTmin2,
};

/// One register of the chip.
struct RegisterEntry {
  std::uint8_t Address;
  int PanelEntry;  ///< position in the register panel's list, 1 to 90; not in address order
  std::string_view PanelName;
  std::string_view SaveLabel;  ///< label in the register save file; empty: not saved
  krx::Access Access;
  BitSet Bits;
  std::optional<std::uint8_t> Default;  ///< after power-on; known of those that are saved
};

/// All 90 registers, sorted by address.
std::span<const RegisterEntry> Registers();

/// The register at a position of the panel's list; nullptr outside 1..90.
const RegisterEntry* LookupEntry(int panelEntry);

/// The register at an address; nullptr for an unknown address.
const RegisterEntry* LookupAddress(int address);

/// The register with this panel name or save label, ignoring case and surrounding blanks; nullptr if there is none.
const RegisterEntry* LookupName(std::string_view name);

/// The eight names of a set, b0 first.
const std::array<std::string_view, 8>& BitNames(BitSet set);

/// The label in the register save file; empty for a register that is not saved or unknown.
std::optional<std::string_view> SaveLabel(int address);

}  // namespace krx
