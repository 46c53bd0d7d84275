// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "monitor/limits.h"

namespace krx {

// Input in the box of a limit. A number out of range, or anything else, is rejected and never adjusted: the gauge's
// scale ends before the chip's range does, and 150 °C truncated to 15 would be written.

/// The limit as shown in its box, with its unit: "80 °C", "2400 RPM", "1.173 V". Empty while the marker is not placed
/// or its limit is unknown.
std::string LimitText(std::size_t channel, Marker marker, bool powerMode, const GaugeMarkers& markers);

/// The allowed values: "-128 to 80 °C, whole degrees", "0 or at least 165 RPM". They are the register's range, limited
/// by the other marker.
std::string LimitRangeText(std::size_t channel, Marker marker, const LimitContext& context,
                           const GaugeMarkers& markers);

/// The value of a typed text, with or without the unit; empty when it is the present limit, and for a marker that
/// cannot be moved. Throws OutOfRange with a text that states the range.
std::optional<double> TypedLimit(const std::string& text, std::size_t channel, Marker marker,
                                 const LimitContext& context, const GaugeMarkers& markers);

/// The limit moved by some arrow steps, kept within the range; empty at its end or when the marker cannot be moved.
std::optional<double> SteppedLimit(int steps, std::size_t channel, Marker marker, const LimitContext& context,
                                   const GaugeMarkers& markers);

/// The end of a step from one value to another. Between 0 and its slowest speed a fan limit has no count: such a step
/// continues to one of the two.
double LimitStepEnd(std::size_t channel, const FanCommon& fans, double from, double wanted);

}  // namespace krx
