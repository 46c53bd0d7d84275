// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <ostream>

#include "link/clock.h"
#include "link/commserror.h"
#include "link/eventpump.h"

namespace krx {

/// The environment of the command line: two streams, time, and the request to stop.
class CommandHost {
 public:
  virtual ~CommandHost() = default;
  virtual std::ostream& Out() = 0;  ///< data
  virtual std::ostream& Err() = 0;  ///< messages
  virtual Clock& ChipClock() = 0;
  virtual EventPump& Pump() = 0;
  virtual std::chrono::system_clock::time_point Now() = 0;
  /// Waits; returns early when the user asks the program to stop.
  virtual void Wait(double seconds) = 0;
  virtual bool StopRequested() = 0;
  /// Lines of the terminal that Out() writes to; 0 when it is not a terminal with cursor control.
  virtual int ScreenLines() = 0;
};

/// The command line is wrong: exit code 2.
class UsageError : public Failure {
 public:
  using Failure::Failure;
};

/// The command is valid but failed: exit code 1.
class CommandFailure : public Failure {
 public:
  using Failure::Failure;
};

}  // namespace krx
