// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>

namespace krx {

/// The platform's performance counter, as an interface so that a test can control time.
class Clock {
 public:
  virtual ~Clock() = default;
  /// Counts per second; 0 when the platform has no performance counter.
  virtual std::int64_t Frequency() = 0;
  virtual std::int64_t Counter() = 0;
  /// Another clock, in seconds, for a platform without a performance counter.
  virtual double FallbackSeconds() = 0;
};

/// The counter's frequency, 0 until it was queried, and the last count read.
struct PerfClock {
  std::int64_t Frequency = 0;
  std::int64_t Counter = 0;
};

/// The monotonic clock of the system, in nanoseconds.
class SystemClock : public Clock {
 public:
  std::int64_t Frequency() override { return 1'000'000'000; }
  std::int64_t Counter() override {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
  }
  double FallbackSeconds() override {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
  }
};

}  // namespace krx
