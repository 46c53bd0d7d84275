// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <cstdint>

#include "console/ui/statusline.h"

namespace krx {

/// How fast the reading cycle runs, and whether what it shows is still fresh.
class CycleMeter {
 public:
  CycleMeter();

  /// The cycle begins: its first tick has not come, and nothing is old yet.
  void Started() { sinceGoodTick_.start(); }
  /// A tick came to its end with so many transfers.
  void Ticked(std::uint64_t transfers);
  /// A tick has come to its end a short while ago; only of a cycle that runs.
  bool IsFresh() const;
  /// A rate is worth telling: enough time has passed since the last one.
  bool IsRateDue() const;
  /// The rates since the last call, with what the caller knows of the timer and the chip.
  CycleRates Report(bool running, bool notMonitoring, double pauseSeconds);

 private:
  QElapsedTimer sinceReport_;
  QElapsedTimer sinceGoodTick_;
  int ticks_ = 0;                ///< since the last report
  std::uint64_t transfers_ = 0;  ///< made by those ticks
};

}  // namespace krx
