// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/fantables.h"

#include <algorithm>

#include "registers/numerics.h"

namespace krx {
namespace {

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::optional<std::uint8_t> CodeOf(std::string_view text, std::span<const std::string_view> items) {
  const auto found = std::find(items.begin(), items.end(), Trimmed(text));
  if (found == items.end()) return std::nullopt;
  return static_cast<std::uint8_t>(found - items.begin());
}

std::optional<std::uint8_t> RampRateCode(std::string_view text) {
  const auto found = std::find_if(rampRateItems.begin(), rampRateItems.end(),
                                  [&](std::string_view item) { return Val(item) == Val(text); });
  if (found == rampRateItems.end()) return std::nullopt;
  return static_cast<std::uint8_t>(found - rampRateItems.begin());
}

std::optional<std::string_view> LabelOfType(std::string_view item) {
  const auto found = std::find_if(fanTypes.begin(), fanTypes.end(),
                                  [text = Trimmed(item)](const FanType& type) { return type.Item == text; });
  if (found == fanTypes.end()) return std::nullopt;
  return found->Label;
}

std::string_view TypeOfLabel(std::string_view label) {
  const auto found =
      std::find_if(fanTypes.begin(), fanTypes.end(), [&](const FanType& type) { return type.Label == label; });
  return found == fanTypes.end() ? label : found->Item;
}

}  // namespace krx
