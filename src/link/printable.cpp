// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/printable.h"

#include <fmt/format.h>

#include <algorithm>

namespace krx {
namespace {

/// Length in bytes of the character that begins here; 0 when it cannot be shown.
std::size_t CharacterLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x80) return first >= 0x20 && first != 0x7F ? 1 : 0;
  const std::size_t length = first >= 0xC2 && first < 0xE0 ? 2 : first >= 0xE0 && first < 0xF0 ? 3 : 4;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  const auto continues = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; };
  if (!std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(length), continues)) return 0;
  // U+0080 to U+009F are control characters, too.
  if (first == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0) return 0;
  return length;
}

}  // namespace

std::string Printable(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length > 0) {
      shown += text.substr(0, length);
    } else {
      shown += fmt::format("\\x{:02X}", static_cast<unsigned char>(text.front()));
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return shown;
}

std::string Excerpt(std::string_view text, std::size_t most) {
  return Printable(text.substr(0, most)) + (text.size() > most ? "..." : "");
}

}  // namespace krx
