// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fans/fanreading.h"
#include "link/linknewcomport06.h"
#include "monitor/measurements.h"

namespace krx {

class FirstValues;
class PinFunctions;
class ReadingCycle;
class TraceHistory;
struct DisplayState;
struct FanCommon;
struct PowerSettings;
struct ZoneState;

/// State known without a transfer: the measurement state and the bytes last seen on the bus.
struct LivingParts {
  Link& ChipLink;
  const Measurements& Measured;
  const FanCommon& Fans;
  const ZoneState& Zones;
  const PowerSettings& Power;
  const DisplayState& Display;
  const PinFunctions& Pins;
  const FirstValues& First;
  const TraceHistory& History;
  const ReadingCycle& Cycle;
};

/// A live value shown next to its control. Derived from LivingParts, without a transfer.
struct LivingValue {
  std::string Text = "–";  ///< "58.25"; a dash if nothing was measured or read
  std::string_view Unit;   ///< empty with the dash
  bool Old = false;        ///< not refreshed: shown muted

  bool Known() const { return Text != "–"; }
  /// For a screen reader: "58.25 C", "58.25 C, out of date", "unknown".
  std::string Words() const;
};

// old: the cycle is stopped. A value is also old if its last reading failed or monitoring is off.

/// A measured channel; unknown while its pin has another function.
LivingValue ChannelNow(const LivingParts& parts, std::size_t channel, bool old);
/// The duty of output 0..2.
LivingValue DutyNow(const LivingParts& parts, std::size_t output, bool old);

/// What the fan dialog shows of fan 0..3.
FanReading FanReadingNow(const LivingParts& parts, std::size_t fan, bool old);

/// Current and power from the sense voltage and Vccp, signed. Known in power mode only, with both voltages measured.
LivingValue CurrentNow(const LivingParts& parts, bool old);
LivingValue PowerNow(const LivingParts& parts, bool old);

/// One of a zone's temperature registers as last seen on the bus: "40", "–", or "Disabled" for a zone that the chip
/// does not control.
std::string ZoneDegrees(const RegisterImage& seen, const ZoneState& zones, std::size_t zone, std::uint8_t reg);
LivingValue TminNow(const LivingParts& parts, std::size_t zone, bool old);
LivingValue OperatingPointNow(const LivingParts& parts, std::size_t zone, bool old);

}  // namespace krx
