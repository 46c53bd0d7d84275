// SPDX-License-Identifier: GPL-3.0-or-later
// Queries of the trace history; storage is in tracehistory.cpp.
#include <algorithm>
#include <cmath>
#include <utility>

#include "controls/tracehistory.h"

namespace krx {

namespace {

constexpr float kNotPosted = std::numeric_limits<float>::quiet_NaN();

}  // namespace

// The gaps that overlap the time span.
std::span<const TraceHistory::Gap> TraceHistory::GapsIn(std::int64_t begin, std::int64_t end) const {
  const auto first = std::ranges::upper_bound(gaps_, begin, {}, &Gap::End);
  const auto last = std::ranges::lower_bound(gaps_, end, {}, &Gap::Begin);
  return first < last ? std::span(first, last) : std::span<const Gap>();
}

template <class Visit>
bool TraceHistory::WalkEntry(std::size_t level, std::uint64_t entry, std::int64_t begin, std::int64_t end,
                             std::int64_t longest, Visit& visit) const {
  const Run run = RunAt(level, entry);
  if (*run.Last < begin || *run.First >= end) return true;
  const bool inside = *run.First >= begin && *run.Last < end;
  const bool fine = inside && *run.Last - *run.First <= longest;
  if (level == 0 || fine || !Kept(level - 1, entry * kFactor)) return visit(run);
  for (std::uint64_t child = entry * kFactor; child < (entry + 1) * kFactor; ++child)
    if (!WalkEntry(level - 1, child, begin, end, longest, visit)) return false;
  return true;
}

// Visits the entries that cover the time from begin to end, in order, using blocks of at most `longest`, until a visit
// returns false. Only complete blocks are stored, so each level continues where the one above it ends.
template <class Visit>
void TraceHistory::Walk(std::int64_t begin, std::int64_t end, std::int64_t longest, Visit&& visit) const {
  std::uint64_t entry = 0;
  for (std::size_t level = levels_.size(); level-- > 0; entry *= kFactor)
    for (; entry < levels_[level].Count; ++entry)
      if (!WalkEntry(level, entry, begin, end, longest, visit)) return;
}

void TraceHistory::Columns(std::size_t trace, std::int64_t begin, std::int64_t end,
                           std::span<TraceColumn> columns) const {
  std::fill(columns.begin(), columns.end(), TraceColumn{});
  if (columns.empty() || end <= begin) return;
  const double perMicrosecond = static_cast<double>(columns.size()) / static_cast<double>(end - begin);
  const auto longest = (end - begin) / static_cast<std::int64_t>(columns.size());
  const auto columnOf = [&](std::int64_t time) {
    const auto offset = static_cast<double>(std::max<std::int64_t>(time - begin, 0));
    return std::min(static_cast<std::size_t>(offset * perMicrosecond), columns.size() - 1);
  };
  TraceColumn* newest = nullptr;
  Walk(begin, end, longest, [&](const Run& run) {
    const float min = run.Min[trace * run.Stride];
    const float max = run.Max[trace * run.Stride];
    if (!(min <= max)) {
      if (newest) newest->GapAfter = true;
      return true;
    }
    const std::size_t first = columnOf(*run.First);
    // Longer than a column means that the rows below were dropped: the block then covers its whole time.
    const std::size_t last = *run.Last - *run.First > longest ? columnOf(*run.Last) : first;
    for (std::size_t i = first; i <= last; ++i)
      columns[i] = {std::min(min, columns[i].Min), std::max(max, columns[i].Max)};
    newest = &columns[last];
    return true;
  });
  // Blocks do not store where in them nothing was measured.
  std::size_t before = 0;
  for (const Gap& gap : GapsIn(begin, end)) {
    const std::size_t past = gap.End < end ? columnOf(gap.End) : columns.size();
    std::size_t column = columnOf(gap.Begin);
    if (column == past) continue;
    std::fill(columns.begin() + static_cast<std::ptrdiff_t>(gap.Begin < begin ? 0 : column + 1),
              columns.begin() + static_cast<std::ptrdiff_t>(past), TraceColumn{});
    const std::size_t oldest = std::exchange(before, column);
    while (column > oldest && columns[column].Empty()) --column;
    columns[column].GapAfter = true;
  }
}

TraceColumn TraceHistory::Range(std::size_t trace, std::int64_t begin, std::int64_t end) const {
  TraceColumn range;
  if (end <= begin) return range;
  Walk(begin, end, std::numeric_limits<std::int64_t>::max(), [&](const Run& run) {
    const float min = run.Min[trace * run.Stride];
    const float max = run.Max[trace * run.Stride];
    range.Min = min < range.Min ? min : range.Min;
    range.Max = max > range.Max ? max : range.Max;
    return true;
  });
  return range;
}

bool TraceHistory::GapBetween(std::size_t trace, std::int64_t from, std::int64_t to) const {
  if (!GapsIn(from, to).empty()) return true;
  bool found = false;
  Walk(from, to, std::numeric_limits<std::int64_t>::max(), [&](const Run& run) {
    found = !(run.Min[trace * run.Stride] <= run.Max[trace * run.Stride]);
    return !found;
  });
  return found;
}

std::optional<TraceSample> TraceHistory::FindIn(std::size_t level, std::uint64_t entry, std::size_t trace,
                                                std::int64_t time, Direction direction) const {
  const Run run = RunAt(level, entry);
  const bool backward = direction == Direction::Backward;
  if (backward ? *run.First > time : *run.Last < time) return std::nullopt;
  const float min = run.Min[trace * run.Stride];
  const float max = run.Max[trace * run.Stride];
  if (!(min <= max)) return std::nullopt;
  if (level == 0) return TraceSample{*run.First, min};
  if (!Kept(level - 1, entry * kFactor))
    return TraceSample{backward ? std::min(*run.Last, time) : std::max(*run.First, time), min + (max - min) / 2};
  for (std::uint64_t i = 0; i < kFactor; ++i) {
    const std::uint64_t child = entry * kFactor + (backward ? kFactor - 1 - i : i);
    if (auto found = FindIn(level - 1, child, trace, time, direction)) return found;
  }
  return std::nullopt;
}

std::optional<TraceSample> TraceHistory::Find(std::size_t trace, std::int64_t time, Direction direction) const {
  // Entries not covered by a block of the level above come first when searching backward, last when searching forward.
  const bool backward = direction == Direction::Backward;
  for (std::size_t step = 0; step < levels_.size(); ++step) {
    const std::size_t level = backward ? step : levels_.size() - 1 - step;
    const std::uint64_t covered = level + 1 < levels_.size() ? levels_[level + 1].Count * kFactor : 0;
    const std::uint64_t count = levels_[level].Count - covered;
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::uint64_t entry = covered + (backward ? count - 1 - i : i);
      if (auto found = FindIn(level, entry, trace, time, direction)) return found;
    }
  }
  return std::nullopt;
}

