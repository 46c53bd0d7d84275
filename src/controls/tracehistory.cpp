// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tracehistory.h"

#include <algorithm>
#include <cmath>

namespace krx {

namespace {

// A multiple of the factor, so that the entries below one block are always stored and dropped together.
constexpr std::uint64_t kRowsPerChunk = 1024;
constexpr std::uint64_t kBlocksPerChunk = 64;
constexpr float kInfinity = std::numeric_limits<float>::infinity();
// Longer than the time between ticks: only a stopped cycle leaves such a gap.
constexpr std::int64_t kLongGap = 1'000'000;
constexpr float kNotPosted = std::numeric_limits<float>::quiet_NaN();

constexpr std::uint64_t ChunkSize(std::size_t level) {
  return level == 0 ? kRowsPerChunk : kBlocksPerChunk;
}

}  // namespace

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
    Chunk& chunk = store.Chunks.emplace_back();
    chunk.Times = std::make_unique_for_overwrite<std::int64_t[]>(size * columns);
    chunk.Values = std::make_unique_for_overwrite<float[]>(size * columns * traceCount_);
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

// Makes one block from the newest 16 entries of `level`. Comparisons with NaN are false, so missing values are ignored,
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
      // The level above replaces the dropped chunk, so it must already cover all of it.
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

}  // namespace krx
