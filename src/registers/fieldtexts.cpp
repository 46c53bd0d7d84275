// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/fields.h"

#include <algorithm>

#include <fmt/format.h>

#include "registers/chip.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

/// Volts by the scale of the supply input that the field belongs to; counts if it belongs to none.
std::string VoltsText(const RegisterField& field, int value, float chip::Supply::*scale, std::string_view sign,
                      int decimals) {
  const auto supply = std::ranges::find_if(chip::Supplies, [&](const chip::Supply& row) {
    return field.Register == row.Value || field.Register == row.LowLimit || field.Register == row.HighLimit ||
           (field.Register == row.Extension && field.Low == row.ExtensionShift);
  });
  if (supply == chip::Supplies.end()) return fmt::format("{} counts", value);
  return fmt::format("{}{} V", sign, FormatFixed(static_cast<float>(value) * (*supply).*scale, decimals));
}

}  // namespace

std::string FieldText(const RegisterField& field, std::uint8_t byte) {
  const int value = FieldValue(field, byte);
  switch (field.Scale) {
    case FieldScale::Number:
      return std::to_string(value);
    case FieldScale::Counts:
      return fmt::format("{} counts", value);
    case FieldScale::Bits:
      return fmt::format("{:0{}b}", value, field.High - field.Low + 1);
    case FieldScale::Byte:
      return fmt::format("{:02X}h", value);
    case FieldScale::Code:
      return std::string(field.Items[static_cast<std::size_t>(value)]);
    case FieldScale::ThermLimit:
      if (byte == chip::NoThermLimit) return "no limit";
      [[fallthrough]];
    case FieldScale::Celsius:
      return FormatFixed(TempFromByte(byte, 0), 0) + " °C";
    case FieldScale::Degrees:
      return fmt::format("{} °C", value);
    case FieldScale::Percent:
      return FormatFixed(DutyToPercent(byte), 1) + " %";
    case FieldScale::Volts:
      return VoltsText(field, value, &chip::Supply::ByteScale, "", 3);
    case FieldScale::LowerVolts:
      return VoltsText(field, value, &chip::Supply::CodeScale, "+", 4);
    case FieldScale::ThermTime:
      return FormatFixed(ThermTime(byte), 2) + " ms";
    case FieldScale::TachHigh:
      // "No limit" is FFFFh, which one byte of the pair cannot tell.
      return fmt::format("{} × 256 counts", value);
  }
  return {};
}

std::string ChangeText(int address, std::optional<std::uint8_t> from, std::uint8_t to) {
  const auto rows = FieldsOf(address);
  std::string text;
  if (!from && rows.size() > 1) return text;
  int used = 0;
  for (const RegisterField& field : rows) {
    used |= field.Mask();
    if (from && FieldValue(field, *from) == FieldValue(field, to)) continue;
    text += fmt::format("{}{}: {} → {}", text.empty() ? "" : "; ", field.Name, from ? FieldText(field, *from) : "?",
                        FieldText(field, to));
  }
  const int reserved = 0xFF & ~used;
  if (from && !rows.empty() && (*from & reserved) != (to & reserved)) {
    text +=
        fmt::format("{}reserved bits: {:02X}h → {:02X}h", text.empty() ? "" : "; ", *from & reserved, to & reserved);
  }
  return text;
}

}  // namespace krx
