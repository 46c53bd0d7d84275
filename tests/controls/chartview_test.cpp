// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/chartview.h"

#include <gtest/gtest.h>

#include <sstream>

#include "controls/chartcsv.h"

namespace krx {
namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

TEST(ChartView, FollowsThenStandsStillThenShowsAll) {
  TraceHistory history(1);
  ChartView view(history);
  EXPECT_EQ(view.Shown(), (ChartSpan{0, 180 * kSecond}));
  history.Append(100 * kSecond, std::vector<float>{1.f});
  EXPECT_EQ(view.Shown(), (ChartSpan{100 * kSecond, 280 * kSecond}));  // grows from the left
  history.Append(400 * kSecond, std::vector<float>{1.f});
  EXPECT_EQ(view.Shown(), (ChartSpan{220 * kSecond + 1, 400 * kSecond + 1}));
  view.Zoom(0.5, 0.2);
  EXPECT_EQ(view.Mode(), ChartMode::Live);
  EXPECT_EQ(view.Shown(), (ChartSpan{310 * kSecond + 1, 400 * kSecond + 1}));
  view.Pause();
  history.Append(900 * kSecond, std::vector<float>{1.f});
  EXPECT_EQ(view.Shown(), (ChartSpan{310 * kSecond + 1, 400 * kSecond + 1}));
  view.Zoom(2, 0.5);
  EXPECT_EQ(view.Shown(), (ChartSpan{265 * kSecond + 1, 445 * kSecond + 1}));
  view.Pan(-0.5);
  EXPECT_EQ(view.Shown().Begin, 175 * kSecond + 1);
  view.Whole();
  EXPECT_EQ(view.Shown(), (ChartSpan{100 * kSecond, 900 * kSecond + 1}));
  view.Zoom(1e-12, 0);
  EXPECT_EQ(view.Mode(), ChartMode::Paused);
  EXPECT_EQ(view.Shown().Length(), ChartView::ShortestLength);
  view.Live();
  EXPECT_EQ(view.Shown().Length(), ChartView::DefaultLength);
}

TEST(ChartView, ClearHidesTheOldRowsFromThisViewOnly) {
  TraceHistory history(1);
  ChartView view(history), other(history);
  history.Append(400 * kSecond, std::vector<float>{1.f});
  view.Clear();
  EXPECT_EQ(view.Shown().Begin, 400 * kSecond + 1);
  EXPECT_EQ(other.Shown().Begin, 400 * kSecond);
  EXPECT_GT(view.FirstTime(), history.LastTime());
}

TEST(ChartCsv, WritesTheVisibleRowsAndTheirGapsWhateverThePieces) {
  TraceHistory history(3);
  history.Append(0, std::vector<float>{9.f, 9.f, 9.f});  // before the span
  history.Append(1'500'000, std::vector<float>{29.75f, kNone, 1.f});
  history.Append(1'510'000, std::vector<float>{kNone, kNone, 2.f});  // nothing in the chosen columns
  history.Append(1'520'000, std::vector<float>{kNone, kNone, kNone});
  history.Append(3'600'000'001, std::vector<float>{-0.1f, 2412.f, 3.f});
  history.Append(3'700'000'000, std::vector<float>{9.f, 9.f, 9.f});  // the end is outside
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
    for (int i = from; i < to; ++i) history.Append(i * 1000, std::vector<float>{static_cast<float>(i)});
  };
  post(0, 1020);
  ChartCsv csv(history, {0, 1'000'000'000}, {{0, "A"}}, {});
  std::string text = csv.Next(100);
  post(1020, 9000);  // the first rows are dropped now
  while (!csv.Done()) text += csv.Next(100);
  std::istringstream lines(text);
  std::string line;
  std::getline(lines, line);
  double last = -1;
  for (; std::getline(lines, line); last = std::stod(line)) EXPECT_GE(std::stod(line), last);
  EXPECT_EQ(last, 1.019);
}

}  // namespace
}  // namespace krx
