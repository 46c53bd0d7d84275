// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simtrace.h"

#include <fmt/format.h>

namespace krx {

bool IsBusTransfer(Operation op) {
  switch (op) {
    case Operation::SendByte:
    case Operation::ReceiveByte:
    case Operation::SetControlByte:
    case Operation::ReadStatusByte:
    case Operation::ReadByteData:
    case Operation::WriteByteData:
    case Operation::Complete:
      return true;
    default:
      return false;
  }
}

std::string TransferText(const Transfer& transfer) {
  const auto text = [&]() -> std::string {
    switch (transfer.Op) {
      case Operation::ObtainPrinterPortAdapter:
        return "A";
      case Operation::ObtainSmbusController:
        return "H";
      case Operation::SelectMedium:
        return fmt::format("M{:X}", transfer.Data);
      case Operation::PortCount:
        return "N";
      case Operation::SelectPort:
        return fmt::format("P{:X}", transfer.Data);
      case Operation::CurrentPort:
        return "Q";
      case Operation::ObtainBusDevice:
        return "D";
      case Operation::SendByte:
        return fmt::format("S{:02X}:{:02X}", transfer.Address, transfer.Data);
      case Operation::ReceiveByte:
        return fmt::format("V{:02X}", transfer.Address);
      case Operation::SetControlByte:
        return fmt::format("C{:02X}", transfer.Data);
      case Operation::ReadStatusByte:
        return "ST";
      case Operation::SetDeviceAddress:
      case Operation::SetTargetAddress:
        return fmt::format("T{:02X}", transfer.Address);
      case Operation::SetBusMode:
        return fmt::format("B{:X}", transfer.Data);
      case Operation::GetBusMode:
        return "B?";
      case Operation::ReadByteData:
        return fmt::format("R{:02X}", transfer.Register);
      case Operation::WriteByteData:
        return fmt::format("W{:02X}:{:02X}", transfer.Register, transfer.Data);
      case Operation::Complete:
        return "K";
      case Operation::ChipsetReport:
        return "I";
    }
    return "?";
  }();
  return transfer.Failed ? text + "!" : text;
}

Transfer& SimTrace::Add(const Transfer& transfer) {
  if (transfers_.size() >= capacity) transfers_.pop_front();
  return transfers_.emplace_back(transfer);
}

std::string SimTrace::Text(TraceFilter filter) const {
  const auto shown = [filter](Operation op) {
    if (filter == TraceFilter::All) return true;
    if (filter == TraceFilter::Bus) return IsBusTransfer(op);
    return op == Operation::ReadByteData || op == Operation::WriteByteData;
  };
  std::string text;
  for (const Transfer& transfer : transfers_) {
    if (!shown(transfer.Op)) continue;
    if (!text.empty()) text += ' ';
    text += TransferText(transfer);
  }
  return text;
}

}  // namespace krx
