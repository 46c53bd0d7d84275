// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>

#include "link/linknewcomport06.h"

namespace krx {

class Board;

/// True when the chip is on the printer-port board; only there are switches and heaters.
bool HasBoard(const Link& link);

/// Sends one byte to the board's device at `address` (8-bit form). Does nothing without a board.
void SendBoardByte(Link& link, std::uint8_t address, std::uint8_t data);
/// Receives one byte; nothing without a board.
std::optional<std::uint8_t> ReceiveBoardByte(Link& link, std::uint8_t address);

/// Whole-byte access to the device at 0x90 + 2n (n: a SwitchDevice as a number). The device's Switch is updated as
/// well, so that a later synchronisation does not undo this write.
void WriteSwitchDevice(Board& board, int n, std::uint8_t value);
/// Without a board returns the last known states.
std::uint8_t ReadSwitchDevice(Board& board, int n);

}  // namespace krx
