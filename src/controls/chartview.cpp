// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/chartview.h"

#include <algorithm>
#include <cmath>

namespace krx {

ChartSpan ChartView::Shown() const {
  if (mode_ == ChartMode::Paused) return paused_;
  const std::int64_t newest = history_.Empty() ? std::max<std::int64_t>(firstTime_, 0) : history_.LastTime() + 1;
  const std::int64_t oldest = std::max(history_.FirstTime(), firstTime_);
  if (mode_ == ChartMode::Whole) return {oldest, std::max(newest, oldest + 1'000'000)};
  // Until the first window is full the chart grows from the left, as on a paper recorder.
  const std::int64_t end = std::max(newest, oldest + length_);
  return {end - length_, end};
}

void ChartView::Live() {
  mode_ = ChartMode::Live;
  length_ = DefaultLength;
}

void ChartView::Pause() {
  Show(Shown());
}

void ChartView::Whole() {
  mode_ = ChartMode::Whole;
}

void ChartView::Zoom(double factor, double share) {
  const ChartSpan shown = Shown();
  const auto wanted = std::llround(std::clamp(static_cast<double>(shown.Length()) * factor,
                                              static_cast<double>(ShortestLength), static_cast<double>(LongestLength)));
  if (mode_ == ChartMode::Live) {
    length_ = wanted;
    return;
  }
  const auto growth = static_cast<double>(wanted - shown.Length());
  const std::int64_t begin = shown.Begin - std::llround(growth * share);
  Show({begin, begin + wanted});
}

void ChartView::Pan(double share) {
  ChartSpan span = Shown();
  const std::int64_t shift = std::llround(static_cast<double>(span.Length()) * share);
  Show({span.Begin + shift, span.End + shift});
}

void ChartView::Show(ChartSpan span) {
  mode_ = ChartMode::Paused;
  span.End = std::max(span.End, span.Begin + ShortestLength);
  paused_ = span;
}

void ChartView::Clear() {
  firstTime_ = history_.Empty() ? 0 : history_.LastTime() + 1;
  Live();
}

}  // namespace krx
