// SPDX-License-Identifier: GPL-3.0-or-later
#include "power/processorpower.h"

namespace krx {

float ProcessorCurrent(float senseVolts, float coreVolts, const PowerSettings& settings) {
  if (settings.PowerEquation) return (senseVolts - coreVolts + settings.SenseRoutOffset) / settings.SenseRout;
  return (senseVolts - settings.SenseOffset) / settings.SenseScale;
}

float ProcessorPower(float senseVolts, float coreVolts, const PowerSettings& settings) {
  return ProcessorCurrent(senseVolts, coreVolts, settings) * coreVolts;
}

float SenseVoltsFor(float amperes, float coreVolts, const PowerSettings& settings) {
  if (settings.PowerEquation) return settings.SenseRout * amperes - settings.SenseRoutOffset + coreVolts;
  return settings.SenseScale * amperes + settings.SenseOffset;
}

}  // namespace krx
