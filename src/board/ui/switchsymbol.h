// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <cstddef>

namespace krx {

/// A small drawing of one switch: the pin it sits at, its contact open or closed, and the circuit behind it.
class SwitchSymbol : public QWidget {
 public:
  /// index: number of the switch in the switch map.
  explicit SwitchSymbol(std::size_t index);

  void SetClosed(bool closed);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString pin_;
  QString circuit_;
  bool closed_ = false;
};

}  // namespace krx
