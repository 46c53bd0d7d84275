// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/linknewcomport06.h"

namespace krx {

/// Starts monitoring (bit 0 of 0x40, other bits preserved) and writes default limits: temperatures 10..80 °C, Tmin 40
/// °C, operating points 60 °C. Throws at the first failed transfer; earlier writes remain in effect.
void WriteEasySetup(Link& link);

}  // namespace krx
