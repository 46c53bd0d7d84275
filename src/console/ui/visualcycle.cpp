// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/visualcycle.h"

#include "console/pageparts.h"
#include "console/startup.h"
#include "console/workbench.h"

namespace krx {

VisualCycle::VisualCycle(Workbench& bench, ChipTurns& turns, StatusLine& status, QObject* parent)
    : QObject(parent),
      bench_(bench),
      model_(VisualPartsOf(bench), *this),
      timer_(turns, "visual_timer", tickMilliseconds, [this] { Tick(); }),
      report_(new CycleReport({model_, status, bench.First, timer_}, this)) {}

void VisualCycle::StartVisualTimer() {
  timer_.SetInterval(tickMilliseconds);
  timer_.Start();
  report_->Started();
}

bool VisualCycle::OwesStartUp() const {
  return !bench_.Start.Owed.empty();
}

void VisualCycle::RetryStartUp() {
  RetryOwed(bench_);
}

void VisualCycle::Tick() {
  const std::uint64_t before = bench_.ChipLink.TransferCount();
  try {
    model_.Tick();
  } catch (...) {
    emit GapPosted();
    throw;
  }
  emit Posted();
  report_->Ticked(bench_.ChipLink.TransferCount() - before);
}

void VisualCycle::End() {
  timer_.Stop();
  report_->Stop();
}

}  // namespace krx
