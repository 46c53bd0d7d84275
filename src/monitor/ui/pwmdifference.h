// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace krx {

struct PwmBehaviour;

/// Says that the output is no longer driven as it was when the chip was found, and offers to read the chip again.
/// Hidden while there is no difference.
class PwmDifference : public QWidget {
  Q_OBJECT
 public:
  explicit PwmDifference(QWidget* parent = nullptr);

  void Show(const PwmBehaviour& behaviour);

 signals:
  void ReReadRequested();

 private:
  QLabel* text_;
  QPushButton* remedy_;
};

}  // namespace krx
