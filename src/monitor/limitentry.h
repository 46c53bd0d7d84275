// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "monitor/limits.h"

namespace krx {

// What may stand in the box of a limit. A number outside its range, or no number, is refused and never bent: the
// gauge's scale ends where its bar ends, but a chip's limit does not, and 150 °C cut to 15 would be written.

/// The limit as its box shows it, with its unit: "80 °C", "2400 RPM", "1.173 V". Empty while the marker is not placed
/// or its limit is not known.
std::string LimitText(std::size_t channel, Marker marker, bool powerMode, const GaugeMarkers& markers);

/// The values that may be typed: "-128 to 80 °C, whole degrees", "0 or at least 165 RPM". They are the register's, as
/// far as they stand on the marker's side of the other one.
std::string LimitRangeText(std::size_t channel, Marker marker, const LimitContext& context,
                           const GaugeMarkers& markers);

/// The value of a typed text, with or without the unit; nothing when it is the one that stands there, and for a marker
/// that cannot be moved. Throws OutOfRange with a text that names the range.
std::optional<double> TypedLimit(const std::string& text, std::size_t channel, Marker marker,
                                 const LimitContext& context, const GaugeMarkers& markers);

/// The value some steps of a box's arrow away, kept in the range; nothing at its end or when it cannot
/// be moved.
std::optional<double> SteppedLimit(int steps, std::size_t channel, Marker marker, const LimitContext& context,
                                   const GaugeMarkers& markers);

/// Where a step from one value to another ends. Between 0 and its slowest speed a fan has no count: such a step goes on
/// to the one or to the other.
double LimitStepEnd(std::size_t channel, const FanCommon& fans, double from, double wanted);

}  // namespace krx
