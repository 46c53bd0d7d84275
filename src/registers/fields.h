// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace krx {

/// How the number in a field is interpreted.
enum class FieldScale : std::uint8_t {
  Number,      ///< unchanged, decimal
  Counts,      ///< of a timer or tachometer; of a tachometer its lower byte
  Bits,        ///< unchanged, binary: bits without a common number, or a part of one
  Byte,        ///< unchanged, hexadecimal
  Code,        ///< an item of the field's list
  Celsius,     ///< signed whole °C
  ThermLimit,  ///< the same, the lowest being "no limit"
  Degrees,     ///< whole °C, never negative
  Percent,     ///< of a duty: 255 is 100 %
  Volts,       ///< of the register's supply input
  LowerVolts,  ///< of the two low-order bits of a supply's 10-bit code, to be added
  ThermTime,   ///< milliseconds of the THERM timer
  TachHigh,    ///< upper byte of a tachometer count
};

/// A field of a register.
struct RegisterField {
  std::uint8_t Register;
  int High;  ///< uppermost bit, 7..0
  int Low;   ///< lowest bit
  std::string_view Name;
  FieldScale Scale;
  std::span<const std::string_view> Items = {};  ///< by code

  std::uint8_t Mask() const;
};

/// The fields of a register, uppermost first; together they cover the eight bits, except reserved bits. Empty for an
/// unknown address.
std::span<const RegisterField> FieldsOf(int address);

/// The number in a field of a register's byte.
int FieldValue(const RegisterField& field, std::uint8_t byte);

/// The meaning of a field in a register's byte: "Manual Control", "45 °C", "50.2 %", "3.302 V".
std::string FieldText(const RegisterField& field, std::uint8_t byte);

/// The changes made by a write, by field: "PWM2 behaviour: Remote1 Control → Manual Control". Changed reserved bits
/// come last, together. Unchanged fields are omitted; empty when none changes, or when the old byte is unknown and the
/// register has several fields.
std::string ChangeText(int address, std::optional<std::uint8_t> from, std::uint8_t to);

}  // namespace krx
