// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "controls/tracehistory.h"

namespace krx {

inline constexpr int trendSeconds = 60;

/// What a trace did in the last minute before `now` (microseconds of the history), two columns a second. They begin at
/// whole half seconds, so that a line of them moves only that often.
std::vector<TraceColumn> RecentColumns(const TraceHistory& history, std::size_t trace, std::int64_t now);

/// Change of a trace per second over its last ten. None while less than three seconds of it are known without a gap, or
/// its newest value is older than two.
std::optional<double> RecentSlope(const TraceHistory& history, std::size_t trace, std::int64_t now);

/// "+0.5 C/s", "steady" where that would be 0.0, "–" without a slope.
std::string SlopeWords(std::optional<double> celsiusPerSecond);

/// The values between which a small line of the columns is drawn: at least 10 apart, so that the steps of a quarter
/// degree do not look like a move. Nothing while all are empty.
struct TrendRange {
  double Low;
  double High;
};
std::optional<TrendRange> RangeOf(const std::vector<TraceColumn>& columns);

}  // namespace krx
