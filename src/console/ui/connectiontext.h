// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include "link/linknewcomport06.h"

namespace krx {

/// "Simulated board · printer port 2Dh", "SMBus I801 adapter at 0700, i2c-1 · 2Dh": the medium, its bus where the
/// medium does not name it, and the chip's 7-bit address.
QString ConnectionText(const QString& medium, const Link& link);

}  // namespace krx
