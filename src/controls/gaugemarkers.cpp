// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/gaugemarkers.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace krx {
namespace {

/// The smallest 1, 2 or 5 times a power of ten not below `raw`.
double RoundStep(double raw) {
  const double power = std::pow(10.0, std::floor(std::log10(raw)));
  for (const double factor : {1.0, 2.0, 5.0})
    if (raw <= factor * power * (1 + 1e-9)) return factor * power;
  return 10 * power;
}

}  // namespace

double GaugeScale::Clamp(double value) const {
  return std::isnan(value) ? Minimum : std::min(std::max(value, Minimum), Maximum);
}

double GaugeScale::Fraction(double value) const {
  return Maximum > Minimum ? (Clamp(value) - Minimum) / (Maximum - Minimum) : 0;
}

double GaugeScale::ValueAt(double fraction) const {
  return Clamp(Minimum + fraction * (Maximum - Minimum));
}

int GaugeScale::Decimals() const {
  return Maximum - Minimum < 100 ? 2 : 0;
}

double GaugeScale::Snap(double value) const {
  const double unit = Decimals() == 0 ? 1 : 100;
  return std::round(value * unit) / unit;
}

double GaugeScale::Step() const {
  return Maximum > Minimum ? RoundStep((Maximum - Minimum) / 200) : 0;
}

std::vector<double> GaugeScale::Ticks(int most) const {
  std::vector<double> ticks;
  if (!(Maximum > Minimum)) return ticks;
  double step = RoundStep((Maximum - Minimum) / most);
  const auto first = [&] { return std::ceil(Minimum / step - 1e-9); };
  const auto last = [&] { return std::floor(Maximum / step + 1e-9); };
  while (last() - first() + 1 > most) step = RoundStep(step * 1.5);
  const int count = static_cast<int>(last() - first()) + 1;
  for (int index = 0; index < count; ++index) ticks.push_back((first() + index) * step);
  return ticks;
}

void GaugeMarkers::SetScale(double minimum, double maximum) {
  scale_ = {minimum, maximum};
  states_ = {};
}

void GaugeMarkers::Place(Marker marker, double value, std::optional<RegisterBytes> bytes) {
  Get(marker) = {
      .Value = value, .PlacedValue = value, .Placed = true, .Parked = false, .Moved = false, .Bytes = std::move(bytes)};
}

void GaugeMarkers::Park(Marker marker, double value) {
  Place(marker, value, std::nullopt);
  Get(marker).Parked = true;
}

void GaugeMarkers::Renew(Marker marker, double value, RegisterBytes bytes) {
  State& state = Get(marker);
  if (!state.Moved) state.Value = value;
  state.PlacedValue = value;
  state.Bytes = std::move(bytes);
}

std::optional<GaugeMarkers::RegisterBytes> GaugeMarkers::Bytes(Marker marker) const {
  if (IsMoved(marker)) return std::nullopt;
  return Get(marker).Bytes;
}

double GaugeMarkers::Move(Marker marker, double wanted) {
  State& state = Get(marker);
  if (!IsDraggable(marker) || std::isnan(wanted)) return state.Value;
  double lowest = scale_.Minimum;
  double highest = scale_.Maximum;
  if (marker == Marker::Low && IsPlaced(Marker::High)) highest = scale_.Clamp(High());
  if (marker == Marker::High && IsPlaced(Marker::Low)) lowest = scale_.Clamp(Low());
  state.Value = std::clamp(wanted, lowest, highest);
  state.Moved = true;
  return state.Value;
}

void GaugeMarkers::Enter(Marker marker, double value) {
  if (!IsDraggable(marker)) return;
  Get(marker).Value = value;
  Get(marker).Moved = true;
}

void GaugeMarkers::PutBack(Marker marker) {
  State& state = Get(marker);
  state.Value = state.PlacedValue;
  state.Moved = false;
}

}  // namespace krx
