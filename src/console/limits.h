// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "console/measurements.h"
#include "fans/fancommon.h"
#include "link/linknewcomport06.h"
#include "power/powersettings.h"

namespace krx {

enum class LimitSide { Low, High };

/// A limit marker and the bytes it was placed from. The encodings round down, so a marker that nobody moved must
/// write its own bytes again: converted anew, an untouched limit would walk down by a count at every drag.
struct LimitMarker {
  double Value = 0;                     ///< where the marker stands, in the channel's unit
  double PlacedValue = 0;               ///< where `Bytes` put it
  std::array<std::uint8_t, 2> Bytes{};  ///< a fan: low byte, high byte; else only the first

  bool Moved() const { return Value != PlacedValue; }
  void PutBack() { Value = PlacedValue; }
};

/// The gauge's two markers for the channel they were read from.
struct LimitMarkers {
  std::size_t Channel = 0;
  bool Placed = false;  ///< false: nothing has been read yet, the markers cannot be moved
  LimitMarker Low;
  LimitMarker High;  ///< of a fan: parked at 20000, never written

  LimitMarker& At(LimitSide side) { return side == LimitSide::Low ? Low : High; }
  const LimitMarker& At(LimitSide side) const { return side == LimitSide::Low ? Low : High; }
};

/// What the conversions between limit bytes and engineering units depend on.
struct LimitContext {
  const FanCommon& Fans;
  const PowerSettings& Power;
  const Measurements& Measured;
};

/// Reads the channel's limit registers, low first, and converts them.
LimitMarkers ReadLimits(Link& link, std::size_t channel, const LimitContext& context);

/// Moves one marker to `value`, kept inside the gauge's scale and on its side of the other marker. The other marker
/// stays where it is. False (and nothing moved) while the markers are not placed, and for a fan's high marker.
bool MoveMarker(LimitMarkers& markers, LimitSide side, double value, bool powerMode);

/// Writes both limits, low register first; of a fan only the low limit, low byte first. A marker that was moved is
/// converted, another writes its remembered bytes. All bytes are formed before the first is written: a value without
/// an encoding throws CommsError and nothing is written. A written marker then remembers what it wrote.
void WriteLimits(Link& link, LimitMarkers& markers, const LimitContext& context);

}  // namespace krx
