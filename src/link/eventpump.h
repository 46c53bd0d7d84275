// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace krx {

/// What may run while Delay waits.
enum class PumpMode {
  Everything,     ///< an ordinary wait: all pending events are handled
  HoldUserInput,  ///< inside a transfer: user input stays queued, paints and timers run
};

/// Event handling while Delay waits.
class EventPump {
 public:
  virtual ~EventPump() = default;

  /// Handles the pending events, then waits for and handles further ones until about `seconds` have passed.
  /// May return earlier; Delay calls again.
  virtual void Pump(double seconds, PumpMode mode) = 0;
};

/// For programs without windows: there are no events, the thread just sleeps.
class SleepingPump : public EventPump {
 public:
  void Pump(double seconds, PumpMode mode) override;
};

}  // namespace krx
