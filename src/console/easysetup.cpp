// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/easysetup.h"

#include <array>

#include "link/registeraccess.h"

namespace krx {
namespace {

constexpr std::uint8_t configuration1 = 0x40;
constexpr std::uint8_t startBit = 0x01;

struct SetupWrite {
  std::uint8_t Register;
  std::uint8_t Celsius;
};

constexpr std::uint8_t lowLimit = 10;
constexpr std::uint8_t highLimit = 80;
constexpr std::uint8_t tmin = 40;
constexpr std::uint8_t opPoint = 60;

// In the order of writing: Local, Remote1, Remote2 of each kind.
constexpr std::array<SetupWrite, 12> setupWrites{{
    {0x50, lowLimit},
    {0x4E, lowLimit},
    {0x52, lowLimit},
    {0x51, highLimit},
    {0x4F, highLimit},
    {0x53, highLimit},
    {0x68, tmin},
    {0x67, tmin},
    {0x69, tmin},
    {0x34, opPoint},
    {0x33, opPoint},
    {0x35, opPoint},
}};

}  // namespace

void WriteEasySetup(Link& link) {
  UpdateBits(link, configuration1, startBit, startBit);
  for (const SetupWrite& row : setupWrites) WriteByte(link, row.Register, row.Celsius);
}

}  // namespace krx
