// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/alarmtext.h"

#include "monitor/diodefault.h"
#include "registers/numerics.h"

namespace krx {
namespace {

std::string LimitText(std::size_t channel, double limit, bool powerMode) {
  const Quantity& quantity = ChannelQuantity(channel, powerMode);
  return FormatFixed(limit, quantity.LimitDecimals) + " " + std::string(quantity.Unit);
}

}  // namespace

std::string AlarmReason(std::size_t channel, std::optional<double> value, const RegisterImage& seen,
                        const LimitContext& context) {
  // First, since the reading of an open diode would look like a limit violation.
  if (DiodeFault(channel, seen)) return "diode fault";
  if (value) {
    const auto text = [&](double limit) { return LimitText(channel, limit, context.Power.PowerMode); };
    const auto high = SeenLimit(seen, channel, Marker::High, context);
    if (high && *value > *high) return "above high limit " + text(*high);
    const auto low = SeenLimit(seen, channel, Marker::Low, context);
    if (low && *value < *low) return "below low limit " + text(*low);
  }
  return "out of limits";
}

}  // namespace krx
