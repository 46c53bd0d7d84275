// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace krx {

/// Keeps expensive work that is not urgent (redrawing a chart) out of the short waits before a transfer.
class WaitBudget {
 public:
  virtual ~WaitBudget() = default;

  /// Seconds until the wait of the running transfer ends; infinite while no transfer is waiting.
  virtual double SecondsLeft() const = 0;

  /// Calls `work` once, from the event loop, as soon as no transfer is waiting. A second call for the same owner
  /// replaces the work of the first.
  virtual void CallAfterwards(const void* owner, std::function<void()> work) = 0;

  /// Drops the owner's pending work; must be called before the owner is destroyed.
  virtual void Forget(const void* owner) = 0;
};

}  // namespace krx
