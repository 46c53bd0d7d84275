// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "controls/tracehistory.h"

namespace krx {

/// Live follows the newest row, Paused is fixed while rows are appended, Whole always shows everything.
enum class ChartMode { Live, Paused, Whole };

/// Microseconds, end excluded.
struct ChartSpan {
  std::int64_t Begin = 0;
  std::int64_t End = 0;
  std::int64_t Length() const { return End - Begin; }
  bool operator==(const ChartSpan&) const = default;
};

/// The part of a history shown by a chart. Several views may share one history.
class ChartView {
 public:
  static constexpr std::int64_t DefaultLength = 180'000'000;
  static constexpr std::int64_t ShortestLength = 1'000;
  static constexpr std::int64_t LongestLength = std::int64_t{1000} * 24 * 3600 * 1'000'000;

  explicit ChartView(const TraceHistory& history) : history_(history) {}

  ChartMode Mode() const { return mode_; }
  ChartSpan Shown() const;
  std::int64_t FirstTime() const { return firstTime_; }

  void Live();  ///< follows the newest row again, at the default length
  void Pause();
  void Whole();

  /// Makes the shown span `factor` times as long; the point at `share` of the width (0..1) stays in place. A live view
  /// stays live and keeps its end.
  void Zoom(double factor, double share);
  /// Moves by `share` of the width, positive towards newer rows, and pauses.
  void Pan(double share);
  /// Shows this and pauses.
  void Show(ChartSpan span);

  /// Shows only rows appended from now on; other views of the history are not affected.
  void Clear();

 private:
  const TraceHistory& history_;
  ChartMode mode_ = ChartMode::Live;
  std::int64_t length_ = DefaultLength;
  ChartSpan paused_;
  std::int64_t firstTime_ = std::numeric_limits<std::int64_t>::min();
};

}  // namespace krx
