// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "app/chipconnection.h"
#include "app/commandhost.h"

namespace krx {

struct WatchOptions {
  static constexpr double shortestInterval = 0.1;  ///< seconds; a round on the SMBus alone takes 0.4
  static constexpr double longestInterval = 3600;

  double Interval = 1;             ///< seconds from row to row
  std::optional<long> Count;       ///< rows; none: until stopped
  std::optional<double> Duration;  ///< seconds; none: until stopped
  float Pulses = 1;                ///< pulses a revolution that the fans really give
  bool Json = false;
  bool Start = false;  ///< may write: prepare the board, start monitoring where it is off
};

/// Reads the chip through the reading cycle and shows a row an interval, until count, duration or the user end it. On a
/// terminal the rows are one page that is kept current. First the board is prepared (heaters off, inputs routed) and
/// monitoring started, where that may be written. A failing transfer is told and counted and the next row tries again;
/// what failed before the first row is tried again before each. Returns false when not a single value could be
/// read, or none was measured because monitoring could not be started.
bool Watch(const WatchOptions& options, ChipConnection& connection, CommandHost& host);

}  // namespace krx
