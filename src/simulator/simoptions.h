// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace krx {

/// Under which values of the bus-mode flag a chip on the board answers.
enum class BusModes { FalseOnly, TrueOnly, Both };

/// What the simulated computer has, and how its model runs. The defaults are one board with a chip at the only
/// printer port and another chip on the computer's own SMBus.
struct SimOptions {
  struct BoardChip {
    std::uint8_t Address = 0x2D;  ///< 7-bit form; the bus device takes it shifted left by one
    std::uint8_t Port = 0;
    BusModes Modes = BusModes::FalseOnly;
  };
  struct SmbusChip {
    std::uint8_t Address = 0x2E;  ///< 7-bit form
  };

  std::uint8_t Ports = 1;                             ///< printer ports, each with a board
  bool BoardPresent = true;                           ///< false: the ports are there, nothing is connected
  std::vector<BoardChip> BoardChips = {BoardChip{}};  ///< chips on the boards
  std::vector<SmbusChip> SmbusChips = {SmbusChip{}};  ///< chips on the SMBus
  std::string ChipsetReport = "ICH4     (82801DB)";   ///< what the SMBus host says about itself
  bool VidFollowsU3 = false;                          ///< VID bits 4..0 read what the switches U3E..U3A are set to
  /// Pulses per revolution that the fans really give. The console takes one until it is told otherwise, so fans of one
  /// pulse show their true speeds to whoever just started it.
  std::array<double, 4> RealPulses = {1, 1, 1, 1};
  std::uint32_t Seed = 1;                         ///< of the noise
  double Noise = 1;                               ///< scales the noise of every measurement; 0 switches it off
  double Load = 2;                                ///< peak of the processor's load, W
  double Speed = 1;                               ///< model seconds per clock second, 1..1000
  std::function<void(double seconds)> Wait = {};  ///< how a slow transfer waits; unset: the clock is spun on
};

}  // namespace krx
