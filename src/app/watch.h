// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "app/chipconnection.h"
#include "app/commandhost.h"

namespace krx {

struct WatchOptions {
  static constexpr double shortestInterval = 0.1;  ///< seconds; one round on the SMBus takes 0.4
  static constexpr double longestInterval = 3600;

  double Interval = 1;             ///< seconds between rows
  std::optional<long> Count;       ///< rows; none: until stopped
  std::optional<double> Duration;  ///< seconds; none: until stopped
  float Pulses = 1;                ///< actual pulses per revolution of the fans
  bool Json = false;
  bool Start = false;  ///< may write: prepare the board, start monitoring if it is off
};

/// Reads the chip through the reading cycle and shows one row per interval, until count, duration or the user end it.
/// On a terminal the rows replace each other on one page. If writing is allowed, the board is prepared first (heaters
/// off, inputs routed) and monitoring started. A failed transfer is reported and counted, and the next row tries again;
/// what failed before the first row is retried before each row. Returns false when no value at all could be read, or
/// when monitoring could not be started.
bool Watch(const WatchOptions& options, ChipConnection& connection, CommandHost& host);

}  // namespace krx
