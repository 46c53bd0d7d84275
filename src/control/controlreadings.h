// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>

#include "control/controlmodel.h"
#include "monitor/livingvalue.h"

namespace krx {

/// The live values of the "Control " tab, each shown next to its control.
struct ControlReadings {
  struct Zone {
    LivingValue Now, Tmin, OperatingPoint;
  };
  struct Output {
    std::string Behaviour;
    LivingValue Duty, Speed;
  };
  struct Heater {
    bool On = false;
    std::string Words;  ///< "on for 00:41", "on" if it was not switched on by this run, "off", "not read"
    LivingValue Now;    ///< temperature of the heated zone
    std::string Trend;  ///< "Remote 1 · +0.5 C/s"
  };
  std::array<Zone, 3> Zones;
  std::array<Output, 3> Outputs;
  std::array<Heater, 2> Heaters;
  LivingValue Power, Current, Vccp;
  std::string Therm;      ///< "THERM=0%" or "THERM is off"
  std::string ThermRead;  ///< time since the last reading
  std::string Vid;        ///< last reading of the chip's VID inputs
  bool Old = false;       ///< the cycle is stopped or monitoring is off
};

/// old: the cycle is stopped. Makes no transfer.
ControlReadings ReadControl(const ControlParts& parts, const ControlState& state, bool old);

/// "00:41", "1:02:03"
std::string RunningText(double seconds);

}  // namespace krx
