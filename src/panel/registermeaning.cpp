// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/registermeaning.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <span>
#include <string_view>

#include "registers/fields.h"

namespace krx {
namespace {

constexpr int mostBinaryDigits = 4;
constexpr std::string_view unknown = "–";

int Width(const RegisterField& field) {
  return field.High - field.Low + 1;
}

std::string ValueText(const RegisterField& field, int value) {
  return Width(field) <= mostBinaryDigits ? fmt::format("{:0{}b}", value, Width(field)) : fmt::format("{:02X}h", value);
}

/// How much of the text all names begin (or end) with, whole words only.
std::size_t SharedLength(std::span<const RegisterField> fields, bool atEnd) {
  const std::string_view model = fields.front().Name;
  std::size_t shared = 0;
  for (std::size_t length = 1; length < model.size(); ++length) {
    const std::string_view part = atEnd ? model.substr(model.size() - length) : model.substr(0, length);
    const bool all = std::ranges::all_of(fields, [&](const RegisterField& field) {
      return field.Name.size() > length && (atEnd ? field.Name.ends_with(part) : field.Name.starts_with(part));
    });
    if (!all) break;
    if ((atEnd ? part.front() : part.back()) == ' ') shared = length;
  }
  return shared;
}

std::string Capitalised(std::string_view text) {
  std::string name(text);
  name.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(name.front())));
  return name;
}

/// A field whose effect the console does not know has its own digits as texts.
bool IsInterpreted(const RegisterField& field) {
  return field.Scale != FieldScale::Code || field.Items.front() != "0";
}

}  // namespace

std::vector<FieldRow> FieldRows(int address, std::optional<std::uint8_t> byte) {
  const auto fields = FieldsOf(address);
  if (fields.empty()) return {};
  const std::size_t before = fields.size() > 1 ? SharedLength(fields, false) : 0;
  const std::size_t behind = fields.size() > 1 ? SharedLength(fields, true) : 0;
  std::vector<FieldRow> rows;
  for (const RegisterField& field : fields) {
    FieldRow row{.High = field.High, .Low = field.Low, .FullName = std::string(field.Name)};
    row.Bits = field.High == field.Low ? std::to_string(field.High) : fmt::format("{}–{}", field.High, field.Low);
    row.Name = Capitalised(field.Name.substr(before, field.Name.size() - before - behind));
    row.Value = row.Caption = unknown;
    if (byte) {
      row.Value = ValueText(field, FieldValue(field, *byte));
      row.Meaning = IsInterpreted(field) ? FieldText(field, *byte) : notInterpreted;
      row.Caption = !IsInterpreted(field)             ? row.Value
                    : field.Scale == FieldScale::Code ? fmt::format("{} · {}", row.Value, row.Meaning)
                                                      : row.Meaning;
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

std::vector<CodeRow> CodeRows(int address, std::size_t field, std::optional<std::uint8_t> byte) {
  const auto fields = FieldsOf(address);
  if (field >= fields.size() || fields[field].Scale != FieldScale::Code || !IsInterpreted(fields[field])) return {};
  std::vector<CodeRow> rows;
  for (const std::string_view item : fields[field].Items) {
    const int code = static_cast<int>(rows.size());
    rows.push_back({ValueText(fields[field], code), std::string(item),
                    byte.has_value() && FieldValue(fields[field], *byte) == code});
  }
  return rows;
}

std::optional<std::size_t> MainCodeField(int address) {
  const auto fields = FieldsOf(address);
  const auto found = std::ranges::find_if(fields, [](const RegisterField& field) { return field.Items.size() > 2; });
  if (found == fields.end()) return std::nullopt;
  return static_cast<std::size_t>(found - fields.begin());
}

}  // namespace krx
