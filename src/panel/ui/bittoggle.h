// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPushButton>

namespace krx {

/// One bit: filled for 1, outlined for 0, always with its digit. It shows what it is told; a press only asks.
class BitToggle : public QPushButton {
  Q_OBJECT
 public:
  explicit BitToggle(int bit);

  void SetBit(bool set);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 signals:
  /// An arrow key: the neighbour at the left (-1) or right (1).
  void NeighbourRequested(int direction);

 protected:
  void nextCheckState() override {}
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace krx
