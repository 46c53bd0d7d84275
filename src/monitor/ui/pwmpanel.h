// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include "monitor/visualmodel.h"

class QLabel;

namespace krx {

class DutySlider;

/// The duty of the selected output: `pnlPWM` shows it, `pnlSlider` sets it while the output is driven by hand.
class PwmPanel : public QWidget {
  Q_OBJECT
 public:
  explicit PwmPanel(QWidget* parent = nullptr);

  void Show(const VisualState& state, bool old);
  /// Ends a drag of the slider whose release will not come.
  void LetGo();

 signals:
  void SliderPressed();
  void SliderMoving(int value);
  void SliderReleased();
  void SliderReleasedAfterMove(int value);

 private:
  QWidget* panel_;
  QLabel* panelCaption_;
  QLabel* panelBehaviour_;
  QLabel* panelText_;
  QWidget* sliderPanel_;
  QLabel* sliderCaption_;
  QLabel* sliderBehaviour_;
  QLabel* dutyText_;
  DutySlider* slider_;
};

}  // namespace krx
