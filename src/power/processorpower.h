// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "power/powersettings.h"

namespace krx {

/// Processor current in A from the voltage on the sense (2.5V) input and the core voltage Vccp, using the equation
/// selected by PowerEquation. May be negative.
float ProcessorCurrent(float senseVolts, float coreVolts, const PowerSettings& settings);

/// Processor power in W: the current times the core voltage.
float ProcessorPower(float senseVolts, float coreVolts, const PowerSettings& settings);

/// The inverse of ProcessorCurrent: the sense voltage at which the processor draws `amperes`.
float SenseVoltsFor(float amperes, float coreVolts, const PowerSettings& settings);

}  // namespace krx
