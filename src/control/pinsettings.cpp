// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/pinsettings.h"

#include <utility>

#include "board/boardsync.h"

namespace krx {

void PinSettings::ThermRefresh() {
  const std::int16_t mode = SyncTach4Switches(board_);
  if (std::exchange(ThermPinMode, mode) != mode && Changed) Changed();
}

void PinSettings::AlertRefresh() {
  const AlertModes modes = SyncAlertSwitches(board_);
  const std::int16_t on25v = modes.Alert25vMode.value_or(Alert25vMode);
  const bool onPwm2Changed = std::exchange(AlertPwm2Mode, modes.AlertPwm2Mode) != modes.AlertPwm2Mode;
  const bool on25vChanged = std::exchange(Alert25vMode, on25v) != on25v;
  if ((onPwm2Changed || on25vChanged) && Changed) Changed();
}

}  // namespace krx
