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

/// Settings used by the conversions between limit bytes and engineering units.
struct LimitContext {
  const FanCommon& Fans;
  const PowerSettings& Power;
  const Measurements& Measured;
  bool VccpKnown = true;  ///< Vccp was measured; until then limits in A that depend on it are unknown
};

/// Sets up the gauge for a channel: scale, then both limits read (low register first), converted and placed with their
/// bytes. A fan's high marker is parked at 20000 and its low one is placed only if the pulses are known; the markers of
/// a current that depends on Vccp only if that is known. If a read fails, no marker is placed.
void PlaceLimits(Link& link, std::size_t channel, const LimitContext& context, GaugeMarkers& markers);

/// Places the limits from the bytes last seen on the bus, with the pulses or the Vccp that have become known since the
/// channel was selected. Limits that were never seen are not placed.
void PlaceSeenLimits(const Link& link, std::size_t channel, const LimitContext& context, GaugeMarkers& markers);

/// Writes both limits, low register first; for a fan only the low limit, low byte first. A moved marker is converted;
/// an unmoved one writes the bytes it was placed from, since the encodings round down and an untouched limit would drop
/// by one count with every drag. All bytes are computed before the first is written: a value that cannot be encoded
/// throws Overflow and writes nothing. A marker whose limit was written keeps the new bytes; on an error the others
/// return to their placed values. A limit that is unknown and was not moved is not written.
void WriteLimits(Link& link, std::size_t channel, const LimitContext& context, GaugeMarkers& markers);

/// A limit from the bytes last seen on the bus, in the channel's unit; empty if they are unknown, and for the high
/// limit of a fan, which does not exist.
std::optional<double> SeenLimit(const RegisterImage& seen, std::size_t channel, Marker marker,
                                const LimitContext& context);

/// Updates markers placed by PlaceLimits from the bytes last seen on the bus, without any transfer. After a failed
/// write a limit is unknown.
void RenewLimits(const RegisterImage& seen, std::size_t channel, const LimitContext& context, GaugeMarkers& markers);

}  // namespace krx
