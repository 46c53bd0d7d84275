// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

namespace krx {

/// The operations of the bus-access library, as recorded in a trace.
enum class Operation {
  ObtainPrinterPortAdapter,
  ObtainSmbusController,
  SelectMedium,
  PortCount,
  SelectPort,
  CurrentPort,
  ObtainBusDevice,
  SendByte,
  ReceiveByte,
  SetControlByte,
  ReadStatusByte,
  SetDeviceAddress,
  SetBusMode,
  GetBusMode,
  ReadByteData,
  WriteByteData,
  Complete,
  ChipsetReport,
  SetTargetAddress,
};

/// One requested operation. Fields that an operation does not use are 0; Data of a read is its result.
struct Transfer {
  double Seconds = 0;  ///< clock time since the simulation was created
  Operation Op = Operation::ReadByteData;
  std::uint8_t Address = 0;
  std::uint8_t Register = 0;
  std::uint8_t Data = 0;
  bool Failed = false;
};

/// Operations included in a text.
enum class TraceFilter {
  Registers,  ///< chip registers read and written
  Bus,        ///< the same and the board: switch devices, control and status byte, complete
  All,
};

/// True for operations that transfer bytes on a bus or the port, as shown by TraceFilter::Bus.
bool IsBusTransfer(Operation op);

/// Short form of one transfer, numbers in hexadecimal: registers "R77" and "W30:FF", switch devices "S90:10" (sent) and
/// "V94" (received), control byte "C10", status byte "ST", complete "K", adapter "A", bus device "D", port count "N",
/// select port "P0", current port "Q", bus mode "B1" (set) and "B?" (got), device or target address "T5A", controller
/// "H", chipset report "I", select medium "M1". A failed transfer ends with "!".
std::string TransferText(const Transfer& transfer);

/// All operations in order; beyond `capacity` the oldest are dropped.
class SimTrace {
 public:
  static constexpr std::size_t capacity = 100'000;

  Transfer& Add(const Transfer& transfer);
  void Clear() { transfers_.clear(); }
  const std::deque<Transfer>& Transfers() const { return transfers_; }

  /// The texts of the transfers that pass the filter, separated by one blank: "R77 R25 R2A R2B".
  std::string Text(TraceFilter filter) const;

 private:
  std::deque<Transfer> transfers_;
};

}  // namespace krx
