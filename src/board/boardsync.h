// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>

#include "board/board.h"

namespace krx {

// Synchronise the board's routing with the chip's pin functions. The registers are read on either medium; the switches
// are written only if there is a board. All throw what the link throws.

/// VID-drive probe: reads bit 3 of 0x43 with switch U3D open and closed, sets VidProbeSteady when both agree. U3D
/// stays closed.
void ProbeVidDrive(Board& board);

/// Tach4/processor-hot pin, from bit 1 of 0x78 and bit 1 of 0x7D (read only when the former is set). Returns the THERM
/// pin mode: 0 off, 1 on the 5V pin, 2 on the Tach4 pin.
std::int16_t SyncTach4Switches(Board& board);

struct AlertModes {
  std::int16_t AlertPwm2Mode;  ///< 2 when the alert output is on the PWM2 pin, otherwise 1
  std::optional<std::int16_t>
      Alert25vMode;  ///< 2 on the 2.5V pin, otherwise 1; evaluated only when the VID probe was steady
};

/// PWM2/alert pin from bit 0 of 0x78, then, only if the VID probe was steady, the 2.5V pin from bit 0 of 0x7D.
AlertModes SyncAlertSwitches(Board& board);

/// Routes tach input t (0..3) for a two-wire or a three-wire fan by read-modify-write of its device.
void RouteTach(Board& board, int tach, bool twoWire);

/// Reads 0x73 once and routes the four tach inputs from its bits 0..3, writing the device after each.
void RouteTachsFromChip(Board& board);

}  // namespace krx
