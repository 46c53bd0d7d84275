// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <array>

class QLabel;

namespace krx {

struct VisualState;

/// Tmin and operating point of each zone, as the chip moves them by itself.
class ZoneRow : public QWidget {
  Q_OBJECT
 public:
  explicit ZoneRow(QWidget* parent = nullptr);

  /// old: nothing is being read.
  void ShowReading(const VisualState& state, bool old);

 private:
  std::array<QLabel*, 3> tminLabels_{};
  std::array<QLabel*, 3> opPointLabels_{};
};

}  // namespace krx
