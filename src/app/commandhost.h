// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <ostream>
#include <stdexcept>

#include "link/clock.h"
#include "link/eventpump.h"

namespace krx {

/// What the command line needs of the world: two streams, time, and whether somebody wants it to end.
class CommandHost {
 public:
  virtual ~CommandHost() = default;
  virtual std::ostream& Out() = 0;  ///< data
  virtual std::ostream& Err() = 0;  ///< talk
  virtual Clock& ChipClock() = 0;
  virtual EventPump& Pump() = 0;
  virtual std::chrono::system_clock::time_point Now() = 0;
  /// Waits; returns early when the user wants the program to end.
  virtual void Wait(double seconds) = 0;
  virtual bool StopRequested() = 0;
  /// Lines of the terminal that Out() writes to; 0 when that is no terminal whose cursor can be moved.
  virtual int ScreenLines() = 0;
};

/// The command cannot be understood: ends with 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The command was understood and could not be carried out: ends with 1.
class CommandFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace krx
