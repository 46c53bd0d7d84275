// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace krx {

/// The pin functions as derived from the chip; not stored anywhere else.
class PinFunctions {
 public:
  virtual ~PinFunctions() = default;

  std::int16_t ThermPinMode = 0;   ///< 0 THERM off, 1 on the 5V pin, 2 on the Tach4 pin
  std::int16_t AlertPwm2Mode = 1;  ///< 2 alert output on the PWM2 pin, else 1
  std::int16_t Alert25vMode = 1;   ///< 2 alert output on the 2.5V pin, else 1; updated only while VidProbeSteady

  /// Reads 0x78 and, with THERM enabled, 0x7D; routes the board's THERM switches and sets ThermPinMode. On a failed
  /// transfer the mode is unchanged.
  virtual void ThermRefresh() = 0;

  /// Reads 0x78 and, while VidProbeSteady, 0x7D; routes the board's alert switches and sets AlertPwm2Mode and
  /// Alert25vMode. On a failed transfer both are unchanged.
  virtual void AlertRefresh() = 0;
};

}  // namespace krx
