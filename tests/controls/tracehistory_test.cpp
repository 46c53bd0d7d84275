// SPDX-License-Identifier: GPL-3.0-or-later
// History, view and export of a chart.
#include "controls/tracehistory.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "controls/chartcsv.h"
#include "controls/chartview.h"

namespace krx {
namespace {

using Row = std::vector<float>;
constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kTick = 10'000;
constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

// Irregular times with a long stop, spikes, and two of three rows without a value, as the round robin leaves them.
// Returns what has a value.
std::vector<TraceSample> FillIrregular(TraceHistory& history, std::size_t count) {
  std::mt19937 random(7);
  std::vector<TraceSample> posted;
  std::int64_t time = 1000;
  for (std::size_t i = 0; i < count; ++i) {
    time += 1 + static_cast<std::int64_t>(random() % 20000) + (i == count / 2 ? 500 * kSecond : 0);
    const float value = random() % 3 ? kNone : static_cast<float>(random() % 1000) + (random() % 997 ? 0.f : 1e6f);
    if (!std::isnan(value)) posted.push_back({time, value});
    history.Append(time, Row{1.f, value});
  }
  return posted;
}

TraceColumn Union(const TraceColumn& a, const TraceColumn& b) {
  return {std::min(a.Min, b.Min), std::max(a.Max, b.Max)};
}
bool Within(const TraceColumn& inner, const TraceColumn& outer) {
  return inner.Empty() || (inner.Min >= outer.Min && inner.Max <= outer.Max);
}

std::string Text(const std::optional<TraceSample>& sample) {
  return sample ? fmt::format("{} at {}", sample->Value, sample->Time) : "none";
}

TEST(TraceHistory, ColumnsLoseNoValueAndMoveNoneFurtherThanOneColumn) {
  TraceHistory history(2, TraceRetention::Everything());
  const auto posted = FillIrregular(history, 30'007);
  std::mt19937 random(3);
  for (int round = 0; round < 24; ++round) {
    const auto from = static_cast<std::int64_t>(random() % 800'000'000);
    const auto to = from + 1 + static_cast<std::int64_t>(random() % (round % 2 ? 2'000'000 : 900'000'000));
    std::vector<TraceColumn> columns(1 + random() % 900);
    history.Columns(1, from, to, columns);
    const double width = static_cast<double>(to - from) / static_cast<double>(columns.size());
    std::vector<TraceColumn> near(columns.size() + 2);  // what was posted in a column and in its neighbours
    TraceColumn whole;
    for (const auto& [time, posting] : posted) {
      if (time < from || time >= to) continue;
      const TraceColumn value{posting, posting};
      const auto place =
          std::min(static_cast<std::size_t>(static_cast<double>(time - from) / width), columns.size() - 1);
      whole = Union(whole, value);
      for (std::size_t i = place; i < place + 3; ++i) near[i] = Union(near[i], value);
      ASSERT_TRUE(Within(value, place > 0 ? Union(columns[place - 1], columns[place]) : columns[0])) << time;
    }
    for (std::size_t i = 0; i < columns.size(); ++i) ASSERT_TRUE(Within(columns[i], near[i + 1])) << round << " " << i;
    const TraceColumn range = history.Range(1, from, to);
    EXPECT_TRUE(Within(range, whole) && Within(whole, range)) << round;
  }
  // The nearest posted value is found across rows without one.
  for (int round = 0; round < 500; ++round) {
    const auto time = static_cast<std::int64_t>(random() % 900'000'000);
    const auto first = std::ranges::lower_bound(posted, time, {}, &TraceSample::Time);
    const auto past = std::ranges::upper_bound(posted, time, {}, &TraceSample::Time);
    EXPECT_EQ(Text(history.FirstFrom(1, time)), first == posted.end() ? "none" : Text(*first)) << time;
    EXPECT_EQ(Text(history.LastUpTo(1, time)), past == posted.begin() ? "none" : Text(past[-1])) << time;
  }
}

TEST(TraceHistory, ColumnsAreExactWhenEachHoldsFewRows) {
  TraceHistory history(1);
  for (int i = 0; i < 40; ++i) history.Append(i * 10, Row{static_cast<float>(i)});
  std::vector<TraceColumn> columns(20);
  history.Columns(0, 0, 400, columns);
  for (float first = 0; const TraceColumn& column : columns) {
    EXPECT_EQ(std::pair(column.Min, column.Max), std::pair(first, first + 1));
    first += 2;
  }
}

TEST(TraceHistory, OldRowsGoLevelByLevelAndTheirExtremesStay) {
  TraceHistory history(1, {.Raw = 60 * kSecond, .Blocks = 600 * kSecond});
  const int count = 200'000;  // 2000 s
  for (int i = 0; i < count; ++i) history.Append(i * kTick, Row{i == 777 ? -5e5f : i == 150'001 ? 9e5f : 1.f});
  EXPECT_EQ(history.FirstTime(), 0);
  EXPECT_LT(history.MemoryBytes(), std::size_t{count} * 12 / 4);
  std::vector<TraceColumn> columns(1000);
  history.Columns(0, 0, count * kTick, columns);
  EXPECT_EQ(columns[3].Min, -5e5f);
  EXPECT_EQ(columns[750].Max, 9e5f);
  EXPECT_TRUE(std::ranges::none_of(columns, &TraceColumn::Empty));
  const auto rows = [&](std::int64_t from, std::int64_t to) {
    int found = 0;
    history.ForEachRow(from * kTick, to * kTick, [&](std::int64_t, auto) { return ++found > 0; });
    return found;
  };
  EXPECT_EQ(rows(count - 100, count), 100) << "every row of the last second";
  EXPECT_EQ(rows(0, 512), 4) << "two blocks of 256 rows, minima and maxima";
}

TEST(TraceHistory, WhatIsNotFiniteOrMissingWasNotPosted) {
  TraceHistory history(3);
  history.Append(5, Row{1.f, INFINITY});
  history.Append(3, Row{2.f, -INFINITY, kNone});  // the clock went back
  EXPECT_EQ(history.LastTime(), 5);
  EXPECT_EQ(history.Range(0, 0, 10).Max, 2.f);
  for (const std::size_t trace : {1U, 2U}) EXPECT_TRUE(history.Range(trace, 0, 10).Empty());
  history.Clear();
  EXPECT_EQ(history.MemoryBytes(), 0u);
  EXPECT_FALSE(history.LastUpTo(0, 10));
  history.Append(1, Row{7.f});
  EXPECT_EQ(history.Range(0, 0, 10).Min, 7.f);
}

TEST(TraceHistory, AStandstillStaysAGapWhenItsRowsHaveBecomeBlocks) {
  constexpr std::int64_t kStop = 1000 * kTick;  // in the middle of a block
  constexpr std::int64_t kGoOn = kStop + 600 * kSecond;
  for (const TraceRetention& retention : {TraceRetention::Everything(), TraceRetention{0, 0}}) {
    TraceHistory history(2, retention);
    history.Append(0, Row{kNone, kNone});  // what stood still before is forgotten with it
    history.Clear();
    for (std::int64_t time = 0; time < kStop; time += kTick) history.Append(time, Row{1.f, 2.f});
    history.Append(kStop, Row{kNone, kNone});
    for (std::int64_t i = 0; i < 3000; ++i) history.Append(kGoOn + i * kTick, Row{i ? 1.f : kNone, 2.f});
    std::vector<TraceColumn> columns(32);
    history.Columns(1, 0, history.LastTime() + 1, columns);
    std::string picture;
    for (const TraceColumn& column : columns) picture += column.Empty() ? '.' : column.GapAfter ? '|' : '-';
    EXPECT_EQ(picture, "|" + std::string(29, '.') + "--");
    EXPECT_TRUE(history.GapBetween(0, kStop - kTick, kGoOn + kTick));
    EXPECT_FALSE(history.GapBetween(0, 0, kStop - kTick));
    EXPECT_FALSE(history.GapBetween(1, kGoOn, kGoOn + 50 * kTick));
    const auto inside = history.LastUpTo(1, kStop + kTick);
    EXPECT_TRUE(history.GapBetween(1, inside->Time, kStop + kTick)) << "the last value does not last";
    std::vector<std::int64_t> nothing;
    history.ForEachRow(0, history.LastTime() + 1, [&](std::int64_t time, std::span<const float> values) {
      EXPECT_TRUE(time <= kStop || time >= kGoOn) << time;
      if (std::isnan(values[1])) nothing.push_back(time);
      return true;
    });
    EXPECT_EQ(nothing, std::vector{kStop});
  }
}

TEST(TraceHistory, ATraceWithoutValuesHasAGapWhileTheOthersGoOn) {
  TraceHistory history(2);
  for (int i = 0; i < 4000; ++i) history.Append(i * 10, Row{1.f, i < 1000 || i >= 3000 ? 2.f : kNone});
  for (const auto& [count, place] : {std::pair{40, 9}, {40'000, 9990}}) {  // many rows a column, many columns a row
    std::vector<TraceColumn> columns(static_cast<std::size_t>(count));
    history.Columns(1, 0, 40'000, columns);
    EXPECT_EQ(std::ranges::find_if(columns, &TraceColumn::GapAfter) - columns.begin(), place);
    EXPECT_EQ(std::ranges::count_if(columns, &TraceColumn::GapAfter), 1);
    history.Columns(0, 0, 40'000, columns);
    EXPECT_TRUE(std::ranges::none_of(columns, &TraceColumn::GapAfter));
  }
}

TEST(ChartView, FollowsThenStandsStillThenShowsAllAndClearsForItselfOnly) {
  TraceHistory history(1);
  ChartView view(history), other(history);
  const auto post = [&](std::int64_t seconds) { history.Append(seconds * kSecond, Row{1.f}); };
  const std::pair<const char*, std::function<void()>> rows[] = {
      {"0..180 s", [] {}},
      {"0..1 s", [&] { view.Whole(); }},
      {"100..280 s", [&] { view.Live(), post(100); }},  // grows from the left
      {"220..400 s", [&] { post(400); }},
      {"310..400 s", [&] { view.Zoom(0.5, 0.2); }},  // still following
      {"311..401 s", [&] { post(401); }},
      {"311..401 s", [&] { view.Pause(), post(900); }},
      {"266..446 s", [&] { view.Zoom(2, 0.5); }},
      {"176..356 s", [&] { view.Pan(-0.5); }},
      {"100..900 s", [&] { view.Whole(); }},
      {"720..900 s", [&] { view.Live(); }},
      {"900..1080 s", [&] { view.Clear(); }},
  };
  for (const auto& [shown, act] : rows) {
    act();
    EXPECT_EQ(fmt::format("{}..{} s", view.Shown().Begin / kSecond, view.Shown().End / kSecond), shown);
  }
  EXPECT_EQ(view.Shown().Begin, history.LastTime() + 1) << "nothing that was posted before";
  EXPECT_EQ(other.Shown().End, history.LastTime() + 1);
  view.Pause();
  view.Zoom(1e-12, 0);
  EXPECT_EQ(view.Shown().Length(), ChartView::ShortestLength);
}

TEST(ChartCsv, WritesTheVisibleRowsAndTheirGapsWhateverThePieces) {
  TraceHistory history(3);
  history.Append(0, Row{9.f, 9.f, 9.f});  // before the span
  history.Append(1'500'000, Row{29.75f, kNone, 1.f});
  history.Append(1'510'000, Row{kNone, kNone, 2.f});  // nothing in the chosen columns
  history.Append(1'520'000, Row{kNone, kNone, kNone});
  history.Append(3'600'000'001, Row{-0.1f, 2412.f, 3.f});
  history.Append(3'700'000'000, Row{9.f, 9.f, 9.f});  // the end is outside
  for (const std::size_t rows : {1U, 2U, 1000U}) {
    ChartCsv csv(history, {1'000'000, 3'700'000'000}, {{0, "Internal"}, {1, "Fan \"1\", rear"}}, {"A board", "Saved"});
    std::string text;
    while (!csv.Done()) text += csv.Next(rows);
    EXPECT_EQ(text,
              "# A board\n# Saved\n"
              "Time (s),Internal,\"Fan \"\"1\"\", rear\"\n"
              "1.500000,29.75,\n"
              "1.510000,,\n"
              "3600.000001,-0.1,2412\n");
    EXPECT_EQ(csv.Share(), 1);
  }
}

TEST(ChartCsv, EndsWhereItBeganAndKeepsRowsThatBecameBlocksMeanwhile) {
  TraceHistory history(1, {0, 0});
  const auto post = [&](int from, int to) {
    for (int i = from; i < to; ++i) history.Append(i * 1000, Row{static_cast<float>(i)});
  };
  post(0, 1020);
  ChartCsv csv(history, {0, 1000 * kSecond}, {{0, "A"}}, {});
  std::string text = csv.Next(100);
  post(1020, 9000);  // the first rows are dropped now
  while (!csv.Done()) text += csv.Next(100);
  std::vector<double> times;
  for (auto at = text.find('\n') + 1; at < text.size(); at = text.find('\n', at) + 1)
    times.push_back(std::stod(text.substr(at)));
  EXPECT_TRUE(std::ranges::is_sorted(times));
  EXPECT_EQ(std::pair(times.front(), times.back()), std::pair(0.0, 1.019));
}

}  // namespace
}  // namespace krx
