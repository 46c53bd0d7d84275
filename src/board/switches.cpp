// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/switches.h"

#include "board/board.h"

namespace krx {

bool HasBoard(const Link& link) {
  return link.EvalBoardMedium == 1;
}

void SendBoardByte(Link& link, std::uint8_t address, std::uint8_t data) {
  if (!HasBoard(link)) return;
  const auto adapter = link.Root().Get().ObtainPrinterPortAdapter();
  adapter->ObtainBusDevice()->SendByte(address, data);
}

std::optional<std::uint8_t> ReceiveBoardByte(Link& link, std::uint8_t address) {
  if (!HasBoard(link)) return std::nullopt;
  const auto adapter = link.Root().Get().ObtainPrinterPortAdapter();
  return adapter->ObtainBusDevice()->ReceiveByte(address);
}

void WriteSwitchDevice(Board& board, int n, std::uint8_t value) {
  Switch& device = board.Device(static_cast<SwitchDevice>(n));
  SendBoardByte(board.GetLink(), device.DeviceAddress(), value);
  device.SetStatusByte(value);
  board.ReportSwitches();
}

std::uint8_t ReadSwitchDevice(Board& board, int n) {
  Switch& device = board.Device(static_cast<SwitchDevice>(n));
  device.ReadSwitch();
  board.ReportSwitches();
  return device.StatusByte();
}

}  // namespace krx
