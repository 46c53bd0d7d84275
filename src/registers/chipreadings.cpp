// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/chipreadings.h"

#include <array>

#include "link/registeraccess.h"
#include "registers/chip.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

struct FractionRow {
  const char* Text;
  float Value;
};
constexpr std::array<FractionRow, 4> fractions{{{" ", 0.0F}, {".25", 0.25F}, {".5", 0.5F}, {".75", 0.75F}}};

}  // namespace

TempFractionReading TempFraction(Link& link, int channel) {
  const chip::Zone& row = chip::Zones.at(static_cast<std::size_t>(channel));
  const int bits = (ReadByte(link, chip::ExtendedResolution2) >> row.FractionShift) & chip::ExtensionMask;
  const FractionRow& fraction = fractions[static_cast<std::size_t>(bits)];
  return {fraction.Text, fraction.Value};
}

int VoltageExtension(Link& link, int channel) {
  const chip::Supply& row = chip::Supplies.at(static_cast<std::size_t>(channel));
  return (ReadByte(link, row.Extension) >> row.ExtensionShift) & chip::ExtensionMask;
}

std::string SeenDuty(const Link& link, std::size_t output) {
  const auto byte = link.Seen.Byte(chip::Outputs.at(output).Duty);
  return byte ? FormatFixed(DutyToPercent(*byte), 0) + " %" : "an unknown duty";
}

int HysteresisOf(Link& link, int zone) {
  const chip::Zone& row = chip::Zones.at(static_cast<std::size_t>(zone));
  return (ReadByte(link, row.Hysteresis) >> row.HysteresisShift) & chip::HysteresisMask;
}

void TachLimitWrite(Link& link, const FanCommon& fans, int fan, float rpm) {
  const auto tach = static_cast<std::size_t>(fan - 1);
  const std::uint16_t count = TachLimitCount(rpm, fans.PulseCorrection(tach));
  WriteByte(link, chip::Tachs.at(tach).LimitLow, count & 0xFF);
  WriteByte(link, chip::Tachs.at(tach).LimitHigh, count >> 8);
}

}  // namespace krx
