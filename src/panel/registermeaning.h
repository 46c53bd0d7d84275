// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace krx {

/// A field of a register as the panel shows it.
struct FieldRow {
  int High = 0;  ///< uppermost bit, 7..0
  int Low = 0;
  std::string Bits = {};      ///< "7–5", "4"
  std::string Name = {};      ///< without the words that all fields of the register begin or end with: "Spin-up"
  std::string FullName = {};  ///< "PWM1 spin-up"
  std::string Value = {};     ///< the field's bits, "010"; hexadecimal above four of them, "C2h"; "–": not known
  std::string Meaning = {};   ///< "250 ms"; empty: not known
  std::string Caption = {};   ///< both in short: "010 · 250 ms", "3.302 V"
};

/// The meaning of a field whose effect the console does not know.
inline constexpr const char* notInterpreted = "not interpreted";

/// The fields of a register, uppermost first. No byte: none is known.
std::vector<FieldRow> FieldRows(int address, std::optional<std::uint8_t> byte);

/// One code that a field may hold.
struct CodeRow {
  std::string Code;
  std::string Meaning;
  bool Present = false;
};

/// All codes of a register's field, counted from the uppermost; empty for a field that has no list of them.
std::vector<CodeRow> CodeRows(int address, std::size_t field, std::optional<std::uint8_t> byte);

/// The field whose codes are worth a list unasked: the first with more than off and on.
std::optional<std::size_t> MainCodeField(int address);

}  // namespace krx
