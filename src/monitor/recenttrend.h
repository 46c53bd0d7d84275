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

/// A trace in the minute before `now` (microseconds of the history), two columns per second. They start at whole half
/// seconds, so that the graph moves only that often.
std::vector<TraceColumn> RecentColumns(const TraceHistory& history, std::size_t trace, std::int64_t now);

/// Change of a trace per second over the last ten seconds. Empty if less than three seconds are known without a gap, or
/// if the newest value is older than two seconds.
std::optional<double> RecentSlope(const TraceHistory& history, std::size_t trace, std::int64_t now);

/// "+0.5 C/s", "steady" if that rounds to 0.0, "–" without a slope.
std::string SlopeWords(std::optional<double> celsiusPerSecond);

/// The value range for a small graph of the columns: at least 10, so that steps of a quarter degree do not look like a
/// change. Empty if all columns are empty.
struct TrendRange {
  double Low;
  double High;
};
std::optional<TrendRange> RangeOf(const std::vector<TraceColumn>& columns);

}  // namespace krx
