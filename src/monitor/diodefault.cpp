// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/diodefault.h"

#include "registers/chip.h"

namespace krx {
namespace {

constexpr std::size_t remote1Channel = 1, remote2Channel = 2;
constexpr double openCelsius = -128;

bool IsRemote(std::size_t channel) {
  return channel == remote1Channel || channel == remote2Channel;
}

}  // namespace

bool DiodeFault(std::size_t channel, const RegisterImage& seen) {
  if (!IsRemote(channel)) return false;
  const int bit = chip::Diode1Bit + (channel == remote1Channel ? 0 : 1);
  return (seen.Byte(chip::InterruptStatus2).value_or(0) >> bit & 1) != 0;
}

bool IsDiodeCode(std::size_t channel, double celsius, const RegisterImage& seen) {
  return IsRemote(channel) && (celsius <= openCelsius || DiodeFault(channel, seen));
}

}  // namespace krx
