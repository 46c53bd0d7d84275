// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace krx {

/// How the processor current is derived from the 2.5V input.
struct PowerSettings {
  bool PowerMode = false;         ///< bit 4 ("V*I") of 0x40, as found at start-up
  bool PowerEquation = true;      ///< true: Rout equation, false: Scale/Offset equation
  float SenseRout = 0.003F;       ///< Ω
  float SenseRoutOffset = -0.9F;  ///< V
  float SenseScale = 0.0125F;     ///< V per A
  float SenseOffset = 1.0F;       ///< V at zero current

  /// True if value and limits of the 2.5V channel also depend on Vccp.
  bool NeedsVccp() const { return PowerMode && PowerEquation; }
  bool operator==(const PowerSettings&) const = default;
};

}  // namespace krx
