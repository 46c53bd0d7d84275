// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/registerfilter.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <string>

namespace krx {
namespace {

std::string Plain(std::string_view text) {
  const auto blank = [](char letter) { return letter == ' ' || letter == '\t'; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  std::string plain(text);
  std::ranges::transform(plain, plain.begin(),
                         [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return plain;
}

bool HasAddress(const RegisterEntry& entry, std::string_view typed) {
  const std::string address = fmt::format("{:02x}", entry.Address);
  if (typed.starts_with("0x")) typed.remove_prefix(2);
  if (typed.ends_with('h')) return address == typed.substr(0, typed.size() - 1);
  return !typed.empty() && address.starts_with(typed);
}

}  // namespace

bool IsFound(const RegisterEntry& entry, std::string_view typed) {
  const std::string wanted = Plain(typed);
  return Plain(entry.PanelName).find(wanted) != std::string::npos || HasAddress(entry, wanted);
}

}  // namespace krx
