// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <cstddef>

#include "board/ui/switchlamp.h"

namespace krx {

/// A small drawing of one switch: the pin it sits at, its contact open or closed (grey and open while that is not
/// read), and the circuit behind it.
class SwitchSymbol : public QWidget {
 public:
  /// index: number of the switch in the switch map.
  explicit SwitchSymbol(std::size_t index);

  void SetState(LampState state);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString pin_;
  QString circuit_;
  LampState state_ = LampState::NotRead;
};

}  // namespace krx
