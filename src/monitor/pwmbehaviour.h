// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>

#include "link/registerimage.h"

namespace krx {

/// How an output is driven, from its configuration byte last seen on the bus.
struct PwmBehaviour {
  std::string Word;        ///< "manual", "Remote1 Control", ...; "not read" if the byte is unknown
  std::string Difference;  ///< why the shown panel no longer applies; empty while it does
  std::string Remedy;      ///< caption of the button that reads the chip again; empty if Difference is
};

/// output: 0..2. manual: whether the panel treats the output as manually driven, as read when the chip was found; later
/// writes do not change it.
PwmBehaviour PwmBehaviourOf(const RegisterImage& seen, std::size_t output, bool manual);

}  // namespace krx
