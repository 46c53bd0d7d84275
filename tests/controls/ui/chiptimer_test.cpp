// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/chiptimer.h"

#include <gtest/gtest.h>

#include <QCursor>
#include <QWidget>
#include <algorithm>
#include <memory>
#include <stdexcept>

#include "link/registeraccess.h"
#include "support/livebench.h"

namespace krx {
namespace {

/// Ticks of 20 ms of transfers each at intervals of 10 ms: there is always one too many.
struct Busy : LiveBench {
  std::unique_ptr<ChipTimer> Timer(char name, std::function<void()> first = {}) {
    return std::make_unique<ChipTimer>(Turns, std::string(1, name), 10, [this, name, first] {
      Deepest = std::max(Deepest, ++Depth);
      Order += name;
      if (first) first();
      for (int i = 0; i < 4; ++i) ReadByte(Bus, 0x26);
      --Depth;
    });
  }
  int Depth = 0;
  int Deepest = 0;
  std::string Order;
};

TEST(ChipTurns, OverloadedTimersTakeTurnsOneAtATime) {
  Busy bench;
  ChipTimer* again = nullptr;
  const auto a = bench.Timer('a', [&] { again->Start(); });  // restarting inside the tick must not nest either
  const auto b = bench.Timer('b');
  again = a.get();
  a->Start();
  b->Start();
  LiveBench::Run(300);
  EXPECT_EQ(bench.Deepest, 1);
  EXPECT_GE(bench.Order.size(), 6U);
  // Neither starves the other, and neither has two turns while the other waits.
  EXPECT_EQ(bench.Order.find("aa"), std::string::npos) << bench.Order;
  EXPECT_EQ(bench.Order.find("bb"), std::string::npos) << bench.Order;
}

TEST(ChipTurns, NoTurnBeginsInsideATransferOfTheUsers) {
  Busy bench;
  const auto timer = bench.Timer('a');
  timer->Start();
  for (int i = 0; i < 10; ++i) ReadByte(bench.Bus, 0x26);
  EXPECT_EQ(bench.Order, "");
  LiveBench::Run(30);
  EXPECT_NE(bench.Order, "") << "the turn asked for meanwhile follows";
}

TEST(ChipTurns, InputDuringATickIsDeliveredBetweenTwoTurns) {
  class Window : public QWidget {
   public:
    explicit Window(ChipTurns& turns) : turns_(turns) { setMouseTracking(true); }
    int Inside = 0;
    int Between = 0;

   protected:
    void mouseMoveEvent(QMouseEvent*) override { ++(turns_.TurnRunning() ? Inside : Between); }

   private:
    ChipTurns& turns_;
  };
  Busy bench;
  Window window(bench.Turns);
  window.setGeometry(0, 0, 200, 200);
  window.show();
  LiveBench::Run(5);
  int nudges = 0;
  // Two timers that are both due at once leave the main loop nothing but the pause between their turns.
  const auto nudge = [&] { QCursor::setPos(100, 50 + ++nudges); };
  const auto a = bench.Timer('a', nudge);
  const auto b = bench.Timer('b', nudge);
  a->Start();
  b->Start();
  LiveBench::Run(250);
  EXPECT_EQ(window.Inside, 0);
  EXPECT_GE(window.Between, nudges - 1);
  EXPECT_GE(nudges, 5);
}

TEST(ChipTurns, WhatBecomesReadyAsThePauseEndsComesBeforeTheNextTurn) {
  Busy bench;
  std::string seen;
  // A timer that is due later than the pause's, in the same pass of an event loop that was kept busy over both.
  QObject::connect(&bench.Turns, &ChipTurns::TurnEnded, &bench.Turns, [&] {
    QTimer::singleShot(0, Qt::PreciseTimer, &bench.Turns, [&] {
      QTimer::singleShot(3, Qt::PreciseTimer, &bench.Turns,
                         [&] { seen += bench.Turns.TurnRunning() ? "inside " : "between "; });
      QElapsedTimer busy;
      for (busy.start(); busy.elapsed() < 6;) {
      }
    });
  });
  int ticks = 0;
  std::unique_ptr<ChipTimer> timer = bench.Timer('a', [&] {
    if (++ticks == 4) timer->Stop();
  });
  timer->Start();
  LiveBench::Run(250);
  EXPECT_EQ(seen, "between between between between ");
}

TEST(ChipTurns, AFailedTickIsReportedAndTheNextOneWorks) {
  Busy bench;
  std::vector<std::string> failures;
  std::vector<int> pauses;
  const ChipTimer* failing = nullptr;
  bench.Turns.OnFailure([&](const std::string& name, const CommsError& error) {
    pauses.push_back(failing->PauseMilliseconds());
    failures.push_back(name + (error.Number() == 0 ? ": " : "! ") + error.what());
  });
  bench.FailTransfer(1);
  int ticks = 0;
  ChipTimer timer(bench.Turns, "visual_timer", 1, [&] {
    ReadByte(bench.Bus, 0x26);
    if (++ticks == 1) throw std::runtime_error("not the link's");
  });
  failing = &timer;
  timer.Start();
  LiveBench::Run(250);
  ASSERT_EQ(failures.size(), 2U);
  EXPECT_EQ(failures[0].substr(0, 14), "visual_timer! ");
  EXPECT_EQ(failures[1], "visual_timer: not the link's");
  EXPECT_EQ(pauses, (std::vector{0, 100}));
  EXPECT_EQ(timer.PauseMilliseconds(), 0);
  EXPECT_GT(ticks, 2);
}

TEST(ChipTurns, AStoppedOrEndedTimerGivesUpItsWaitingTurn) {
  Busy bench;
  std::unique_ptr<ChipTimer> stopped;
  std::unique_ptr<ChipTimer> ended;
  std::unique_ptr<ChipTimer> first = bench.Timer('f', [&] {
    stopped->Stop();
    ended.reset();
    first.reset();  // its own timer, from inside the tick
  });
  stopped = bench.Timer('s');
  ended = bench.Timer('e');
  for (auto* timer : {first.get(), stopped.get(), ended.get()}) timer->Start();
  LiveBench::Run(80);
  EXPECT_EQ(bench.Order, "f");
  EXPECT_FALSE(stopped->IsActive());
}

}  // namespace
}  // namespace krx
