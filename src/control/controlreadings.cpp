// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/controlreadings.h"

#include <fmt/format.h>

#include <algorithm>

#include "board/board.h"
#include "control/pinsettings.h"
#include "monitor/channels.h"
#include "monitor/displaystate.h"
#include "monitor/firstvalues.h"
#include "monitor/pwmbehaviour.h"
#include "monitor/readingcycle.h"
#include "monitor/recenttrend.h"
#include "registers/chip.h"
#include "registers/numerics.h"

namespace krx {
namespace {

constexpr std::size_t firstFanChannel = 3;

std::string HeaterState(const ControlParts& parts, const ControlState& state, std::size_t heater) {
  if (!state.HasBoard) return "no board";
  if (!state.HeatersRead.at(heater)) return "not read";
  if (!state.Heaters.at(heater)) return "off";
  const auto since = parts.EvalBoard.GetHeater(heater).OnSince();
  return since ? "on for " + RunningText(parts.ChipLink.ElapsedSeconds() - *since) : "on";
}

/// Whole seconds since the cycle last read the THERM timer; shown coarsely, since it is read more often than that.
std::string ThermReadWords(const ControlParts& parts) {
  const double read = parts.Living.Cycle.ThermReadStart;
  if (read == 0) return "not read yet";
  const double seconds = parts.ChipLink.ElapsedSeconds() - read;
  return seconds < 2 ? "read just now" : fmt::format("last read {:.0f} s ago", Floor(seconds));
}

std::string VidWords(const RegisterImage& seen) {
  const auto byte = seen.Byte(chip::Vid);
  return byte ? fmt::format("U3A to U3E · register 43h read {:02X}h", *byte) : "U3A to U3E · register 43h not read";
}

}  // namespace

std::string RunningText(double seconds) {
  const auto whole = static_cast<int>(std::max(seconds, 0.0));
  if (whole < 3600) return fmt::format("{:02}:{:02}", whole / 60, whole % 60);
  return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

ControlReadings ReadControl(const ControlParts& parts, const ControlState& state, bool old) {
  const LivingParts& living = parts.Living;
  ControlReadings readings;
  readings.Old = old || living.First.Monitoring() == false;
  for (std::size_t zone = 0; zone < readings.Zones.size(); ++zone) {
    readings.Zones[zone] = {ChannelNow(living, zone, old), TminNow(living, zone, old),
                            OperatingPointNow(living, zone, old)};
  }
  for (std::size_t output = 0; output < readings.Outputs.size(); ++output) {
    readings.Outputs[output] = {PwmBehaviourOf(living.ChipLink.Seen, output, living.Display.PwmManual[output]).Word,
                                DutyNow(living, output, old), ChannelNow(living, firstFanChannel + output, old)};
  }
  for (std::size_t heater = 0; heater < readings.Heaters.size(); ++heater) {
    const std::size_t zone = heater + 1;
    const LivingValue& now = readings.Zones[zone].Now;
    const auto slope = RecentSlope(living.History, channels[zone].Trace, living.Cycle.Now());
    readings.Heaters[heater] = {
        state.Heaters[heater], HeaterState(parts, state, heater), now,
        fmt::format("{} · {}", channels[zone].Caption, now.Old ? "out of date" : SlopeWords(slope))};
  }
  readings.Power = PowerNow(living, old);
  readings.Current = CurrentNow(living, old);
  readings.Vccp = ChannelNow(living, vccpChannel, old);
  readings.Therm = !state.PinsRead                    ? "THERM not read"
                   : parts.Pins.ThermPinMode == 0     ? "THERM is off"
                   : living.Cycle.ThermReadStart == 0 ? "THERM=–"
                                                      : ThermText(living.Measured.ThermPercent);
  readings.ThermRead = ThermReadWords(parts);
  readings.Vid = VidWords(living.ChipLink.Seen);
  return readings;
}

}  // namespace krx
