// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>

#include "control/controlmodel.h"

namespace krx {
namespace {

using State = SectionWords::State;

const SectionWords noBoard{State::Off, "no board", ""};

}  // namespace

SectionWords ThermWords(const ControlState& state) {
  if (!state.PinsRead) return {};
  if (state.ThermOn5v) return {State::On, "on the 5V pin", "5V is not measured while its pin is the THERM input"};
  if (state.ThermOnTach4)
    return {State::On, "on the Tach4 pin", "Fan 4 is not measured while its pin is the THERM input"};
  return {State::Off, "off", "The 5V and Tach4 pins measure as usual"};
}

SectionWords AlertWords(const ControlState& state) {
  if (!state.PinsRead) return {};
  if (state.AlertOnPwm2 && state.AlertOn25v)
    return {State::On, "on both pins", "PWM2 drives no fan and 2.5V is not measured"};
  if (state.AlertOnPwm2) return {State::On, "on the PWM2 pin", "PWM2 drives no fan while its pin is the alert output"};
  if (state.AlertOn25v) return {State::On, "on the 2.5V pin", "2.5V is not measured while its pin is the alert output"};
  const char* const none = "No pin carries the alert output";
  return {State::Off, "off", state.VidShown ? "VID inputs follow the board: ALERT on 2.5V pin is not available" : none};
}

SectionWords SensorWords(const ControlState& state) {
  if (!state.HasBoard) return noBoard;
  const auto count = [&](SwitchState wanted) { return std::ranges::count(state.DiodeSwitches, wanted); };
  if (count(SwitchState::NotRead) != 0) return {};
  if (count(SwitchState::Mixed) != 0) return {State::Unclear, "partly connected", ""};
  const auto closed = count(SwitchState::Closed);
  if (closed == 0) return {State::Off, "none connected", ""};
  return {State::On, closed == 1 ? "one connected" : "both connected", ""};
}

SectionWords HeaterWords(const ControlState& state) {
  if (!state.HasBoard) return noBoard;
  if (!state.HeatersRead[0] || !state.HeatersRead[1]) return {};
  const auto on = std::ranges::count(state.Heaters, true);
  if (on == 0) return {State::Off, "both off", ""};
  return {State::On, on == 1 ? "one on" : "both on", ""};
}

std::string DiodeWords(const ControlState& state, std::size_t diode) {
  const std::string names = diode == 0 ? "U4A, U4B, U4C " : "U4D, U4E, U4F ";
  if (!state.HasBoard) return "no board";
  switch (state.DiodeSwitches.at(diode)) {
    case SwitchState::Open:
      return names + "open";
    case SwitchState::Closed:
      return names + "closed";
    case SwitchState::Mixed:
      return names + "differ";
    case SwitchState::NotRead:
      break;
  }
  return names + "not read";
}

std::string SwitchesWords(const ControlState& state) {
  if (!state.HasBoard) return "no board";
  return (state.ClosedSwitches ? std::to_string(*state.ClosedSwitches) : "–") + " of 32 switches closed";
}

}  // namespace krx
