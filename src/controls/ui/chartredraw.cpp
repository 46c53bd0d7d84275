// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/chartredraw.h"

#include <QWidget>
#include <utility>

namespace krx {

namespace {

constexpr int kTicksPerRedraw = 5;
constexpr qint64 kPostedMilliseconds = 50;  // five ticks of 10 ms; slower ticks need not wait for the fifth
constexpr qint64 kUserMilliseconds = 16;
constexpr double kRedrawMargin = 1.3;  // of what the last redraw took

}  // namespace

ChartRedraw::ChartRedraw(QWidget& chart, std::function<void()> draw)
    : QObject(&chart), chart_(chart), draw_(std::move(draw)) {
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, &ChartRedraw::Redraw);
  sinceRedraw_.start();
}

ChartRedraw::~ChartRedraw() {
  if (budget_) budget_->Forget(this);
}

void ChartRedraw::SetWaitBudget(WaitBudget* budget) {
  if (budget_) budget_->Forget(this);
  budget_ = budget;
}

void ChartRedraw::Posted() {
  dirty_ = true;
  ++ticks_;
  if (Drawable() && (ticks_ >= kTicksPerRedraw || sinceRedraw_.elapsed() >= kPostedMilliseconds)) Redraw();
}

void ChartRedraw::Request() {
  dirty_ = true;
  if (!Drawable() || timer_.isActive()) return;
  const qint64 passed = sinceRedraw_.elapsed();
  timer_.start(passed >= kUserMilliseconds ? 0 : static_cast<int>(kUserMilliseconds - passed));
}

void ChartRedraw::CatchUp() {
  if (dirty_) Request();
}

bool ChartRedraw::Drawable() const {
  return chart_.isVisible() && !chart_.window()->isMinimized();
}

void ChartRedraw::Redraw() {
  if (!Drawable()) return;
  timer_.stop();
  if (budget_ && redrawSeconds_ * kRedrawMargin > budget_->SecondsLeft()) {
    budget_->CallAfterwards(this, [this] { Redraw(); });
    return;
  }
  ticks_ = 0;
  dirty_ = false;
  sinceRedraw_.restart();
  draw_();
  redrawSeconds_ = static_cast<double>(sinceRedraw_.nsecsElapsed()) * 1e-9;
  sinceRedraw_.restart();
}

}  // namespace krx
