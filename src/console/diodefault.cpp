// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/diodefault.h"

#include <cstdint>

namespace krx {
namespace {

constexpr std::uint8_t interruptStatus2 = 0x42;
constexpr std::size_t remote1Channel = 1, remote2Channel = 2;
constexpr int diode1Bit = 6, diode2Bit = 7;
constexpr double openCelsius = -128;

bool IsRemote(std::size_t channel) {
  return channel == remote1Channel || channel == remote2Channel;
}

}  // namespace

bool DiodeFault(std::size_t channel, const RegisterImage& seen) {
  if (!IsRemote(channel)) return false;
  const int bit = channel == remote1Channel ? diode1Bit : diode2Bit;
  return (seen.Byte(interruptStatus2).value_or(0) >> bit & 1) != 0;
}

bool IsDiodeCode(std::size_t channel, double celsius, const RegisterImage& seen) {
  return IsRemote(channel) && (celsius <= openCelsius || DiodeFault(channel, seen));
}

}  // namespace krx
