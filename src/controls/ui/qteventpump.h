// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "controls/waitbudget.h"
#include "link/eventpump.h"

namespace krx {

/// Keeps the windows alive while Delay waits; the only place of the program that processes events by hand. Made after
/// the QApplication, on its thread.
class QtEventPump : public QObject, public EventPump, public WaitBudget {
  Q_OBJECT

 public:
  QtEventPump();
  ~QtEventPump() override;

  /// Handles events until `seconds` are over, sleeping between them. PumpMode::HoldUserInput leaves clicks and keys
  /// queued; they are delivered by the next pump or main loop that takes everything. So does what a held button, groove
  /// or spin arrow goes on doing by the toolkit's timers: a repeat is user input too.
  void Pump(double seconds, PumpMode mode) override;

  double SecondsLeft() const override;
  void CallAfterwards(const void* owner, std::function<void()> work) override;
  void Forget(const void* owner) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void RunPutOff();
  void DeliverRepeats();

  class Descriptor;
  std::unique_ptr<Descriptor> timer_;
  std::unique_ptr<QSocketNotifier> notifier_;
  double holdEnd_;  ///< on the monotonic clock; infinite while no transfer waits
  std::map<const void*, std::function<void()>> putOff_;
  std::vector<std::pair<QPointer<QObject>, int>> repeats_;  ///< held back: the control and its timer, each once
};

}  // namespace krx
