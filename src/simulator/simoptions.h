// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace krx {

/// The bus modes in which a chip on the board answers.
enum class BusModes { FalseOnly, TrueOnly, Both };

/// Equipment of the simulated computer and parameters of its model. The defaults are one board with a chip on the only
/// printer port and another chip on the computer's own SMBus.
struct SimOptions {
  struct BoardChip {
    std::uint8_t Address = 0x2D;  ///< 7-bit form; the bus device uses it shifted left by one
    std::uint8_t Port = 0;
    BusModes Modes = BusModes::FalseOnly;
  };
  struct SmbusChip {
    std::uint8_t Address = 0x2E;  ///< 7-bit form
  };

  std::uint8_t Ports = 1;                             ///< printer ports, each with a board
  bool BoardPresent = true;                           ///< false: nothing is connected to the ports
  std::vector<BoardChip> BoardChips = {BoardChip{}};  ///< chips on the boards
  std::vector<SmbusChip> SmbusChips = {SmbusChip{}};  ///< chips on the SMBus
  std::string ChipsetReport = "ICH4     (82801DB)";   ///< report of the SMBus host
  bool VidFollowsU3 = false;                          ///< VID bits 4..0 follow the switches U3E..U3A
  /// Actual pulses per revolution of the fans. The console assumes one pulse by default, so that with one pulse it
  /// shows true speeds right after the start.
  std::array<double, 4> RealPulses = {1, 1, 1, 1};
  std::uint32_t Seed = 1;                         ///< noise seed
  double Noise = 1;                               ///< scales the noise of every measurement; 0 switches it off
  double Load = 2;                                ///< peak of the processor's load, W
  double Speed = 1;                               ///< simulated seconds per clock second, 1..1000
  std::function<void(double seconds)> Wait = {};  ///< how a slow transfer waits; unset: busy-waits on the clock
};

}  // namespace krx
