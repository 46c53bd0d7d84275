// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>

#include "controls/ui/card.h"
#include "controls/ui/chiptimer.h"
#include "panel/readingrate.h"

class QPushButton;

namespace krx {

/// The switch of continuous reading, and how fast it goes.
class ContinuousCard : public Card {
  Q_OBJECT
 public:
  /// read: one reading of the selected register, shown.
  ContinuousCard(ChipTurns& turns, std::function<void()> read);

  void SetOn(bool on);

 private:
  double Seconds() const;
  void ShowRate();

  QElapsedTimer time_;
  ReadingRate rate_;
  ChipTimer continuousTimer_;
  QTimer rateTimer_;
  QPushButton* switch_;
  QLabel* label_;
  QLabel* rateLabel_;
};

}  // namespace krx
