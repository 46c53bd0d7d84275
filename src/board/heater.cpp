// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/heater.h"

#include <fmt/format.h>

#include "board/switches.h"

namespace krx {

/// The heater's bit in the control byte and in the status byte; 0 for an invalid number.
std::uint8_t Heater::Mask() const {
  const bool valid = heaterNumber_ >= 1 && heaterNumber_ <= heaterMasks.size();
  return valid ? heaterMasks[heaterNumber_ - std::size_t{1}] : std::uint8_t{0};
}

void Heater::SetHeaterOn(bool on) {
  if (!HasBoard(link_)) return;
  const auto adapter = link_.Root().Get().ObtainPrinterPortAdapter();
  const auto device = adapter->ObtainBusDevice();
  const std::uint8_t status = device->ReadStatusByte();
  if (const std::uint8_t mask = Mask(); mask != 0) {
    // Before the write: after a failed transfer the heater may be on and must be switched off at the end.
    if (on && ticket_ == 0) {
      ticket_ = owed_.Enter(fmt::format("heater {} is still on", heaterNumber_), [this] { SetHeaterOn(false); });
    }
    device->SetControlByte(static_cast<std::uint8_t>(on ? status | mask : status & ~mask));
  }
  device->Complete();
  if (on && !onSince_) onSince_ = link_.ElapsedSeconds();
  if (on) return;
  onSince_.reset();
  owed_.Settle(ticket_);
  ticket_ = 0;
}

bool Heater::HeaterOn() {
  if (!HasBoard(link_)) return false;
  const auto adapter = link_.Root().Get().ObtainPrinterPortAdapter();
  return (adapter->ObtainBusDevice()->ReadStatusByte() & Mask()) != 0;
}

}  // namespace krx
