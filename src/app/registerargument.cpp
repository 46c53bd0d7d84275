// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/registerargument.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "app/commandhost.h"

namespace krx {
namespace {

std::optional<int> WholeNumber(std::string_view digits, int base) {
  int value = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
  if (error != std::errc{} || stop != end || digits.starts_with('-')) return std::nullopt;
  return value;
}

/// The number of "0x5C" or "5Ch".
std::optional<int> MarkedHex(std::string_view text) {
  if (text.starts_with("0x") || text.starts_with("0X")) return WholeNumber(text.substr(2), 16);
  if (text.ends_with('h') || text.ends_with('H')) return WholeNumber(text.substr(0, text.size() - 1), 16);
  return std::nullopt;
}

/// How to write a number that lacks its base mark.
std::string Instead(std::string_view text) {
  std::string advice = fmt::format("use 0x{0} or {0}h for hexadecimal", text);
  if (const auto decimal = WholeNumber(text, 10)) advice += fmt::format(", 0x{:02X} for decimal", *decimal);
  return advice;
}

}  // namespace

const RegisterEntry& RegisterFromArgument(const std::string& text) {
  if (const RegisterEntry* entry = LookupName(text)) return *entry;
  if (const auto address = MarkedHex(text)) {
    if (const RegisterEntry* entry = LookupAddress(*address)) return *entry;
    throw UsageError(fmt::format("the chip has no register {:02X}h", *address));
  }
  if (WholeNumber(text, 16)) throw UsageError(fmt::format("register {} is ambiguous: {}", text, Instead(text)));
  throw UsageError(fmt::format("unknown register \"{}\" (krx5580 dump lists all registers)", text));
}

std::uint8_t ByteFromArgument(const std::string& text) {
  std::optional<int> value = MarkedHex(text);
  if (!value && WholeNumber(text, 16)) {
    if (text.size() > 1 || text.front() > '9') {
      throw UsageError(fmt::format("value {} is ambiguous: {}", text, Instead(text)));
    }
    value = WholeNumber(text, 10);
  }
  if (!value) throw UsageError(fmt::format("\"{}\" is not a value: use 0x28 or 28h", text));
  if (*value > 0xFF) throw UsageError(fmt::format("value {} does not fit into a byte", text));
  return static_cast<std::uint8_t>(*value);
}

}  // namespace krx
