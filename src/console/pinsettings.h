// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>

#include "board/boardstate.h"
#include "link/linknewcomport06.h"

namespace krx {

/// The pin functions as derived from the chip; never stored anywhere else.
class PinSettings {
 public:
  PinSettings(Link& link, const BoardState& board) : link_(link), board_(board) {}

  std::int16_t ThermPinMode = 0;   ///< 0 THERM off, 1 on the 5V pin, 2 on the Tach4 pin
  std::int16_t AlertPwm2Mode = 1;  ///< 2 alert output on the PWM2 pin, else 1
  std::int16_t Alert25vMode = 1;   ///< 2 alert output on the 2.5V pin, else 1; followed only while VidProbeSteady

  /// Where a board with routing switches brings them in line: called at the end of each refresh, with the new modes
  /// in place. Empty where there is no board.
  std::function<void()> RouteTherm;
  std::function<void()> RouteAlert;

  /// Reads 0x78 and, with THERM enabled, 0x7D; sets ThermPinMode. A failing transfer changes nothing.
  void ThermRefresh();

  /// Reads 0x78 and, while VidProbeSteady, 0x7D; sets AlertPwm2Mode and Alert25vMode. A failing transfer changes
  /// nothing.
  void AlertRefresh();

 private:
  Link& link_;
  const BoardState& board_;
};

}  // namespace krx
