// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/qteventpump.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QCoreApplication>
#include <QTimerEvent>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <limits>
#include <system_error>

namespace krx {
namespace {

constexpr double never = std::numeric_limits<double>::infinity();

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Marks the wait of a transfer; an inner wait puts the outer one's end back.
class HoldScope {
 public:
  HoldScope(double& holdEnd, double end) : holdEnd_(holdEnd), outer_(holdEnd) { holdEnd_ = end; }
  ~HoldScope() { holdEnd_ = outer_; }
  HoldScope(const HoldScope&) = delete;
  HoldScope& operator=(const HoldScope&) = delete;

 private:
  double& holdEnd_;
  double outer_;
};

/// Controls whose own timers carry on what a held mouse button or key began.
bool RepeatsInput(const QObject* object) {
  return qobject_cast<const QAbstractSlider*>(object) != nullptr ||
         qobject_cast<const QAbstractSpinBox*>(object) != nullptr ||
         qobject_cast<const QAbstractButton*>(object) != nullptr;
}

}  // namespace

class QtEventPump::Descriptor {
 public:
  Descriptor() : fd_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (fd_ < 0) throw std::system_error(errno, std::generic_category(), "timerfd_create");
  }
  ~Descriptor() { close(fd_); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Number() const { return fd_; }

  void Arm(double seconds) {
    const double whole = std::floor(seconds);
    itimerspec due{};
    due.it_value.tv_sec = static_cast<time_t>(whole);
    // At least a nanosecond: zero would disarm the timer, and the wait would never wake.
    due.it_value.tv_nsec = std::clamp(static_cast<long>((seconds - whole) * 1e9), 1L, 999'999'999L);
    timerfd_settime(fd_, 0, &due, nullptr);
  }

  void Clear() {
    std::uint64_t expirations = 0;
    [[maybe_unused]] const auto count = read(fd_, &expirations, sizeof expirations);
  }

 private:
  int fd_;
};

QtEventPump::QtEventPump()
    : timer_(std::make_unique<Descriptor>()),
      notifier_(std::make_unique<QSocketNotifier>(timer_->Number(), QSocketNotifier::Read)),
      holdEnd_(never) {
  connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { timer_->Clear(); });
  QCoreApplication::instance()->installEventFilter(this);
}

QtEventPump::~QtEventPump() = default;

void QtEventPump::Pump(double seconds, PumpMode mode) {
  const double end = Now() + seconds;
  const bool hold = mode == PumpMode::HoldUserInput;
  {
    HoldScope scope(holdEnd_, hold ? end : holdEnd_);
    const auto flags = hold ? QEventLoop::ExcludeUserInputEvents : QEventLoop::AllEvents;
    double left = seconds;
    do {
      // Anew after every wake: a handler may have waited itself and used up the one timer.
      timer_->Arm(std::max(left, 0.0));
      QCoreApplication::processEvents(flags | QEventLoop::WaitForMoreEvents);
      left = end - Now();
    } while (left > 0);
  }
  if (!hold) return;
  // Without it the dispatcher sleeps on the input it was told to leave aside until something else happens.
  if (auto* dispatcher = QAbstractEventDispatcher::instance()) dispatcher->wakeUp();
  if (!putOff_.empty() || !repeats_.empty())
    QMetaObject::invokeMethod(this, &QtEventPump::RunPutOff, Qt::QueuedConnection);
}

bool QtEventPump::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Timer || holdEnd_ == never || !RepeatsInput(watched)) return false;
  const auto repeat = std::pair(QPointer(watched), static_cast<QTimerEvent*>(event)->timerId());
  if (std::find(repeats_.begin(), repeats_.end(), repeat) == repeats_.end()) repeats_.push_back(repeat);
  return true;
}

double QtEventPump::SecondsLeft() const {
  return std::max(holdEnd_ - Now(), 0.0);
}

void QtEventPump::CallAfterwards(const void* owner, std::function<void()> work) {
  putOff_[owner] = std::move(work);
  if (holdEnd_ == never) QMetaObject::invokeMethod(this, &QtEventPump::RunPutOff, Qt::QueuedConnection);
}

void QtEventPump::Forget(const void* owner) {
  putOff_.erase(owner);
}

void QtEventPump::RunPutOff() {
  if (holdEnd_ != never) return;  // already the next transfer waits; its end posts again
  DeliverRepeats();
  for (auto count = putOff_.size(); count > 0 && !putOff_.empty(); --count) {
    const auto work = putOff_.extract(putOff_.begin());
    work.mapped()();
  }
}

void QtEventPump::DeliverRepeats() {
  // A control that was let go of meanwhile no longer knows the timer.
  for (const auto& [control, timer] : std::exchange(repeats_, {})) {
    if (!control) continue;
    QTimerEvent event(timer);
    QCoreApplication::sendEvent(control, &event);
  }
}

}  // namespace krx
