// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>

#include "controls/gaugemarkers.h"
#include "fans/fancommon.h"
#include "link/linknewcomport06.h"
#include "link/registerimage.h"
#include "monitor/measurements.h"
#include "power/powersettings.h"

namespace krx {

/// What the conversions between limit bytes and engineering units depend on.
struct LimitContext {
  const FanCommon& Fans;
  const PowerSettings& Power;
  const Measurements& Measured;
  bool VccpKnown = true;  ///< Vccp was measured: until then no limit in A that rests on it can be told
};

/// Sets the gauge up for a channel: its scale, then both limits read (low register first), converted and placed with
/// their bytes. A fan's high marker is parked at 20000, and its low one is placed only when the pulses are known; the
/// markers of a current that rests on Vccp only when that is. When a read fails neither marker is placed.
void PlaceLimits(Link& link, std::size_t channel, const LimitContext& context, GaugeMarkers& markers);

/// Places the limits by the pulses or the Vccp known now, from the bytes last seen on the bus: for what was read after
/// the channel was selected. Nothing is placed from bytes that were never seen.
void PlaceSeenLimits(const Link& link, std::size_t channel, const LimitContext& context, GaugeMarkers& markers);

/// Writes both limits, low register first; of a fan only the low limit, low byte first. A marker that was moved is
/// converted; another one writes the bytes it was placed from, since the encodings round down and an untouched limit
/// would walk down by a count at every drag. All bytes are formed before the first is written: a value without an
/// encoding throws Overflow and writes nothing. A marker whose limit was written remembers the new bytes; on an error
/// the others go back to where they were placed. A limit that nobody knows and nobody moved is not written.
void WriteLimits(Link& link, std::size_t channel, const LimitContext& context, GaugeMarkers& markers);

/// A limit by the bytes last seen on the bus, in the channel's unit; nothing where they are not known, nor for the high
/// limit that a fan has not.
std::optional<double> SeenLimit(const RegisterImage& seen, std::size_t channel, Marker marker,
                                const LimitContext& context);

/// Takes the limits as they were last seen on the bus, whoever sent them, without any transfer; for markers that
/// PlaceLimits has placed. After a failed write a limit is not known, whatever it was before.
void RenewLimits(const RegisterImage& seen, std::size_t channel, const LimitContext& context, GaugeMarkers& markers);

}  // namespace krx
