// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>
#include <string>

#include "controls/backoff.h"
#include "link/commserror.h"
#include "link/linknewcomport06.h"

namespace krx {

class ChipTimer;

/// Lets the ticks that reach the chip run one at a time. A transfer on the SMBus handles timers while it waits, so a
/// tick that ran straight from its timeout would start inside another one and take its registers from under it.
/// Turns are given in the order they were asked for, never while a transfer is in progress, and with a pause between
/// them in which the main loop delivers the user input held back meanwhile.
class ChipTurns : public QObject {
  Q_OBJECT

 public:
  /// Told of a tick that ended with an exception: the timer's name, and the error (number 0 when it was none of the
  /// link's).
  using Failure = std::function<void(const std::string& name, const CommsError& error)>;

  explicit ChipTurns(Link& link, Failure failed = {});

  void OnFailure(Failure failed) { failed_ = std::move(failed); }

  /// Runs every tick from now on through this: it gets the timer's name and must call the tick.
  using Wrapper = std::function<void(const std::string& name, const std::function<void()>& tick)>;
  void Around(Wrapper wrapper) { wrapper_ = std::move(wrapper); }

  /// As long as one lives no turn is given, so that a handler which waits between its transfers has the chip for
  /// itself. Timers that ask meanwhile wait.
  class Hold {
   public:
    explicit Hold(ChipTurns& turns) : turns_(turns) { ++turns_.holds_; }
    ~Hold() {
      --turns_.holds_;
      turns_.ScheduleNext();
    }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    ChipTurns& turns_;
  };

  /// True while a tick runs, its waits included.
  bool TurnRunning() const { return running_; }

 signals:
  /// A tick has ended, well or not, and none has begun since.
  void TurnEnded();

 private:
  friend class ChipTimer;
  void Ask(ChipTimer& timer);
  void Withdraw(ChipTimer& timer);
  void ScheduleNext();
  void RunNext();

  Link& link_;
  Failure failed_;
  Wrapper wrapper_;
  std::deque<ChipTimer*> waiting_;  ///< each timer at most once
  QTimer breath_;
  QElapsedTimer sinceLastTurn_;
  bool posted_ = false;  ///< the next turn comes in the next pass of the event loop
  bool running_ = false;
  int holds_ = 0;
};

/// A repeating timer whose tick may reach the chip. Its timeout only asks for a turn; timeouts that find the previous
/// one still waiting are dropped. After two ticks in a row that failed it rests for longer than its interval, up to 2
/// s, until one succeeds or it is started anew.
class ChipTimer {
 public:
  ChipTimer(ChipTurns& turns, std::string name, int intervalMs, std::function<void()> tick);
  ~ChipTimer();
  ChipTimer(const ChipTimer&) = delete;
  ChipTimer& operator=(const ChipTimer&) = delete;

  /// Starts, or starts the interval anew.
  void Start();
  /// Stops and gives up a turn that is waiting. A tick that is running goes on to its end.
  void Stop();
  void SetInterval(int milliseconds);
  int Interval() const { return interval_; }
  /// What it rests now; 0 while its ticks succeed.
  int PauseMilliseconds() const { return backoff_.PauseMilliseconds(); }
  bool IsActive() const { return timer_.isActive(); }
  const std::string& Name() const { return name_; }

 private:
  friend class ChipTurns;
  void TickEnded(bool failed);

  ChipTurns& turns_;
  std::string name_;
  std::function<void()> tick_;
  int interval_;
  Backoff backoff_;
  QTimer timer_;
};

}  // namespace krx
