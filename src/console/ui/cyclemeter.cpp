// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/cyclemeter.h"

#include <algorithm>

namespace krx {
namespace {

constexpr int rateMilliseconds = 500;
constexpr int freshMilliseconds = 1500;  ///< without a whole tick for so long the values are old

}  // namespace

CycleMeter::CycleMeter() {
  sinceReport_.start();
}

void CycleMeter::Ticked(std::uint64_t transfers) {
  transfers_ += transfers;
  ++ticks_;
  sinceGoodTick_.start();
}

bool CycleMeter::IsFresh() const {
  return sinceGoodTick_.isValid() && sinceGoodTick_.elapsed() < freshMilliseconds;
}

bool CycleMeter::IsRateDue() const {
  return sinceReport_.elapsed() >= rateMilliseconds;
}

CycleRates CycleMeter::Report(bool running, bool notMonitoring, double pauseSeconds) {
  const double seconds = static_cast<double>(std::max<qint64>(sinceReport_.restart(), 1)) / 1000;
  const CycleRates report{.Running = running,
                          .NotMonitoring = notMonitoring,
                          .ReadsPerTick = ticks_ > 0 ? static_cast<double>(transfers_) / ticks_ : 0,
                          .TicksPerSecond = ticks_ / seconds,
                          .PauseSeconds = pauseSeconds};
  ticks_ = 0;
  transfers_ = 0;
  return report;
}

}  // namespace krx
