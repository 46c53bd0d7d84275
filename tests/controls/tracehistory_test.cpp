// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tracehistory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace krx {
namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

struct PostedRow {
  std::int64_t Time;
  float Value;
};

// Irregular times with a long stop, spikes, and two of three rows without a value, as the round robin leaves them.
std::vector<PostedRow> FillIrregular(TraceHistory& history, std::size_t count) {
  std::mt19937 random(7);
  std::vector<PostedRow> rows;
  std::int64_t time = 1000;
  for (std::size_t i = 0; i < count; ++i) {
    time += 1 + static_cast<std::int64_t>(random() % 20000) + (i == count / 2 ? 500'000'000 : 0);
    const float value = random() % 3 ? kNone : static_cast<float>(random() % 1000) + (random() % 997 ? 0.f : 1e6f);
    rows.push_back({time, value});
    const float row[] = {1.f, value};
    history.Append(time, row);
  }
  return rows;
}

TEST(TraceHistory, ColumnsLoseNoValueAndMoveNoneFurtherThanOneColumn) {
  TraceHistory history(2, TraceRetention::Everything());
  const auto rows = FillIrregular(history, 30'007);
  std::mt19937 random(3);
  for (int round = 0; round < 24; ++round) {
    const std::int64_t from = static_cast<std::int64_t>(random() % 800'000'000);
    const std::int64_t to = from + 1 + static_cast<std::int64_t>(random() % (round % 2 ? 2'000'000 : 900'000'000));
    std::vector<TraceColumn> columns(1 + random() % 900);
    history.Columns(1, from, to, columns);
    const double width = static_cast<double>(to - from) / static_cast<double>(columns.size());
    std::vector<TraceColumn> least(columns.size()), most(columns.size());  // own column; own and both neighbours
    TraceColumn whole;
    for (const PostedRow& row : rows) {
      if (row.Time < from || row.Time >= to || std::isnan(row.Value)) continue;
      whole = {std::min(whole.Min, row.Value), std::max(whole.Max, row.Value)};
      const auto place = static_cast<std::int64_t>(static_cast<double>(row.Time - from) / width);
      for (std::int64_t near = place - 1; near <= place + 1; ++near) {
        if (near < 0 || near >= static_cast<std::int64_t>(columns.size())) continue;
        TraceColumn& column = most[static_cast<std::size_t>(near)];
        column = {std::min(column.Min, row.Value), std::max(column.Max, row.Value)};
      }
    }
    TraceColumn shown;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (columns[i].Empty()) continue;
      ASSERT_GE(columns[i].Min, most[i].Min) << "round " << round << " column " << i;
      ASSERT_LE(columns[i].Max, most[i].Max) << "round " << round << " column " << i;
      shown = {std::min(shown.Min, columns[i].Min), std::max(shown.Max, columns[i].Max)};
    }
    EXPECT_EQ(shown.Min, whole.Min) << "round " << round;
    EXPECT_EQ(shown.Max, whole.Max) << "round " << round;
    const TraceColumn range = history.Range(1, from, to);
    EXPECT_EQ(range.Min, whole.Min);
    EXPECT_EQ(range.Max, whole.Max);
    for (const PostedRow& row : rows) {  // every spike stands in its column or the one before
      if (!(row.Value >= 1e6f) || row.Time < from || row.Time >= to) continue;
      const auto place = static_cast<std::size_t>(static_cast<double>(row.Time - from) / width);
      const float here = columns[std::min(place, columns.size() - 1)].Max;
      EXPECT_TRUE(here >= 1e6f || (place > 0 && columns[place - 1].Max >= 1e6f)) << row.Time;
    }
  }
}

TEST(TraceHistory, ColumnsAreExactWhenEachHoldsFewRows) {
  TraceHistory history(1);
  for (int i = 0; i < 40; ++i) history.Append(i * 10, std::vector<float>{static_cast<float>(i)});
  std::vector<TraceColumn> columns(20);
  history.Columns(0, 0, 400, columns);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    EXPECT_EQ(columns[i].Min, static_cast<float>(2 * i));
    EXPECT_EQ(columns[i].Max, static_cast<float>(2 * i + 1));
  }
}

