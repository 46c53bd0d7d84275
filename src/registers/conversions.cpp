// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/conversions.h"

#include <algorithm>
#include <cmath>

#include "link/commserror.h"
#include "registers/chip.h"
#include "registers/numerics.h"

namespace krx {
namespace {

constexpr float tachConstant = 5'400'000.0F;  ///< counts x RPM
constexpr std::uint16_t noTachLimit = 65535;
constexpr float dutyCountsPerPercent = 2.55F;
constexpr float thermMillisecondsPerCount = 22.76F;
constexpr float thermPercentSecondsPerCount = 2.276F;

static_assert(std::ranges::all_of(chip::Supplies, [](const auto& row) { return row.CodeScale * 4 == row.ByteScale; }));

const chip::Supply* FindChannel(int channel) {
  const bool known = channel >= 0 && channel < static_cast<int>(chip::Supplies.size());
  return known ? &chip::Supplies[static_cast<std::size_t>(channel)] : nullptr;
}

}  // namespace

float TempFromByte(std::uint8_t byte, float fraction) {
  const auto degrees = static_cast<float>(SignedByte(byte));
  return degrees < 0 ? degrees - fraction : degrees + fraction;
}

std::uint8_t TempToByte(int degrees) {
  if (degrees < -128 || degrees > 127) throw OutOfRange("A temperature limit must be between -128 and 127 °C");
  return static_cast<std::uint8_t>(degrees < 0 ? degrees + 256 : degrees);
}

float VoltageFromCode(int channel, int code) {
  const chip::Supply* row = FindChannel(channel);
  return row == nullptr ? 0.0F : static_cast<float>(code) * row->CodeScale;
}

float VoltageFromByte(int channel, std::uint8_t byte) {
  const chip::Supply* row = FindChannel(channel);
  return row == nullptr ? 0.0F : static_cast<float>(byte) * row->ByteScale;
}

std::uint8_t VoltageToByte(std::string_view name, float volts) {
  const auto row = std::ranges::find(chip::Supplies, name, &chip::Supply::Name);
  if (row == chip::Supplies.end()) throw CommsError(11, "Division by zero");
  if (!(volts >= 0)) throw OutOfRange("A voltage limit cannot be negative");
  return static_cast<std::uint8_t>(std::min(std::floor(volts / row->ByteScale), 255.0F));
}

float TachToRPM(float value) {
  if (value == 0) return noTachLimit;
  const float result = tachConstant / value;
  return std::trunc(result) == 82 ? 0 : result;
}

std::uint16_t TachLimitCount(float rpm, float programmedOrQuotient, float actual) {
  if (rpm == 0) return noTachLimit;
  const float count = std::nearbyint(TachToRPM(rpm) * programmedOrQuotient / actual);
  if (!(rpm > 0 && count >= 0 && count <= 65535)) {
    throw OutOfRange("A fan limit of " + ShortestText(rpm) + " RPM cannot be expressed as a tachometer count");
  }
  return static_cast<std::uint16_t>(count);
}

float DutyToPercent(std::uint8_t byte) {
  return static_cast<float>(byte) / dutyCountsPerPercent;
}

std::optional<float> ThermShare(std::uint8_t count, float seconds) {
  if (!(seconds > 0)) return std::nullopt;
  return std::min(static_cast<float>(count) * thermPercentSecondsPerCount / seconds, 100.0F);
}

float ThermTime(std::uint8_t count) {
  return static_cast<float>(count) * thermMillisecondsPerCount;
}

}  // namespace krx
