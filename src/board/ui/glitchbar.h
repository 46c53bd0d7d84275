// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTimer>
#include <QToolBar>

#include "board/fantests.h"
#include "controls/ui/chiptimer.h"

class QLabel;

namespace krx {

class UserDialogs;

/// The running glitch test: step, duty, remaining time and a Stop. Hidden while none runs.
class GlitchBar : public QToolBar {
  Q_OBJECT
 public:
  static constexpr int intervalMilliseconds = static_cast<int>(GlitchTest::intervalSeconds * 1000);

  GlitchBar(GlitchTest& test, ChipTurns& turns, UserDialogs& dialogs, int interval = intervalMilliseconds);

  /// The button "glitch test". While the test runs it restarts the ramp, not the timer's interval.
  void Start();
  void Stop();

 signals:
  /// For the status bar.
  void Notice(const QString& text);

 private:
  void Tick();
  void ShowTest();

  GlitchTest& test_;
  UserDialogs& dialogs_;
  ChipTimer tmrGlitch_;
  QTimer refresh_;
  QLabel* state_;
};

}  // namespace krx
