// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/chipreadings.h"

#include <array>

#include "link/registeraccess.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

struct FractionRow {
  const char* Text;
  float Value;
};
constexpr std::array<FractionRow, 4> fractions{{{" ", 0.0F}, {".25", 0.25F}, {".5", 0.5F}, {".75", 0.75F}}};

/// By zone: the register and the place of its four bits.
struct HysteresisRow {
  std::uint8_t Register;
  int Shift;
};
constexpr std::array<HysteresisRow, 3> hysteresis{{{0x6D, 0}, {0x6D, 4}, {0x6E, 4}}};

}  // namespace

TempFractionReading TempFraction(Link& link, int channel) {
  const TempChannel& row = tempChannels.at(static_cast<std::size_t>(channel));
  const int bits = (ReadByte(link, 0x77) >> row.FractionShift) & 0x03;
  const FractionRow& fraction = fractions[static_cast<std::size_t>(bits)];
  return {fraction.Text, fraction.Value};
}

int VoltageExtension(Link& link, int channel) {
  const VoltageChannel& row = voltageChannels.at(static_cast<std::size_t>(channel));
  return (ReadByte(link, row.ExtensionRegister) >> row.ExtensionShift) & 0x03;
}

std::string SeenDuty(const Link& link, std::size_t output) {
  const auto byte = link.Seen.Byte(static_cast<std::uint8_t>(0x30 + output));
  return byte ? FormatFixed(DutyToPercent(*byte), 0) + " %" : "an unknown duty";
}

int HysteresisOf(Link& link, int zone) {
  const HysteresisRow& row = hysteresis.at(static_cast<std::size_t>(zone));
  return (ReadByte(link, row.Register) >> row.Shift) & 0x0F;
}

void TachLimitWrite(Link& link, const FanCommon& fans, int fan, float rpm) {
  const auto tach = static_cast<std::size_t>(fan - 1);
  const std::uint16_t count = TachLimitCount(rpm, fans.PulseCorrection(tach));
  const auto low = static_cast<std::uint8_t>(0x54 + 2 * tach);
  WriteByte(link, low, count & 0xFF);
  WriteByte(link, static_cast<std::uint8_t>(low + 1), count >> 8);
}

}  // namespace krx
