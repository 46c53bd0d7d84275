// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include "controls/ui/chiptimer.h"
#include "fans/minimumpwm.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace krx {

/// The progress window of a minimum-PWM detection. It is modal and keeps every other window and chip timer still for
/// as long as the detection runs; the one thing alive is its Cancel.
class FrmAutoDetect : public QDialog, public DetectionMonitor {
  Q_OBJECT

 public:
  /// fanSecondsPerSecond: how much faster than the clock the fans live; 1 on hardware.
  FrmAutoDetect(Link& link, OwedWrites& owed, const FanCommon& fans, ChipTurns& turns, double fanSecondsPerSecond,
                QWidget* parent);

  /// Shows the window, runs the detection from start to end and closes it. Throws what the detection throws.
  DetectionResult Run(std::size_t index);

 protected:
  /// The close box and the Escape key.
  void reject() override;

 private:
  void Show(const DetectionProgress& progress) override;
  double Seconds() override;
  bool Wait(double seconds) override;

  Link& link_;
  OwedWrites& owed_;
  const FanCommon& fans_;
  ChipTurns& turns_;
  double fanSecondsPerSecond_;
  bool running_ = false;
  bool cancelled_ = false;
  QLabel* checking_;
  QLabel* speed_;
  QLabel* remaining_;
  QProgressBar* values_;
  QProgressBar* readings_;
};

}  // namespace krx
