// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <string>

#include "journal/busjournal.h"

class QKeyEvent;

namespace krx {

/// The glitch test's run: its start and all its steps are one action of the user.
inline constexpr const char* glitchTestOrigin = "Glitch test";

/// What a person would call the control: page or window, and what stands on it: "Read/Write: hex box",
/// "Control: EnableTHERM". Nothing for what is no control.
std::string ControlName(const QObject& control);

/// Tells the journal what the user presses: what it sends to the bus until the next press is its doing.
class OriginFilter : public QObject {
 public:
  /// Installs itself on the application for as long as it lives.
  explicit OriginFilter(BusJournal& journal);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Begin(const QObject& control);
  bool Repeats(const QKeyEvent& press) const;

  BusJournal& journal_;
  std::uint64_t gesture_ = 0;
  QTimer end_;  ///< of the gesture
  int releasedKey_ = 0;
  quint64 releasedAt_ = 0;
};

/// Runs a chip timer's tick under its name in the journal.
void RunTick(BusJournal& journal, const std::string& timer, const std::function<void()>& tick);

}  // namespace krx
