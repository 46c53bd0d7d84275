// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/jsontext.h"

#include <fmt/format.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace krx {
namespace {

/// The well-formed multi-byte sequences, by their first and second byte; all further bytes are 80h to BFh.
struct Sequence {
  std::uint8_t First, Last;
  std::uint8_t SecondFirst, SecondLast;
  std::size_t Length;
};
constexpr std::array<Sequence, 8> sequences{{
    {0xC2, 0xDF, 0x80, 0xBF, 2},
    {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3},
    {0xED, 0xED, 0x80, 0x9F, 3},
    {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4},
    {0xF1, 0xF3, 0x80, 0xBF, 4},
    {0xF4, 0xF4, 0x80, 0x8F, 4},
}};

bool Between(char character, int first, int last) {
  const auto byte = static_cast<unsigned char>(character);
  return byte >= first && byte <= last;
}

/// Length of the sequence that `text` begins with; 0 when there is none.
std::size_t SequenceLength(std::string_view text) {
  for (const Sequence& sequence : sequences) {
    if (!Between(text[0], sequence.First, sequence.Last) || text.size() < sequence.Length) continue;
    if (!Between(text[1], sequence.SecondFirst, sequence.SecondLast)) continue;
    for (std::size_t i = 2; i < sequence.Length; ++i) {
      if (!Between(text[i], 0x80, 0xBF)) return 0;
    }
    return sequence.Length;
  }
  return 0;
}

}  // namespace

std::string JsonText(std::string_view text) {
  std::string json = "\"";
  while (!text.empty()) {
    const char first = text.front();
    std::size_t length = 1;
    if (first == '"' || first == '\\') {
      json += {'\\', first};
    } else if (Between(first, 0x00, 0x1F) || first == 0x7F) {
      json += fmt::format("\\u{:04x}", static_cast<int>(first));
    } else if (Between(first, 0x20, 0x7E)) {
      json += first;
    } else if (const std::size_t sequence = SequenceLength(text); sequence > 0) {
      json += text.substr(0, sequence);
      length = sequence;
    } else {
      json += "\\ufffd";
    }
    text.remove_prefix(length);
  }
  return json + '"';
}

}  // namespace krx
