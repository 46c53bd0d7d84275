// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/controlmodel.h"

#include <algorithm>

#include "board/board.h"
#include "board/boardstate.h"
#include "board/switches.h"
#include "board/switchmap.h"
#include "control/pinsettings.h"
#include "link/registeraccess.h"
#include "registers/chip.h"
#include "registers/numerics.h"

namespace krx {
namespace {

std::uint8_t Bits(bool set) {
  return set ? 0xFF : 0x00;
}

SwitchState DiodeSwitches(const Board& board, std::size_t diode) {
  const std::string group = "Temp" + std::to_string(diode + 1);
  std::optional<bool> closed;
  for (std::size_t index = 0; index < switchMap.size(); ++index) {
    if (switchMap.at(index).Group != group) continue;
    if (!board.SwitchKnown(index)) return SwitchState::NotRead;
    const bool one = board.SwitchClosed(index);
    if (closed.value_or(one) != one) return SwitchState::Mixed;
    closed = one;
  }
  return closed == true ? SwitchState::Closed : SwitchState::Open;
}

std::optional<int> ClosedSwitches(const Board& board) {
  int closed = 0;
  for (std::size_t index = 0; index < switchMap.size(); ++index) {
    if (!board.SwitchKnown(index)) return std::nullopt;
    if (board.SwitchClosed(index)) ++closed;
  }
  return closed;
}

}  // namespace

ControlModel::ControlModel(const ControlParts& parts) : parts_(parts) {}

void ControlModel::Enter() {
  state_.HasBoard = HasBoard(parts_.ChipLink);
  state_.ThermPeriod = ShortestText(parts_.ThermPeriod);
  state_.Alert25vOffered = parts_.BoardFlags.VidProbeSteady;
  state_.VidShown = parts_.BoardFlags.VidProbed && !parts_.BoardFlags.VidProbeSteady;
  state_.VidProbed = parts_.BoardFlags.VidProbed;
  state_.HeatersRead = {};
  RefreshTherm();
  RefreshAlert();
  // The Temp switches are closed at power-up and are not read elsewhere: without this, a click on one diode would open
  // the switches of the other.
  parts_.EvalBoard.Device(SwitchDevice::U4).ReadSwitch();
  ShowSwitches();
  for (std::size_t heater = 0; heater < state_.Heaters.size(); ++heater) {
    state_.Heaters.at(heater) = parts_.EvalBoard.GetHeater(heater).HeaterOn();
    state_.HeatersRead.at(heater) = true;
  }
}

void ControlModel::RefreshTherm() {
  parts_.Pins.ThermRefresh();
  ShowPins();
}

void ControlModel::RefreshAlert() {
  parts_.Pins.AlertRefresh();
  ShowPins();
}

void ControlModel::ShowPins() {
  const auto seen = parts_.ChipLink.Seen.Byte(chip::Configuration3);
  const bool therm = seen && (*seen & chip::ThermEnabled) != 0;
  state_.PinsRead = seen && (!therm || parts_.ChipLink.Seen.Byte(chip::Configuration4));
  state_.Therm = parts_.Pins.ThermPinMode != 0;
  state_.ThermOn5v = parts_.Pins.ThermPinMode == 1;
  state_.ThermOnTach4 = parts_.Pins.ThermPinMode == 2;
  state_.AlertOnPwm2 = parts_.Pins.AlertPwm2Mode == 2;
  if (!parts_.BoardFlags.VidProbeSteady) return;
  state_.AlertOn25v = parts_.Pins.Alert25vMode == 2;
  state_.NoAlertOn25v = !state_.AlertOn25v;
}

void ControlModel::SetTherm(bool enabled) {
  UpdateBits(parts_.ChipLink, chip::Configuration3, chip::ThermEnabled, Bits(enabled));
  RefreshTherm();
}

void ControlModel::SetThermPin(bool on5v) {
  UpdateBits(parts_.ChipLink, chip::Configuration4, chip::ThermOn5V, Bits(on5v));
  RefreshTherm();
}

void ControlModel::SetAlertOnPwm2(bool on) {
  UpdateBits(parts_.ChipLink, chip::Configuration3, chip::AlertOnPwm2, Bits(on));
  RefreshAlert();
}

void ControlModel::SetAlertOn25v(bool on) {
  UpdateBits(parts_.ChipLink, chip::Configuration4, chip::AlertOn25V, Bits(on));
  RefreshAlert();
}

void ControlModel::SetDiode(std::size_t diode, bool closed) {
  parts_.EvalBoard.SetDiode(diode, closed);
  ShowSwitches();
}

void ControlModel::SetVid(std::size_t input, bool closed) {
  parts_.EvalBoard.SetVid(static_cast<int>(input), closed);
  ShowSwitches();
}

void ControlModel::SetHeater(std::size_t heater, bool on) {
  // A transfer that fails may have switched it or not.
  state_.HeatersRead.at(heater) = false;
  parts_.EvalBoard.SetHeater(heater, on);
  state_.Heaters.at(heater) = on;
  state_.HeatersRead.at(heater) = true;
}

void ControlModel::SetThermPeriod(const std::string& text) {
  parts_.ThermPeriod = std::max(0.0, Val(text));
}

void ControlModel::ShowSwitches() {
  for (std::size_t diode = 0; diode < state_.Diodes.size(); ++diode) {
    state_.Diodes.at(diode) = parts_.EvalBoard.DiodeClosed(diode);
    state_.DiodeSwitches.at(diode) = DiodeSwitches(parts_.EvalBoard, diode);
  }
  state_.ClosedSwitches = ClosedSwitches(parts_.EvalBoard);
  const Switch& u3 = parts_.EvalBoard.Device(SwitchDevice::U3);
  for (std::size_t input = 0; input < state_.Vid.size(); ++input) {
    state_.Vid.at(input) = u3.Closed(static_cast<int>(input));
  }
}

}  // namespace krx
