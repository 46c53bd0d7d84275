// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/recenttrend.h"

#include <algorithm>

#include "registers/numerics.h"

namespace krx {
namespace {

constexpr std::int64_t second = 1'000'000;
constexpr std::int64_t columnTime = second / 2;
constexpr std::int64_t slopeTime = 10 * second;
constexpr std::int64_t shortestSlope = 3 * second;
constexpr std::int64_t stillNew = 2 * second;
constexpr double leastRange = 10;

}  // namespace

std::vector<TraceColumn> RecentColumns(const TraceHistory& history, std::size_t trace, std::int64_t now) {
  constexpr std::int64_t count = trendSeconds * second / columnTime;
  std::vector<TraceColumn> columns(count);
  const std::int64_t end = (now / columnTime + 1) * columnTime;
  history.Columns(trace, end - count * columnTime, end, columns);
  return columns;
}

std::optional<double> RecentSlope(const TraceHistory& history, std::size_t trace, std::int64_t now) {
  const auto last = history.LastUpTo(trace, now);
  if (!last || now - last->Time > stillNew) return std::nullopt;
  const auto first = history.FirstFrom(trace, last->Time - slopeTime);
  if (!first || last->Time - first->Time < shortestSlope) return std::nullopt;
  if (history.GapBetween(trace, first->Time, last->Time)) return std::nullopt;
  return (static_cast<double>(last->Value) - static_cast<double>(first->Value)) * static_cast<double>(second) /
         static_cast<double>(last->Time - first->Time);
}

std::string SlopeWords(std::optional<double> celsiusPerSecond) {
  if (!celsiusPerSecond) return "–";
  const std::string text = FormatFixed(*celsiusPerSecond, 1);
  if (Val(text) == 0) return "steady";
  return (*celsiusPerSecond > 0 ? "+" : "") + text + " C/s";
}

std::optional<TrendRange> RangeOf(const std::vector<TraceColumn>& columns) {
  TraceColumn all;
  for (const TraceColumn& column : columns) {
    all.Min = std::min(all.Min, column.Min);
    all.Max = std::max(all.Max, column.Max);
  }
  if (all.Empty()) return std::nullopt;
  const double low = static_cast<double>(all.Min);
  return TrendRange{low, std::max(static_cast<double>(all.Max), low + leastRange)};
}

}  // namespace krx
