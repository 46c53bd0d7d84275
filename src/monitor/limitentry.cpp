// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/limitentry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

#include "link/commserror.h"
#include "monitor/channels.h"
#include "power/processorpower.h"
#include "registers/chip.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

constexpr std::uint8_t fullScale = 255;
constexpr float largestCount = 65535;

/// Step of an arrow, in the channel's unit.
double StepOf(std::size_t channel, bool powerMode) {
  switch (channels.at(channel).Kind) {
    case ChannelKind::Temperature:
      return 1;
    case ChannelKind::Fan:
      return 50;
    case ChannelKind::Voltage:
      break;
  }
  return channel == currentChannel && powerMode ? 1 : 0.05;
}

struct Range {
  double Minimum;
  double Maximum;
};

/// Range of the limit register, in the channel's unit.
Range RegisterRange(std::size_t channel, const LimitContext& context) {
  const Channel& row = channels.at(channel);
  if (row.Kind == ChannelKind::Temperature) return {-128, 127};
  if (row.Kind == ChannelKind::Fan) return {0, std::numeric_limits<double>::infinity()};
  const float volts = VoltageFromByte(static_cast<int>(row.Slot), fullScale);
  if (channel != currentChannel || !context.Power.PowerMode) return {0, volts};
  const float vccp = context.Measured.Voltages[chip::VccpSupply];
  const auto [least, most] =
      std::minmax({ProcessorCurrent(0, vccp, context.Power), ProcessorCurrent(volts, vccp, context.Power)});
  return {least, most};
}

Range AllowedRange(std::size_t channel, Marker marker, const LimitContext& context, const GaugeMarkers& markers) {
  Range range = RegisterRange(channel, context);
  if (marker == Marker::Low && markers.IsDraggable(Marker::High) && markers.IsKnown(Marker::High)) {
    range.Maximum = std::min(range.Maximum, markers.High());
  }
  if (marker == Marker::High && markers.IsDraggable(Marker::Low) && markers.IsKnown(Marker::Low)) {
    range.Minimum = std::max(range.Minimum, markers.Low());
  }
  return range;
}

bool HasCount(double rpm, float pulseCorrection) {
  try {
    TachLimitCount(static_cast<float>(rpm), pulseCorrection);
    return true;
  } catch (const OutOfRange&) {
    return false;
  }
}

/// The slowest whole speed above 0 that has a count.
double SlowestFanLimit(std::size_t channel, const FanCommon& fans) {
  const float correction = fans.PulseCorrection(channels.at(channel).Slot);
  double rpm = std::max(1.0F, std::floor(TachToRPM(1) / largestCount * correction));
  while (!HasCount(rpm, correction)) ++rpm;
  return rpm;
}

/// A bound as shown in the window: a value shown as the range or in the other box must be accepted.
double Shown(double bound, const Quantity& unit) {
  return Val(FormatFixed(bound, unit.LimitDecimals));
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The number in a text that contains nothing else except an optional unit.
std::optional<double> NumberOf(std::string_view text, const Quantity& unit) {
  text = Trimmed(text);
  if (text.ends_with(unit.Unit)) text = Trimmed(text.substr(0, text.size() - unit.Unit.size()));
  if (!IsNumber(text) || !std::isfinite(Val(text))) return std::nullopt;
  return Val(text);
}

bool Allowed(double value, std::size_t channel, Marker marker, const LimitContext& context,
             const GaugeMarkers& markers) {
  const Quantity& unit = ChannelQuantity(channel, context.Power.PowerMode);
  const Range range = AllowedRange(channel, marker, context, markers);
  if (value < std::min(range.Minimum, Shown(range.Minimum, unit))) return false;
  if (value > std::max(range.Maximum, Shown(range.Maximum, unit))) return false;
  switch (channels.at(channel).Kind) {
    case ChannelKind::Temperature:
      return value == std::floor(value);
    case ChannelKind::Fan:
      return HasCount(value, context.Fans.PulseCorrection(channels.at(channel).Slot));
    case ChannelKind::Voltage:
      break;
  }
  return true;
}

}  // namespace

std::string LimitText(std::size_t channel, Marker marker, bool powerMode, const GaugeMarkers& markers) {
  if (!markers.IsPlaced(marker) || !markers.IsKnown(marker)) return {};
  const Quantity& unit = ChannelQuantity(channel, powerMode);
  return FormatFixed(markers.ValueOf(marker), unit.LimitDecimals) + " " + std::string(unit.Unit);
}

std::string LimitRangeText(std::size_t channel, Marker marker, const LimitContext& context,
                           const GaugeMarkers& markers) {
  const Quantity& unit = ChannelQuantity(channel, context.Power.PowerMode);
  const std::string name(unit.Unit);
  if (channels.at(channel).Kind == ChannelKind::Fan) {
    return "0 or at least " + FormatFixed(SlowestFanLimit(channel, context.Fans), 0) + " " + name;
  }
  const Range range = AllowedRange(channel, marker, context, markers);
  const std::string text = FormatFixed(range.Minimum, unit.LimitDecimals) + " to " +
                           FormatFixed(range.Maximum, unit.LimitDecimals) + " " + name;
  return channels[channel].Kind == ChannelKind::Temperature ? text + ", whole degrees" : text;
}

std::optional<double> TypedLimit(const std::string& text, std::size_t channel, Marker marker,
                                 const LimitContext& context, const GaugeMarkers& markers) {
  const Quantity& unit = ChannelQuantity(channel, context.Power.PowerMode);
  if (!markers.IsDraggable(marker)) return std::nullopt;
  const auto value = NumberOf(text, unit);
  const double standing = markers.ValueOf(marker);
  if (value && markers.IsKnown(marker) && (*value == standing || *value == Shown(standing, unit))) return std::nullopt;
  if (value && Allowed(*value, channel, marker, context, markers)) return value;
  throw OutOfRange(LimitRangeText(channel, marker, context, markers));
}

double LimitStepEnd(std::size_t channel, const FanCommon& fans, double from, double wanted) {
  if (channels.at(channel).Kind != ChannelKind::Fan || wanted <= 0) return wanted;
  const double slowest = SlowestFanLimit(channel, fans);
  if (wanted >= slowest) return wanted;
  return wanted > from ? slowest : 0;
}

std::optional<double> SteppedLimit(int steps, std::size_t channel, Marker marker, const LimitContext& context,
                                   const GaugeMarkers& markers) {
  const Quantity& unit = ChannelQuantity(channel, context.Power.PowerMode);
  if (!markers.IsDraggable(marker) || !markers.IsKnown(marker)) return std::nullopt;
  const double from = markers.ValueOf(marker);
  Range range = AllowedRange(channel, marker, context, markers);
  // Without an upper register limit the arrows stop at the end of the gauge.
  if (std::isinf(range.Maximum)) range.Maximum = std::max(from, channels.at(channel).Scale.Maximum);
  const double wanted = Shown(from + steps * StepOf(channel, context.Power.PowerMode), unit);
  // A limit outside the range stays there until a step leads back into it.
  const double end = LimitStepEnd(channel, context.Fans, from,
                                  std::clamp(wanted, std::min(range.Minimum, from), std::max(range.Maximum, from)));
  if (end == from) return std::nullopt;
  return end;
}

}  // namespace krx
