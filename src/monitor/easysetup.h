// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/linknewcomport06.h"

namespace krx {

/// Starts monitoring (bit 0 of 0x40, neighbours kept) and writes usual limits: temperatures 10..80 °C, Tmin 40 °C,
/// operating points 60 °C. Throws at the first transfer that fails; what was written before it stays.
void WriteEasySetup(Link& link);

}  // namespace krx
