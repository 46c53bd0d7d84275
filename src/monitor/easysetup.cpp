// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/easysetup.h"

#include <array>

#include "link/registeraccess.h"
#include "registers/chip.h"

namespace krx {
namespace {

constexpr std::uint8_t lowLimit = 10;
constexpr std::uint8_t highLimit = 80;
constexpr std::uint8_t tmin = 40;
constexpr std::uint8_t opPoint = 60;

struct SetupWrite {
  std::uint8_t chip::Zone::*Register;
  std::uint8_t Celsius;
};
constexpr std::array<SetupWrite, 4> setupWrites{{
    {&chip::Zone::LowLimit, lowLimit},
    {&chip::Zone::HighLimit, highLimit},
    {&chip::Zone::Tmin, tmin},
    {&chip::Zone::OperatingPoint, opPoint},
}};

}  // namespace

void WriteEasySetup(Link& link) {
  UpdateBits(link, chip::Configuration1, chip::Start, chip::Start);
  for (const SetupWrite& row : setupWrites) {
    for (const chip::Zone& zone : chip::Zones) WriteByte(link, zone.*row.Register, row.Celsius);
  }
}

}  // namespace krx
