// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

#include "link/registerimage.h"

namespace krx {

/// The fault bit of a channel's remote diode as last seen on the bus; false for a channel without one.
bool DiodeFault(std::size_t channel, const RegisterImage& seen);

/// True for a reading of a remote channel that is not a temperature: its diode fault bit is set, or the reading is the
/// -128 °C of an open diode. Both are checked, since the status may be older or may have been cleared by a read.
bool IsDiodeCode(std::size_t channel, double celsius, const RegisterImage& seen);

}  // namespace krx
