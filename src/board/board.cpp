// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/board.h"

#include <exception>

#include "link/commserror.h"

namespace krx {
namespace {

// The order in which the access dialog reads and writes the devices.
constexpr std::array<SwitchDevice, 4> dialogOrder{SwitchDevice::U3, SwitchDevice::U4, SwitchDevice::U5,
                                                  SwitchDevice::U6};

constexpr int bitsPerDiode = 3;

}  // namespace

Board::Board(Link& link, BoardState& state, OwedWrites& owed)
    : link_(link),
      state_(state),
      switches_{
          Switch(link, SwitchDeviceAddress(SwitchDevice::U5)), Switch(link, SwitchDeviceAddress(SwitchDevice::U6)),
          Switch(link, SwitchDeviceAddress(SwitchDevice::U4)), Switch(link, SwitchDeviceAddress(SwitchDevice::U3))},
      heaters_{Heater(link, owed, 1), Heater(link, owed, 2)} {}

void Board::SwitchHeatersOff() {
  std::exception_ptr failure;
  for (Heater& heater : heaters_) {
    link_.ThrowIfGivenUp();
    try {
      heater.SetHeaterOn(false);
    } catch (const CommsError&) {
      if (!failure) failure = std::current_exception();
    }
  }
  if (failure) std::rethrow_exception(failure);
}

void Board::SetHeater(std::size_t heater, bool on) {
  state_.HeaterEnabled.at(heater) = on;
  heaters_.at(heater).SetHeaterOn(on);
}

void Board::SetDiode(std::size_t diode, bool closed) {
  const ReportScope report(*this);
  Switch& device = Device(SwitchDevice::U4);
  for (int bit = 0; bit < bitsPerDiode; ++bit) device.SetStatus(static_cast<int>(diode) * bitsPerDiode + bit, closed);
  device.WriteSwitch();
}

bool Board::DiodeClosed(std::size_t diode) const {
  const Switch& device = Device(SwitchDevice::U4);
  bool closed = true;
  for (int bit = 0; bit < bitsPerDiode; ++bit) {
    closed = closed && device.Closed(static_cast<int>(diode) * bitsPerDiode + bit);
  }
  return closed;
}

void Board::SetVid(int input, bool closed) {
  const ReportScope report(*this);
  Switch& device = Device(SwitchDevice::U3);
  device.SetStatus(input, closed);
  device.WriteSwitch();
}

void Board::ToggleSwitch(std::size_t index) {
  const BoardSwitch& chosen = switchMap.at(index);
  Switch& device = Device(chosen.Device);
  device.SetStatus(chosen.Bit, !device.Status(chosen.Bit));
  ReportSwitches();
  for (const SwitchDevice each : dialogOrder) Device(each).WriteSwitch();
}

bool Board::SwitchClosed(std::size_t index) const {
  const BoardSwitch& chosen = switchMap.at(index);
  return Device(chosen.Device).Closed(chosen.Bit);
}

bool Board::SwitchKnown(std::size_t index) const {
  return Device(switchMap.at(index).Device).Known();
}

void Board::ReadAll() {
  for (const SwitchDevice each : dialogOrder) {
    Device(each).ReadSwitch();
    ReportSwitches();
  }
}

}  // namespace krx
