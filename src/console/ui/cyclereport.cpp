// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/cyclereport.h"

#include "console/ui/statusline.h"
#include "controls/ui/chiptimer.h"
#include "monitor/firstvalues.h"
#include "monitor/visualmodel.h"

namespace krx {
namespace {

constexpr int readingsMilliseconds = 50;  ///< a reader sees no more than 20 values a second
constexpr int reportMilliseconds = 1000;

}  // namespace

CycleReport::CycleReport(const Parts& parts, QObject* parent) : QObject(parent), parts_(parts) {
  connect(&period_, &QTimer::timeout, this, &CycleReport::Show);
  period_.start(reportMilliseconds);
  sinceReadings_.start();
}

void CycleReport::Ticked(std::uint64_t transfers) {
  meter_.Ticked(transfers);
  if (sinceReadings_.elapsed() < readingsMilliseconds) return;
  sinceReadings_.start();
  parts_.Status.ShowAlarms(parts_.Model.ReportAlarms(), false);
  emit ReadingsDue(false);
}

void CycleReport::Show() {
  const bool fresh = parts_.Timer.IsActive() && meter_.IsFresh();
  // A rate needs time to be measured; that the cycle stopped does not.
  if (!fresh || meter_.IsRateDue()) {
    const double pause = parts_.Timer.IsActive() ? parts_.Timer.PauseMilliseconds() / 1000.0 : 0;
    parts_.Status.ShowCycle(meter_.Report(fresh, parts_.First.Monitoring() == false, pause));
  }
  if (!fresh) {
    parts_.Model.ShowSeen();  // without a tick: what a dialog wrote, for example
    emit ReadingsDue(true);
    parts_.Status.ShowAlarms(parts_.Model.ReportAlarms(), true);
  }
  emit Shown();
}

}  // namespace krx
