// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/chiptimer.h"

#include <QPointer>
#include <algorithm>
#include <optional>
#include <utility>

#include "link/failuretext.h"

namespace krx {
namespace {

/// Between two turns; long enough for the main loop to deliver what the user did during the first.
constexpr int breathMs = 2;

std::optional<CommsError> RunCaught(const std::function<void()>& tick) {
  try {
    tick();
  } catch (const GivenUp&) {
    return std::nullopt;
  } catch (const CommsError& error) {
    return error;
  } catch (const std::exception& error) {
    return CommsError(0, FailureText(error));
  }
  return std::nullopt;
}

}  // namespace

ChipTurns::ChipTurns(Link& link, Failure failed) : link_(link), failed_(std::move(failed)) {
  breath_.setSingleShot(true);
  breath_.setTimerType(Qt::PreciseTimer);
  // One more pass of the event loop: the pause may end in the pass in which held input becomes ready, and a turn that
  // ran at once would keep it waiting to its own end.
  connect(&breath_, &QTimer::timeout, this, [this] {
    posted_ = true;
    QMetaObject::invokeMethod(this, &ChipTurns::RunNext, Qt::QueuedConnection);
  });
}

void ChipTurns::Ask(ChipTimer& timer) {
  if (std::find(waiting_.begin(), waiting_.end(), &timer) != waiting_.end()) return;
  waiting_.push_back(&timer);
  ScheduleNext();
}

void ChipTurns::Withdraw(ChipTimer& timer) {
  std::erase(waiting_, &timer);
}

void ChipTurns::ScheduleNext() {
  if (running_ || holds_ > 0 || waiting_.empty() || breath_.isActive() || posted_) return;
  const auto rested = sinceLastTurn_.isValid() ? std::min<qint64>(sinceLastTurn_.elapsed(), breathMs) : breathMs;
  breath_.start(breathMs - static_cast<int>(rested));
}

void ChipTurns::RunNext() {
  posted_ = false;
  if (running_ || holds_ > 0 || waiting_.empty()) return;
  if (link_.TransferInProgress()) {
    breath_.start(breathMs);
    return;
  }
  // Copies: the tick may end its own timer.
  ChipTimer* const timer = waiting_.front();
  const QPointer<QTimer> alive(&timer->timer_);
  const std::string name = timer->name_;
  const auto tick = timer->tick_;
  waiting_.pop_front();
  running_ = true;
  const auto error = RunCaught([&] {
    if (wrapper_) {
      wrapper_(name, tick);
    } else {
      tick();
    }
  });
  running_ = false;
  sinceLastTurn_.start();
  if (alive) timer->TickEnded(error.has_value());
  if (error && failed_) failed_(name, *error);
  emit TurnEnded();
  ScheduleNext();
}

ChipTimer::ChipTimer(ChipTurns& turns, std::string name, int intervalMs, std::function<void()> tick)
    : turns_(turns), name_(std::move(name)), tick_(std::move(tick)), interval_(intervalMs) {
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &turns_, [this] { turns_.Ask(*this); });
}

ChipTimer::~ChipTimer() {
  turns_.Withdraw(*this);
}

void ChipTimer::SetInterval(int milliseconds) {
  interval_ = milliseconds;
  timer_.setInterval(milliseconds);
}

void ChipTimer::Start() {
  timer_.start(interval_);
}

void ChipTimer::TickEnded(bool failed) {
  failed ? backoff_.Failed() : backoff_.Succeeded();
  const int pause = std::max(interval_, backoff_.PauseMilliseconds());
  if (!timer_.isActive() || (!failed && timer_.interval() == pause)) return;
  // Its timeout may have asked for the next turn during this one: the rest begins now.
  if (pause > interval_) turns_.Withdraw(*this);
  timer_.start(pause);
}

void ChipTimer::Stop() {
  timer_.stop();
  turns_.Withdraw(*this);
}

}  // namespace krx
