// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/pinsettings.h"

#include "board/boardsync.h"

namespace krx {

void PinSettings::ThermRefresh() {
  ThermPinMode = SyncTach4Switches(board_);
}

void PinSettings::AlertRefresh() {
  const AlertModes modes = SyncAlertSwitches(board_);
  AlertPwm2Mode = modes.AlertPwm2Mode;
  Alert25vMode = modes.Alert25vMode.value_or(Alert25vMode);
}

}  // namespace krx
