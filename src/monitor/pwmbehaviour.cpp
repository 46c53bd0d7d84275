// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/pwmbehaviour.h"

#include "fans/fantables.h"
#include "registers/chip.h"

namespace krx {

PwmBehaviour PwmBehaviourOf(const RegisterImage& seen, std::size_t output, bool manual) {
  const auto byte = seen.Byte(chip::Outputs.at(output).Configuration);
  if (!byte) return {"not read", "", ""};
  const std::size_t code = *byte >> chip::BehaviourShift;
  const std::string item(behaviourItems[code]);
  PwmBehaviour behaviour{code == manualBehaviour ? "manual" : item, "", ""};
  if ((code == manualBehaviour) == manual) return behaviour;
  behaviour.Difference = "PWM" + std::to_string(output + 1) + " is now set to " + item;
  if (manual) behaviour.Difference += ": the slider has no effect";
  behaviour.Remedy = manual ? "Hide slider" : "Use slider";
  return behaviour;
}

}  // namespace krx
