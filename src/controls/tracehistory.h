// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace krx {

/// One trace in one pixel column: the smallest and the largest value in it.
struct TraceColumn {
  float Min = std::numeric_limits<float>::infinity();
  float Max = -std::numeric_limits<float>::infinity();
  bool GapAfter = false;  ///< nothing was measured between this column's last value and the trace's next one
  bool Empty() const { return !(Min <= Max); }
};

/// One posted value.
struct TraceSample {
  std::int64_t Time = 0;  ///< microseconds
  float Value = 0;
};

/// How long the levels are kept, in microseconds before the newest row; coarser levels are kept for ever.
struct TraceRetention {
  std::int64_t Raw = std::int64_t{2} * 3600 * 1'000'000;      ///< every row
  std::int64_t Blocks = std::int64_t{24} * 3600 * 1'000'000;  ///< minimum and maximum of 16 rows
  static constexpr TraceRetention Everything() {
    return {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::max()};
  }
};

/// All values posted to a set of traces with a common time column. Above the rows is a pyramid: each level holds the
/// minimum and maximum of 16 entries of the level below, so drawing the whole history takes the same time after ten
/// seconds and after ten days. Rows and blocks are stored in chunks; an append never moves stored data.
class TraceHistory {
 public:
  explicit TraceHistory(std::size_t traceCount, TraceRetention retention = {});

  /// Adds one row. `time` in microseconds since the start of the program; a time before the newest row counts as that
  /// row's. A value that is not finite, or missing because `values` is shorter than the trace count, counts as not
  /// measured: the trace has a gap up to its next value.
  void Append(std::int64_t time, std::span<const float> values);

  /// Removes everything.
  void Clear();

  std::size_t TraceCount() const { return traceCount_; }
  std::uint64_t RowCount() const;  ///< rows appended since the last Clear, including dropped ones
  bool Empty() const { return RowCount() == 0; }
  std::int64_t FirstTime() const;   ///< of the oldest entry of any level; 0 while empty
  std::int64_t LastTime() const;    ///< of the newest row; 0 while empty
  std::size_t MemoryBytes() const;  ///< allocated for rows and blocks

  /// Fills `columns` with `trace` when the columns divide the time from `begin` (included) to `end` (excluded) evenly.
  /// A block shorter than a column belongs to the column it starts in; no value is lost, but a gap shorter than a
  /// column may be.
  void Columns(std::size_t trace, std::int64_t begin, std::int64_t end, std::span<TraceColumn> columns) const;

  /// Smallest and largest value from `begin` (included) to `end` (excluded).
  TraceColumn Range(std::size_t trace, std::int64_t begin, std::int64_t end) const;

  /// The newest value posted at or before `time`, and the oldest one posted at or after it. Where only a block is left,
  /// the middle of its range.
  std::optional<TraceSample> LastUpTo(std::size_t trace, std::int64_t time) const;
  std::optional<TraceSample> FirstFrom(std::size_t trace, std::int64_t time) const;

  /// True if the trace has a gap between two times at which it was measured.
  bool GapBetween(std::size_t trace, std::int64_t from, std::int64_t to) const;

  /// Calls `row` in order of time for every row from `begin` (included) to `end` (excluded) until it returns false. NaN
  /// means not measured. Where only a block is left there are two rows: its minima at its first time, its maxima at its
  /// last; a gap of a second or longer splits it into two such pairs with a row of NaN between them.
  void ForEachRow(std::int64_t begin, std::int64_t end,
                  const std::function<bool(std::int64_t time, std::span<const float> values)>& row) const;

 private:
  struct Chunk {
    std::unique_ptr<std::int64_t[]> Times;  // level 0: one column; above: first times, then last times
    std::unique_ptr<float[]> Values;        // level 0: one column per trace; above: minima of every trace, then maxima
  };
  struct Level {
    std::vector<Chunk> Chunks;
    std::uint64_t DroppedChunks = 0;
    std::uint64_t Count = 0;  // entries, including dropped ones
  };
  /// Location of one entry: pointers to its times and to its values of trace 0; the next trace is one chunk size
  /// further. On level 0 first and last time, and minimum and maximum, are the same cell.
  struct Run {
    std::int64_t* First;
    std::int64_t* Last;
    float* Min;
    float* Max;
    std::uint64_t Stride;
  };
  /// From the first row without any value to the next one with a value.
  struct Gap {
    std::int64_t Begin;
    std::int64_t End;
  };
  enum class Direction { Backward, Forward };
  static constexpr std::uint64_t kFactor = 16;

  Run RunAt(std::size_t level, std::uint64_t entry) const;
  bool Kept(std::size_t level, std::uint64_t entry) const;
  Run NewEntry(std::size_t level);
  void FoldUp(std::size_t level);
  void DropOld();
  void NoteGap(std::int64_t time, bool measured);
  std::span<const Gap> GapsIn(std::int64_t begin, std::int64_t end) const;
  template <class Visit>
  bool WalkEntry(std::size_t level, std::uint64_t entry, std::int64_t begin, std::int64_t end, std::int64_t longest,
                 Visit& visit) const;
  template <class Visit>
  void Walk(std::int64_t begin, std::int64_t end, std::int64_t longest, Visit&& visit) const;
  std::optional<TraceSample> FindIn(std::size_t level, std::uint64_t entry, std::size_t trace, std::int64_t time,
                                    Direction direction) const;
  std::optional<TraceSample> Find(std::size_t trace, std::int64_t time, Direction direction) const;

  std::size_t traceCount_;
  TraceRetention retention_;
  std::vector<Level> levels_;
  std::int64_t lastTime_ = 0;
  std::vector<Gap> gaps_;  ///< in order; only long ones, which a block would otherwise hide
  std::optional<std::int64_t> nothingSince_;
};

}  // namespace krx
