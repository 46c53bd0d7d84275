// SPDX-License-Identifier: GPL-3.0-or-later
// Order of events in the real event loop: waits of transfers, turns of timers, requests to end.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QtWidgets>
#include <cmath>
#include <csignal>
#include <ctime>
#include <stdexcept>

#include "controls/backoff.h"
#include "controls/ui/endsignals.h"
#include "controls/ui/stripchart.h"
#include "support/livebench.h"

namespace krx {
namespace {

/// Counts received mouse moves. The offscreen platform queues one, as user input, when the cursor is placed.
struct MoveCounter : QWidget {
  explicit MoveCounter(LiveBench& bench) : Bench(bench) {
    setMouseTracking(true);
    setGeometry(0, 0, 200, 200);
    show();
    QCoreApplication::processEvents();
  }
  void Nudge() { QCursor::setPos(100, 50 + ++Nudges); }
  void mouseMoveEvent(QMouseEvent*) override {
    ++Moves;
    Inside += Bench.UnderWay() ? 1 : 0;
  }
  LiveBench& Bench;
  int Nudges = 0, Moves = 0;
  int Inside = 0;  ///< of the moves in a turn or a transfer
};

TEST(QtEventPump, UserInputIsDeliveredByAWaitButQueuedByATransfer) {
  LiveBench bench;
  MoveCounter window(bench);
  int ticks = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
  timer.start(1);
  window.Nudge();
  bench.Read(1);
  EXPECT_EQ(window.Moves, 0);
  EXPECT_GT(ticks, 0) << "timers run during a transfer's wait";
  bench.Bus.Delay(0.005);
  EXPECT_EQ(window.Moves, 1) << "held, not lost";
  window.Nudge();
  bench.Read(1);
  timer.stop();
  LiveBench::Run(20);
  EXPECT_EQ(window.Moves, 2) << "the main loop wakes up for queued input";
}

TEST(QtEventPump, AutoRepeatIsQueuedLikeOtherInput) {
  struct Held : QAbstractSlider {
    Held() { setRepeatAction(SliderSingleStepAdd, 1, 1); }
  } held;
  LiveBench bench;
  bench.Read(4);
  EXPECT_EQ(held.value(), 0) << "not inside a transfer";
  QCoreApplication::processEvents();
  EXPECT_TRUE(held.value() >= 1 && held.value() <= 3) << "queued, not lost, and not twenty repeats: " << held.value();
}

TEST(QtEventPump, AWaitIsNeverShortAndSleepsWhileNothingHappens) {
  LiveBench bench;
  const auto wait = [&](double seconds) {
    const double begin = bench.Bus.ElapsedSeconds();
    bench.Bus.Delay(seconds);
    EXPECT_GE(bench.Bus.ElapsedSeconds() - begin, seconds);
  };
  const std::clock_t processor = std::clock();
  for (int i = 0; i < 40; ++i) wait(0.005);
  LiveBench::Run(100);  // a finished wait does not keep the main loop busy
  EXPECT_LT(static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC, 0.25 * 0.3);
  QTimer::singleShot(1, [&] { wait(0.005); });
  wait(0.03);  // an inner wait does not use up the outer one's timer
}

TEST(QtEventPump, ExpensiveWorkIsDeferredUntilNoTransferWaits) {
  LiveBench bench;
  std::string log;
  double left = -1;
  const int kept = 0, dropped = 0;
  EXPECT_TRUE(std::isinf(bench.Pump.SecondsLeft()));
  QTimer::singleShot(1, [&] {
    left = bench.Pump.SecondsLeft();
    bench.Pump.CallAfterwards(&kept, [&] { log += "replaced "; });
    bench.Pump.CallAfterwards(&kept, [&] { log += bench.Bus.TransferInProgress() ? "inside " : "after "; });
    bench.Pump.CallAfterwards(&dropped, [&] { log += "forgotten "; });
    bench.Pump.Forget(&dropped);
  });
  bench.Read(4);
  EXPECT_TRUE(left >= 0 && left < 0.005) << left;
  EXPECT_EQ(log, "") << "not between two transfers either: no event is handled there";
  LiveBench::Run(50);
  EXPECT_EQ(log, "after ");
}

/// Ticks with 20 ms of transfers at intervals of 10 ms: a permanent overload.
struct Busy : LiveBench {
  std::unique_ptr<ChipTimer> Timer(char name, std::function<void()> first = {}) {
    return std::make_unique<ChipTimer>(Turns, std::string(1, name), 10, [this, name, first] {
      Order += name;
      if (first) first();
      Read(4);
      Order += '.';
    });
  }
  std::string Order;  ///< of the timers' turns, each with its end
};

TEST(ChipTurns, OverloadedTimersTakeTurnsOneAtATimeAndInputIsDeliveredBetweenThem) {
  Busy bench;
  MoveCounter window(bench);
  // Restarting inside the tick must not nest either.
  const std::unique_ptr<ChipTimer> a = bench.Timer('a', [&] { window.Nudge(), a->Start(); });
  const std::unique_ptr<ChipTimer> b = bench.Timer('b', [&] { window.Nudge(); });
  for (auto* timer : {a.get(), b.get()}) timer->Start();
  bench.Read(5);
  EXPECT_EQ(bench.Order, "") << "no turn begins inside a transfer of a user handler";
  for (int waits = 0; waits < 200 && bench.Order.size() < 12; ++waits) LiveBench::Run(20);
  EXPECT_TRUE(bench.Order.starts_with("a.b.a.b.a.b.")) << bench.Order;
  // Neither starves, and neither gets two turns while the other waits.
  for (const char* wrong : {"a.a", "b.b", "ab", "ba"})
    EXPECT_EQ(bench.Order.find(wrong), std::string::npos) << bench.Order;
  EXPECT_EQ(window.Inside, 0);
  EXPECT_GE(window.Moves, window.Nudges - 1);
}

TEST(ChipTurns, EventsReadyAtTheEndOfThePauseComeBeforeTheNextTurn) {
  Busy bench;
  std::string seen;
  // A timer that is due later than the pause's, in the same pass of an event loop that was kept busy over both.
  QObject::connect(&bench.Turns, &ChipTurns::TurnEnded, &bench.Turns, [&] {
    QTimer::singleShot(0, Qt::PreciseTimer, &bench.Turns, [&] {
      QTimer::singleShot(3, Qt::PreciseTimer, &bench.Turns,
                         [&] { seen += bench.Turns.TurnRunning() ? "inside " : "between "; });
      QThread::msleep(6);
    });
  });
  std::unique_ptr<ChipTimer> timer = bench.Timer('a', [&] {
    if (bench.Order == "a.a.a.a") timer->Stop();
  });
  timer->Start();
  for (int passes = 0; passes < 100 && std::ranges::count(seen, ' ') < 4; ++passes) LiveBench::Run(50);
  EXPECT_EQ(seen, "between between between between ");
}

TEST(ChipTurns, AFailedTickIsReportedAndTheNextOneWorks) {
  Busy bench;
  std::string failures;
  int ticks = 0;
  ChipTimer timer(bench.Turns, "visual_timer", 1, [&] {
    bench.Read(1);
    if (++ticks == 1) throw Failure("not the link's");
  });
  bench.Turns.OnFailure([&](const std::string& name, const CommsError& error) {
    failures += fmt::format("{} {} after {} ms; ", name, error.BoxText(), timer.PauseMilliseconds());
  });
  bench.FailTransfer(1);
  timer.Start();
  LiveBench::Run(250);
  EXPECT_EQ(failures,
            "visual_timer Error: 57, Device I/O error after 0 ms; "
            "visual_timer Error: 0, not the link's after 100 ms; ");
  EXPECT_EQ(timer.PauseMilliseconds(), 0);
  EXPECT_GT(ticks, 2);
}

TEST(ChipTurns, AStoppedOrDestroyedTimerDropsItsWaitingTurn) {
  Busy bench;
  std::unique_ptr<ChipTimer> stopped = bench.Timer('s');
  std::unique_ptr<ChipTimer> ended = bench.Timer('e');
  std::unique_ptr<ChipTimer> first = bench.Timer('f', [&] {
    stopped->Stop();
    ended.reset();
    first.reset();  // its own timer, from inside the tick
  });
  for (auto* timer : {first.get(), stopped.get(), ended.get()}) timer->Start();
  LiveBench::Run(80);
  EXPECT_EQ(bench.Order, "f.");
}

TEST(ChartRedraw, DrawsEveryFifthTickNeverWhileHiddenAndDefersWhatDoesNotFitIntoAWait) {
  const TraceHistory history(1);
  ScriptedBudget budget;
  auto chart = std::make_unique<StripChart>(history);
  chart->SetWaitBudget(&budget);
  QSignalSpy redraws(chart->findChild<QWidget*>("plot"), SIGNAL(afterReplot()));
  const auto drawn = [&](int ticks) {
    redraws.clear();
    for (int i = 0; i < ticks; ++i) chart->Posted();
    return redraws.count();
  };
  EXPECT_EQ(drawn(100), 0);
  chart->show();
  LiveBench::Run(60);
  drawn(5);  // pending redraws from showing
  const auto shown = drawn(20);
  EXPECT_TRUE(shown >= 4 && shown <= 10) << shown;  // a slow machine may pass the 50 ms now and then
  chart->hide();
  EXPECT_EQ(drawn(20), 0);
  chart->show();
  for (const double left : {1e-6, 0.0}) {
    budget.Left = 1;
    if (budget.Afterwards) std::exchange(budget.Afterwards, nullptr)();
    LiveBench::Run(60);
    EXPECT_GE(redraws.count(), 1);
    redraws.clear();
    budget.Left = left;
    chart->SetValueRange(0, 50);
    LiveBench::Run(60);
    EXPECT_EQ(redraws.count(), 0);
    ASSERT_TRUE(budget.Afterwards);
  }
  chart.reset();
  EXPECT_FALSE(budget.Afterwards) << "nothing is called after the chart is destroyed";
}

TEST(Backoff, PausesFromTheSecondConsecutiveFailureUntilASuccess) {
  Backoff backoff;
  for (int round = 0; round < 2; ++round, backoff.Succeeded()) {
    for (const int pause : {0, 0, 100, 200, 400, 800, 1600, 2000, 2000}) {
      EXPECT_EQ(backoff.PauseMilliseconds(), pause);
      backoff.Failed();
    }
    for (int more = 0; more < 1000; ++more) backoff.Failed();
    EXPECT_EQ(backoff.PauseMilliseconds(), 2000);
  }
}

TEST(EndSignals, ASignalBecomesARequestOnceNothingIsInProgress) {
  // A closed pipe does not end the program.
  for (const auto& [signal, ends] : {std::pair{SIGPIPE, 0}, {SIGTERM, 1}, {SIGINT, 1}, {SIGHUP, 1}, {SIGQUIT, 1}}) {
    bool busy = true;
    int requests = 0;
    EndSignals endSignals([&] { return busy; });
    QObject::connect(&endSignals, &EndSignals::EndRequested, [&] { ++requests; });
    std::raise(signal);
    EXPECT_EQ(endSignals.Asked(), ends == 1) << "at once: a transfer under way handles no event";
    LiveBench::Run(30);
    EXPECT_EQ(requests, 0);
    busy = false;
    LiveBench::Run(50);
    EXPECT_EQ(requests, ends) << signal;
  }
}

}  // namespace
}  // namespace krx
