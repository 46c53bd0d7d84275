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

/// Ramps PWM2 and PWM3 from zero to full duty, one step every ten seconds, so that the tachometer readings can be
/// watched and logged. The outputs are left in manual control at full duty. Handlers throw what the link throws.
class GlitchTest {
 public:
  static constexpr double intervalSeconds = 10;

  /// What a tick did; Ended: stop the timer.
  enum class TickResult { Idle, Stepped, Ended };

  GlitchTest(Link& link, const LogState& log) : link_(link), log_(log) {}

  /// Sets both outputs to manual control and zero duty and starts the test. If it is already running, the ramp
  /// restarts, but not the interval, and a set finished flag is kept: such a test ends at the next tick.
  void Start();
  /// Called every ten seconds. After a failed tick the test keeps running, and the next tick tries again.
  TickResult Tick();
  /// Stops the test; the outputs are not changed.
  void Stop();

  bool Running() const { return running_; }
  /// Full duty has been reached: the next tick ends the test.
  bool Finished() const { return finished_; }
  /// Steps since the start of the ramp.
  int Step() const { return step_; }
  /// Last byte written to PWM3, which determines the end.
  std::uint8_t Duty() const { return duty_; }
  /// The state of the outputs as last seen on the bus: "PWM2 and PWM3 in manual control at 29 %".
  std::string Leaves() const;
  /// Time until the tick that ends the test; 0 when no test is running.
  double RemainingSeconds();

  /// True for the registers written by the test; when one of them is restored, the test cannot continue.
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
  double lastTick_ = 0;  ///< clock reading at the start of the present interval
};

}  // namespace krx
