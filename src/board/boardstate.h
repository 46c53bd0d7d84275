// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

namespace krx {

struct BoardState {
  std::array<bool, 2> HeaterEnabled{};  ///< as last set from the main window's check boxes
  bool VidProbeSteady = false;          ///< bit 3 of 0x43 did not follow switch U3D
  bool VidProbed = true;                ///< false after a probe in a read-only run, which cannot set the switch
};

}  // namespace krx
