// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>

#include "link/registerimage.h"

namespace krx {

/// How an output is driven, by its configuration byte last seen on the bus.
struct PwmBehaviour {
  std::string Word;        ///< "manual", "Remote1 Control", ...; "not read" when the byte is not known
  std::string Difference;  ///< why the panel shown is not the right one any more; empty while it is
  std::string Remedy;      ///< caption of the button that reads the chip again; empty with Difference
};

/// output: 0..2. manual: whether the panel takes the output for manually driven, which is read when the chip is found
/// and stays, whatever is written later.
PwmBehaviour PwmBehaviourOf(const RegisterImage& seen, std::size_t output, bool manual);

}  // namespace krx
