// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tracehistory.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace krx {

namespace {

constexpr std::uint64_t kFactor = 16;
// A multiple of the factor, so that the entries below one block always lie, and go, together.
constexpr std::uint64_t kRowsPerChunk = 1024;
constexpr std::uint64_t kBlocksPerChunk = 64;
constexpr float kInfinity = std::numeric_limits<float>::infinity();
// Ticks are closer together: only a cycle that stood still leaves more.
constexpr std::int64_t kLongGap = 1'000'000;
constexpr float kNotPosted = std::numeric_limits<float>::quiet_NaN();

constexpr std::uint64_t ChunkSize(std::size_t level) {
  return level == 0 ? kRowsPerChunk : kBlocksPerChunk;
}

}  // namespace

// Where one entry lies: pointers to its times and to its values of trace 0; a trace further is one chunk size further.
// On level 0 first and last time, minimum and maximum are the same cell.
struct TraceHistory::Run {
  std::int64_t* First;
  std::int64_t* Last;
  float* Min;
  float* Max;
  std::uint64_t Stride;
};

TraceHistory::TraceHistory(std::size_t traceCount, TraceRetention retention)
    : traceCount_(traceCount), retention_(retention), levels_(1) {}

std::uint64_t TraceHistory::RowCount() const {
  return levels_[0].Count;
}

std::int64_t TraceHistory::LastTime() const {
  return lastTime_;
}

bool TraceHistory::Kept(std::size_t level, std::uint64_t entry) const {
  return entry / ChunkSize(level) >= levels_[level].DroppedChunks;
}

TraceHistory::Run TraceHistory::RunAt(std::size_t level, std::uint64_t entry) const {
  const std::uint64_t size = ChunkSize(level);
  const Chunk& chunk = levels_[level].Chunks[entry / size - levels_[level].DroppedChunks];
  const std::uint64_t place = entry % size;
  std::int64_t* first = chunk.Times.get() + place;
  float* min = chunk.Values.get() + place;
  if (level == 0) return {first, first, min, min, size};
  return {first, first + size, min, min + size * traceCount_, size};
}

TraceHistory::Run TraceHistory::NewEntry(std::size_t level) {
  Level& store = levels_[level];
  const std::uint64_t size = ChunkSize(level);
  if (store.Count % size == 0) {
    const std::uint64_t columns = level == 0 ? 1 : 2;
    store.Chunks.push_back({std::make_unique_for_overwrite<std::int64_t[]>(size * columns),
                            std::make_unique_for_overwrite<float[]>(size * columns * traceCount_)});
  }
  return RunAt(level, store.Count++);
}

void TraceHistory::Append(std::int64_t time, std::span<const float> values) {
  if (!Empty()) time = std::max(time, lastTime_);
  const Run row = NewEntry(0);
  *row.First = time;
  bool measured = false;
  for (std::size_t trace = 0; trace < traceCount_; ++trace) {
    const bool posted = trace < values.size() && std::isfinite(values[trace]);
    row.Min[trace * row.Stride] = posted ? values[trace] : kNotPosted;
    measured = measured || posted;
  }
  NoteGap(time, measured);
  lastTime_ = time;
  for (std::size_t level = 0; levels_[level].Count % kFactor == 0; ++level) FoldUp(level);
  if (RowCount() % kRowsPerChunk == 0) DropOld();
}

void TraceHistory::NoteGap(std::int64_t time, bool measured) {
  if (!measured) {
    if (!nothingSince_) nothingSince_ = time;
    return;
  }
  if (nothingSince_ && time - *nothingSince_ >= kLongGap) gaps_.push_back({*nothingSince_, time});
  nothingSince_.reset();
}

// Those that overlap the time.
std::span<const TraceHistory::Gap> TraceHistory::GapsIn(std::int64_t begin, std::int64_t end) const {
  const auto first = std::ranges::upper_bound(gaps_, begin, {}, &Gap::End);
  const auto last = std::ranges::lower_bound(gaps_, end, {}, &Gap::Begin);
  return first < last ? std::span(first, last) : std::span<const Gap>();
}

// Makes one block of the newest 16 entries of `level`. NaN loses every comparison, so what was not posted drops out,
// and a block without any value keeps a minimum above its maximum.
void TraceHistory::FoldUp(std::size_t level) {
  if (levels_.size() == level + 1) levels_.emplace_back();
  const Run from = RunAt(level, levels_[level].Count - kFactor);
  const Run to = NewEntry(level + 1);
  *to.First = from.First[0];
  *to.Last = from.Last[kFactor - 1];
  for (std::size_t trace = 0; trace < traceCount_; ++trace) {
    const float* lows = from.Min + trace * from.Stride;
    const float* highs = from.Max + trace * from.Stride;
    float min = kInfinity;
    float max = -kInfinity;
    for (std::uint64_t i = 0; i < kFactor; ++i) {
      min = lows[i] < min ? lows[i] : min;
      max = highs[i] > max ? highs[i] : max;
    }
    to.Min[trace * to.Stride] = min;
    to.Max[trace * to.Stride] = max;
  }
}

void TraceHistory::DropOld() {
  for (const std::size_t level : {std::size_t{0}, std::size_t{1}}) {
    if (level >= levels_.size()) return;
    const std::int64_t kept = level == 0 ? retention_.Raw : retention_.Blocks;
    Level& store = levels_[level];
    const std::uint64_t size = ChunkSize(level);
    while (store.Chunks.size() > 1) {
      const std::uint64_t end = (store.DroppedChunks + 1) * size;
      // The level above stands in for what goes, so it has to cover the whole chunk already.
      if (levels_.size() < level + 2 || levels_[level + 1].Count * kFactor < end) break;
      if (lastTime_ - *RunAt(level, end - 1).Last <= kept) break;
      store.Chunks.erase(store.Chunks.begin());
      ++store.DroppedChunks;
    }
  }
}

void TraceHistory::Clear() {
  levels_.clear();
  levels_.emplace_back();
  lastTime_ = 0;
  gaps_.clear();
  nothingSince_.reset();
}

std::int64_t TraceHistory::FirstTime() const {
  return Empty() ? 0 : *RunAt(levels_.size() - 1, 0).First;
}

std::size_t TraceHistory::MemoryBytes() const {
  std::size_t bytes = gaps_.size() * sizeof(Gap);
  for (std::size_t level = 0; level < levels_.size(); ++level) {
    const std::size_t columns = level == 0 ? 1 : 2;
    bytes += levels_[level].Chunks.size() * ChunkSize(level) * columns *
             (sizeof(std::int64_t) + sizeof(float) * traceCount_);
  }
  return bytes;
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

// Visits what covers the time from begin to end, in order, taking blocks as long as they last at most `longest`, until
// a visit returns false. Only whole blocks are stored, so each level continues where the one above it ends.
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
    // Longer than a column means that the rows below are gone: then the block stands for its whole time.
    const std::size_t last = *run.Last - *run.First > longest ? columnOf(*run.Last) : first;
    for (std::size_t i = first; i <= last; ++i)
      columns[i] = {std::min(min, columns[i].Min), std::max(max, columns[i].Max)};
    newest = &columns[last];
    return true;
  });
  // Blocks do not know where in them nothing was measured.
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
  // What no whole block of the level above covers comes first when looking back, last when looking forward.
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
    // Minima and maxima stand for every stretch of the block in which something was measured.
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
