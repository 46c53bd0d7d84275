// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

#include "control/controlreadings.h"
#include "controls/ui/card.h"

namespace krx {

class ReadingLabel;

/// "Power and Operating Point": what the processor takes, where the chip measures it.
class PowerCard : public Card {
  Q_OBJECT
 public:
  PowerCard();
  void ShowReadings(const ControlReadings& readings, const PowerSettings& power);
  /// Without the three figures.
  void SetCompact(bool compact);

 private:
  QLabel* equation_;
  QWidget* figures_;
  std::array<ReadingLabel*, 3> values_{};
};

}  // namespace krx
