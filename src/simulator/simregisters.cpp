// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simregisters.h"

namespace krx {
namespace {

struct Range {
  std::uint8_t First;
  std::uint8_t Last;
  std::uint8_t Value;
};

/// Registers that are not 0 after power-on. Written out, like the constants of the conversions in simmeasure.cpp,
/// without the console's own names: a wrong one there then shows as a wrong reading.
constexpr Range resetRows[] = {
    {0x25, 0x27, 0x80},  // temperatures: not measured
    {0x28, 0x2F, 0xFF},  // tachometers: stopped
    {0x30, 0x32, 0xFF},  // outputs are Always On
    {0x33, 0x35, 0x64},  // operating points
    {0x3D, 0x3D, 0x5A}, {0x3E, 0x3E, 0x41}, {0x3F, 0x3F, 0x10}, {0x45, 0x45, 0xFF},
    {0x47, 0x47, 0xFF}, {0x49, 0x49, 0xFF}, {0x4B, 0x4B, 0xFF}, {0x4D, 0x4D, 0xFF},
    {0x4E, 0x4E, 0x81}, {0x4F, 0x4F, 0x7F}, {0x50, 0x50, 0x81}, {0x51, 0x51, 0x7F},
    {0x52, 0x52, 0x81}, {0x53, 0x53, 0x7F}, {0x54, 0x5B, 0xFF},  // tachometer limits
    {0x5C, 0x5E, 0x62},                                          // Always On, spin-up 250 ms
    {0x5F, 0x61, 0xC4},                                          // Trange 32 °C, 35.3 Hz
    {0x64, 0x66, 0x80},                                          // minimum duties
    {0x67, 0x69, 0x5A},                                          // Tmin
    {0x6A, 0x6C, 0x64},                                          // THERM limits
    {0x6D, 0x6D, 0x44}, {0x6E, 0x6E, 0x40}, {0x7B, 0x7B, 0x55},  // two pulses each
};

constexpr Range writableRows[] = {
    {0x30, 0x37, 0xFF},
    {0x40, 0x40, static_cast<std::uint8_t>(~chip::Ready)},
    {0x43, 0x43, static_cast<std::uint8_t>(~chip::VidInputs)},
    {0x44, 0x75, 0xFF},
    {0x78, 0x78, 0xFF},
    {0x7A, 0x7B, 0xFF},
    {0x7D, 0x7F, 0xFF},
};

}  // namespace

SimRegisters ResetRegisters() {
  SimRegisters registers;
  for (const Range& row : resetRows) {
    for (int reg = row.First; reg <= row.Last; ++reg) registers[static_cast<std::size_t>(reg)] = row.Value;
  }
  return registers;
}

std::uint8_t WritableBits(std::uint8_t reg) {
  for (const Range& row : writableRows) {
    if (reg >= row.First && reg <= row.Last) return row.Value;
  }
  return 0;
}

}  // namespace krx