std::optional<TraceSample> TraceHistory::LastUpTo(std::size_t trace, std::int64_t time) const {
  return Find(trace, time, Direction::Backward);
}

std::optional<TraceSample> TraceHistory::FirstFrom(std::size_t trace, std::int64_t time) const {
  return Find(trace, time, Direction::Forward);
}

void TraceHistory::ForEachRow(std::int64_t begin, std::int64_t end,
                              const std::function<bool(std::int64_t time, std::span<const float> values)>& row) const {
  std::vector<float> values(traceCount_);
  const auto give = [&](std::int64_t time, const float* from, std::uint64_t stride) {
    for (std::size_t trace = 0; trace < traceCount_; ++trace) {
      const float value = from ? from[trace * stride] : kNotPosted;
      values[trace] = std::isfinite(value) ? value : kNotPosted;
    }
    return row(time, values);
  };
  Walk(begin, end, -1, [&](const Run& run) {
    if (run.Last == run.First) return give(*run.First, run.Min, run.Stride);
    // Minima and maxima are given for every part of the block in which something was measured.
    std::int64_t from = *run.First;
    for (const Gap& gap : GapsIn(*run.First, *run.Last + 1)) {
      if (gap.Begin > from && !(give(from, run.Min, run.Stride) && give(gap.Begin, run.Max, run.Stride))) return false;
      if (gap.Begin >= *run.First && !give(gap.Begin, nullptr, 0)) return false;
      from = gap.End;
    }
    return from > *run.Last || (give(from, run.Min, run.Stride) && give(*run.Last, run.Max, run.Stride));
  });
}

}  // namespace krx
