// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/qteventpump.h"

#include <gtest/gtest.h>
#include <qcustomplot.h>
#include <time.h>

#include <QCursor>
#include <QWidget>
#include <cmath>

#include "controls/tracehistory.h"
#include "controls/ui/stripchart.h"
#include "link/registeraccess.h"
#include "support/livebench.h"

namespace krx {
namespace {

/// Counts the mouse moves it is given. The offscreen platform queues one, as user input, when the cursor is placed.
class MoveCounter : public QWidget {
 public:
  MoveCounter() {
    setMouseTracking(true);
    setGeometry(0, 0, 200, 200);
    show();
    QCoreApplication::processEvents();
  }
  static void Nudge() { QCursor::setPos(QCursor::pos() == QPoint(50, 50) ? QPoint(60, 60) : QPoint(50, 50)); }
  int Moves = 0;

 protected:
  void mouseMoveEvent(QMouseEvent*) override { ++Moves; }
};

double CpuSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

TEST(QtEventPump, UserInputIsDeliveredByAWaitButHeldBackByATransfer) {
  LiveBench bench;
  MoveCounter window;
  int ticks = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
  timer.start(1);

  MoveCounter::Nudge();
  ReadByte(bench.Bus, 0x26);
  EXPECT_EQ(window.Moves, 0);
  EXPECT_GT(ticks, 0) << "timers go on during a transfer's wait";
  bench.Bus.Delay(0.005);
  EXPECT_EQ(window.Moves, 1) << "held, not lost";

  MoveCounter::Nudge();
  ReadByte(bench.Bus, 0x26);
  timer.stop();
  LiveBench::Run(20);
  EXPECT_EQ(window.Moves, 2) << "the main loop wakes for what was held, though nothing else happens";
}

TEST(QtEventPump, WhatAHeldControlRepeatsWaitsLikeOtherInput) {
  struct Held : QAbstractSlider {
    Held() { setRepeatAction(SliderSingleStepAdd, 1, 1); }
  } held;
  LiveBench bench;
  int inside = 0;
  QObject::connect(&held, &QAbstractSlider::valueChanged, [&] { inside += bench.Bus.TransferInProgress() ? 1 : 0; });
  for (int i = 0; i < 4; ++i) ReadByte(bench.Bus, 0x26);
  EXPECT_EQ(held.value(), 0);
  QCoreApplication::processEvents();
  EXPECT_GE(held.value(), 1) << "held, not lost";
  EXPECT_LE(held.value(), 3) << "twenty that were missed are not made up for";
  EXPECT_EQ(inside, 0);
}

TEST(QtEventPump, AWaitIsNeverShortAndSleepsWhileNothingHappens) {
  LiveBench bench;
  const double cpu = CpuSeconds();
  for (int i = 0; i < 40; ++i) {
    const double begin = bench.Bus.ElapsedSeconds();
    bench.Bus.Delay(0.005);
    ASSERT_GE(bench.Bus.ElapsedSeconds() - begin, 0.005);
  }
  EXPECT_LT(CpuSeconds() - cpu, 0.25 * 40 * 0.005);
}

TEST(QtEventPump, AWaitInsideAWaitDoesNotUseUpTheOuterOnesTimer) {
  LiveBench bench;
  QTimer::singleShot(1, [&] { bench.Bus.Delay(0.005); });
  const double begin = bench.Bus.ElapsedSeconds();
  bench.Bus.Delay(0.03);
  EXPECT_GE(bench.Bus.ElapsedSeconds() - begin, 0.03);
}

TEST(QtEventPump, CostlyWorkWaitsUntilNoTransferWaits) {
  LiveBench bench;
  std::string log;
  double left = 0;
  int kept = 0;
  int dropped = 0;
  EXPECT_TRUE(std::isinf(bench.Pump.SecondsLeft()));
  QTimer::singleShot(1, [&] {
    left = bench.Pump.SecondsLeft();
    bench.Pump.CallAfterwards(&kept, [&] { log += "replaced "; });
    bench.Pump.CallAfterwards(&kept, [&] { log += bench.Bus.TransferInProgress() ? "inside " : "after "; });
    bench.Pump.CallAfterwards(&dropped, [&] { log += "forgotten "; });
    bench.Pump.Forget(&dropped);
  });
  for (int i = 0; i < 4; ++i) ReadByte(bench.Bus, 0x26);
  EXPECT_GT(left, 0);
  EXPECT_LT(left, 0.005);
  EXPECT_EQ(log, "") << "not between two transfers either: no event is handled there";
  LiveBench::Run(5);
  EXPECT_EQ(log, "after ");
}

TEST(StripChart, ARedrawThatDoesNotFitIntoAWaitIsPutOff) {
  struct Budget : WaitBudget {
    double SecondsLeft() const override { return Left; }
    void CallAfterwards(const void*, std::function<void()> work) override { PutOff = std::move(work); }
    void Forget(const void*) override { PutOff = nullptr; }
    double Left = INFINITY;
    std::function<void()> PutOff;
  } budget;
  TraceHistory history(1);
  {
    StripChart chart(history);
    chart.SetWaitBudget(&budget);
    int redraws = 0;
    QObject::connect(chart.Plot(), &QCustomPlot::afterReplot, [&] { ++redraws; });
    chart.show();
    LiveBench::Run(60);
    budget.Left = 1e-6;
    redraws = 0;
    chart.SetValueRange(0, 50);
    LiveBench::Run(60);
    EXPECT_EQ(redraws, 0);
    ASSERT_TRUE(budget.PutOff);
    budget.Left = 1;
    budget.PutOff();
    EXPECT_EQ(redraws, 1);
    budget.Left = 0;
    chart.SetValueRange(0, 60);
    LiveBench::Run(60);
  }
  EXPECT_FALSE(budget.PutOff) << "nothing is called after the chart's end";
}

}  // namespace
}  // namespace krx