TEST(TraceHistory, NearestPostedValueIsFoundAcrossRowsWithoutOne) {
  TraceHistory history(2, TraceRetention::Everything());
  const auto rows = FillIrregular(history, 5'003);
  std::mt19937 random(5);
  for (int round = 0; round < 500; ++round) {
    const std::int64_t time = static_cast<std::int64_t>(random() % 620'000'000);
    const PostedRow* before = nullptr;
    const PostedRow* after = nullptr;
    for (const PostedRow& row : rows) {
      if (std::isnan(row.Value)) continue;
      if (row.Time <= time) before = &row;
      if (row.Time >= time && !after) after = &row;
    }
    const auto last = history.LastUpTo(1, time);
    const auto first = history.FirstFrom(1, time);
    for (const auto& [found, wanted] : {std::pair{last, before}, std::pair{first, after}}) {
      ASSERT_EQ(found.has_value(), wanted != nullptr) << time;
      if (!wanted) continue;
      EXPECT_EQ(found->Time, wanted->Time);
      EXPECT_EQ(found->Value, wanted->Value);
    }
  }
}

TEST(TraceHistory, OldRowsGoLevelByLevelAndTheirExtremesStay) {
  constexpr std::int64_t kTick = 10'000;
  TraceHistory history(1, {.Raw = 60'000'000, .Blocks = 600'000'000});
  const int count = 200'000;  // 2000 s
  for (int i = 0; i < count; ++i)
    history.Append(i * kTick, std::vector<float>{i == 777 ? -5e5f : i == 150'001 ? 9e5f : 1.f});
  EXPECT_EQ(history.FirstTime(), 0);
  EXPECT_EQ(history.LastTime(), (count - 1) * kTick);
  EXPECT_LT(history.MemoryBytes(), std::size_t{count} * 12 / 4);
  std::vector<TraceColumn> columns(1000);
  history.Columns(0, 0, count * kTick, columns);
  EXPECT_EQ(columns[3].Min, -5e5f);
  EXPECT_EQ(columns[750].Max, 9e5f);
  EXPECT_EQ(std::count_if(columns.begin(), columns.end(), [](auto& c) { return c.Empty(); }), 0);
  int newest = 0;
  history.ForEachRow((count - 100) * kTick, count * kTick, [&](std::int64_t, auto) { return ++newest > 0; });
  EXPECT_EQ(newest, 100);  // every row of the last second
  int oldest = 0;
  history.ForEachRow(0, 512 * kTick, [&](std::int64_t, auto) { return ++oldest > 0; });
  EXPECT_EQ(oldest, 4);  // two blocks of 256 rows, minima and maxima
}

TEST(TraceHistory, WhatIsNotFiniteOrMissingWasNotPosted) {
  TraceHistory history(3);
  history.Append(5, std::vector<float>{1.f, std::numeric_limits<float>::infinity()});
  history.Append(3, std::vector<float>{2.f, -std::numeric_limits<float>::infinity(), kNone});  // the clock went back
  EXPECT_EQ(history.LastTime(), 5);
  EXPECT_EQ(history.Range(0, 0, 10).Max, 2.f);
  EXPECT_TRUE(history.Range(1, 0, 10).Empty());
  EXPECT_TRUE(history.Range(2, 0, 10).Empty());
  history.Clear();
  EXPECT_TRUE(history.Empty());
  EXPECT_EQ(history.MemoryBytes(), 0u);
  EXPECT_FALSE(history.LastUpTo(0, 10));
  history.Append(1, std::vector<float>{7.f});
  EXPECT_EQ(history.Range(0, 0, 10).Min, 7.f);
}

TEST(TraceHistory, AStandstillStaysAGapWhenItsRowsHaveBecomeBlocks) {
  constexpr std::int64_t kTick = 10'000;
  constexpr std::int64_t kStop = 1000 * kTick;  // in the middle of a block
  constexpr std::int64_t kGoOn = kStop + 600'000'000;
  for (const TraceRetention& retention : {TraceRetention::Everything(), TraceRetention{0, 0}}) {
    TraceHistory history(2, retention);
    for (std::int64_t time = 0; time < kStop; time += kTick) history.Append(time, std::vector<float>{1.f, 2.f});
    history.Append(kStop, std::vector<float>{kNone, kNone});
    for (std::int64_t i = 0; i < 3000; ++i) history.Append(kGoOn + i * kTick, std::vector<float>{i ? 1.f : kNone, 2.f});
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
    int gaps = 0;
    history.ForEachRow(0, history.LastTime() + 1, [&](std::int64_t time, std::span<const float> values) {
      const bool nothing = std::isnan(values[1]);
      gaps += nothing;
      EXPECT_TRUE(nothing ? time == kStop : time <= kStop || time >= kGoOn) << time;
      return true;
    });
    EXPECT_EQ(gaps, 1);
  }
}

TEST(TraceHistory, ATraceWithoutValuesHasAGapWhileTheOthersGoOn) {
  TraceHistory history(2);
  for (int i = 0; i < 4000; ++i) history.Append(i * 10, std::vector<float>{1.f, i < 1000 || i >= 3000 ? 2.f : kNone});
  for (const std::size_t count : {std::size_t{40}, std::size_t{40'000}}) {  // many rows a column, many columns a row
    std::vector<TraceColumn> columns(count);
    history.Columns(1, 0, 40'000, columns);
    std::vector<std::size_t> gaps;
    for (std::size_t i = 0; i < count; ++i)
      if (columns[i].GapAfter) gaps.push_back(i);
    EXPECT_EQ(gaps, std::vector<std::size_t>{count == 40 ? 9U : 9990U});
    history.Columns(0, 0, 40'000, columns);
    EXPECT_TRUE(std::ranges::none_of(columns, &TraceColumn::GapAfter));
  }
}

}  // namespace
}  // namespace krx
