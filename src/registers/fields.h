// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace krx {

/// How the number in a field is read.
enum class FieldScale : std::uint8_t {
  Number,     ///< as it stands, decimal
  Byte,       ///< as it stands, hexadecimal
  Code,       ///< an item of the field's list
  Celsius,    ///< signed whole °C
  Degrees,    ///< whole °C, never negative
  Percent,    ///< of a duty: 255 is 100 %
  Volts,      ///< of the supply input whose registers these are
  ThermTime,  ///< milliseconds of the THERM timer
  LowerBits,  ///< the two bits below a value in another register
  TachLow,    ///< lower half of a tachometer count
  TachHigh,   ///< upper half of a tachometer count
};

/// What some bits of a register mean.
struct RegisterField {
  std::uint8_t Register;
  int High;  ///< uppermost bit, 7..0
  int Low;   ///< lowest bit
  std::string_view Name;
  FieldScale Scale;
  std::span<const std::string_view> Items = {};  ///< by code

  std::uint8_t Mask() const;
};

/// The fields of a register, uppermost first; together they cover the eight bits, reserved ones excepted. Empty for an
/// address that the chip does not have.
std::span<const RegisterField> FieldsOf(int address);

/// The number that a field holds in a register's byte.
int FieldValue(const RegisterField& field, std::uint8_t byte);

/// What a field says in a register's byte: "Manual Control", "45 °C", "50.2 %", "3.302 V".
std::string FieldText(const RegisterField& field, std::uint8_t byte);

/// What a write changes, field by field: "PWM2 behaviour: Remote1 Control → Manual Control". Fields that keep their
/// value are left out; empty when none changes, or when the old byte is not known and the register has several fields.
std::string ChangeText(int address, std::optional<std::uint8_t> from, std::uint8_t to);

}  // namespace krx
