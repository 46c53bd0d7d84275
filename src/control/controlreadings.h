// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>

#include "control/controlmodel.h"
#include "monitor/livingvalue.h"

namespace krx {

/// The living values of the "Control " tab, each beside the control that it belongs to.
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
    std::string Words;  ///< "on for 00:41", "on" when this run did not switch it on, "off", "not read"
    LivingValue Now;    ///< of the zone that it warms
    std::string Trend;  ///< "Remote 1 · +0.5 C/s"
  };
  std::array<Zone, 3> Zones;
  std::array<Output, 3> Outputs;
  std::array<Heater, 2> Heaters;
  LivingValue Power, Current, Vccp;
  std::string Therm;      ///< "THERM=0%" or "THERM is off"
  std::string ThermRead;  ///< how long ago the cycle read it
  std::string Vid;        ///< what the chip last read at its VID inputs
  bool Old = false;       ///< the cycle does not run, or the chip does not monitor
};

/// old: the cycle does not run. Without any transfer.
ControlReadings ReadControl(const ControlParts& parts, const ControlState& state, bool old);

/// "00:41", "1:02:03"
std::string RunningText(double seconds);

}  // namespace krx
