// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/switch.h"

#include "board/switches.h"

namespace krx {

void Switch::WriteSwitch() {
  SendBoardByte(link_, deviceAddress_, status_);
}

void Switch::ReadSwitch() {
  const auto states = ReceiveBoardByte(link_, deviceAddress_);
  if (!states) return;
  status_ = *states;
  read_ = states;
}

void Switch::SetStatus(int bit, bool closed) {
  const auto mask = static_cast<std::uint8_t>(1U << bit);
  status_ = static_cast<std::uint8_t>(closed ? status_ | mask : status_ & ~mask);
}

}  // namespace krx
