// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

#include "link/registerimage.h"

namespace krx {

/// The fault bit of a channel's remote diode as last seen on the bus; false for a channel without one.
bool DiodeFault(std::size_t channel, const RegisterImage& seen);

/// A remote channel's reading that is no temperature: its diode is named faulty, or the reading is the -128 °C that
/// the chip gives for an open diode. The status may have been read before, or have been cleared by a read since.
bool IsDiodeCode(std::size_t channel, double celsius, const RegisterImage& seen);

}  // namespace krx
