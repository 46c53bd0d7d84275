// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "link/linknewcomport06.h"
#include "records/logstate.h"

namespace krx {

/// "Fan Test Setup": PWM1 and PWM2 under manual control, then DC1 and DC2 of Configuration 3 set. Throws what the
/// link throws.
void FanTestSetup(Link& link);

/// Drives PWM2 and PWM3 from standstill to full duty, one step every ten seconds, so that the tachometer readings can
/// be watched and logged meanwhile. The outputs are left in manual control at full duty. Handlers throw what the link
/// throws.
class GlitchTest {
 public:
  static constexpr double intervalSeconds = 10;

  /// What a tick did; Ended: the timer is to be stopped.
  enum class TickResult { Idle, Stepped, Ended };

  GlitchTest(Link& link, const LogState& log) : link_(link), log_(log) {}

  /// Both outputs to manual control and to standstill, then the test runs. Pressed again while it runs, the ramp begins
  /// anew, but not the interval, and a set finished flag stays: such a test ends at the next tick.
  void Start();
  /// Every ten seconds. A failing tick leaves the test running: the next one tries again.
  TickResult Tick();
  /// Leaves the outputs as they are.
  void Stop();

  bool Running() const { return running_; }
  /// Full duty has been reached: the next tick ends the test.
  bool Finished() const { return finished_; }
  /// Steps since standstill.
  int Step() const { return step_; }
  /// Last byte written to PWM3, which decides on the end.
  std::uint8_t Duty() const { return duty_; }
  /// How the outputs stand, by what was last seen on the bus: "PWM2 and PWM3 in manual control at 29 %".
  std::string Leaves() const;
  /// Until the tick that ends the test; 0 when none runs.
  double RemainingSeconds();

  /// True of the registers that the test writes: with one of them put back it has nothing to go on with.
  static bool Drives(std::uint8_t reg);

  /// Called when a test has ended and a log is open.
  std::function<void()> StopLog;

 private:
  std::uint8_t Raise(std::uint8_t dutyRegister, bool& capped);

  Link& link_;
  const LogState& log_;
  bool running_ = false;
  bool finished_ = false;
  int step_ = 0;
  std::uint8_t duty_ = 0;
  double lastTick_ = 0;  ///< clock reading that the present interval began at
};

}  // namespace krx
