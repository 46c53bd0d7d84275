// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/livingvalue.h"

#include <cmath>

#include "autocontrol/zonestate.h"
#include "control/pinfunctions.h"
#include "monitor/channels.h"
#include "monitor/firstvalues.h"
#include "monitor/readingcycle.h"
#include "power/processorpower.h"
#include "registers/chip.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

constexpr std::size_t firstFanChannel = 3;
constexpr std::size_t fan4Channel = 6;
constexpr std::size_t fiveVoltChannel = 7;
constexpr std::string_view disabled = "Disabled";

bool OutOfDate(const LivingParts& parts, bool old) {
  return old || parts.First.Monitoring() == false;
}

bool PinMeasures(const PinFunctions& pins, std::size_t channel) {
  if (channel == fan4Channel) return pins.ThermPinMode != 2;
  if (channel == fiveVoltChannel) return pins.ThermPinMode != 1;
  return channel != currentChannel || pins.Alert25vMode != 2;
}

LivingValue Measured(double value, const Quantity& quantity, bool old) {
  return {FormatFixed(value, quantity.Decimals), quantity.ReadoutUnit, old};
}

bool KnowsPower(const LivingParts& parts) {
  return parts.Power.PowerMode && PinMeasures(parts.Pins, currentChannel) && parts.First.Measured(currentChannel) &&
         parts.First.Measured(vccpChannel);
}

bool PowerOld(const LivingParts& parts, bool old) {
  return OutOfDate(parts, old) || parts.Cycle.ReadFailed(currentChannel) || parts.Cycle.ReadFailed(vccpChannel);
}

LivingValue ZoneValue(const LivingParts& parts, std::size_t zone, std::uint8_t reg, bool old) {
  LivingValue value{ZoneDegrees(parts.ChipLink.Seen, parts.Zones, zone, reg), "", OutOfDate(parts, old)};
  if (!value.Known()) return {};
  if (value.Text != disabled) value.Unit = temperatureQuantity.Unit;
  return value;
}

}  // namespace

std::string LivingValue::Words() const {
  if (!Known()) return "unknown";
  std::string words = Text;
  if (!Unit.empty()) words.append(" ").append(Unit);
  return Old ? words + ", out of date" : words;
}

LivingValue ChannelNow(const LivingParts& parts, std::size_t channel, bool old) {
  const double value = ChannelValue(channel, parts.Measured, parts.Power);
  if (!parts.First.Measured(channel, parts.Power) || std::isnan(value) || !PinMeasures(parts.Pins, channel)) return {};
  return Measured(value, ChannelQuantity(channel, parts.Power.PowerMode),
                  OutOfDate(parts, old) || parts.Cycle.ReadFailed(channel));
}

LivingValue DutyNow(const LivingParts& parts, std::size_t output, bool old) {
  const auto byte = parts.ChipLink.Seen.Byte(chip::Outputs.at(output).Duty);
  if (!byte) return {};
  return {FormatFixed(DutyToPercent(*byte), 0), "%", OutOfDate(parts, old) || parts.Cycle.DutyFailed(output)};
}

FanReading FanReadingNow(const LivingParts& parts, std::size_t fan, bool old) {
  const LivingValue speed = ChannelNow(parts, firstFanChannel + fan, old);
  FanReading reading{speed.Text, "", speed.Old};
  if (speed.Known()) reading.Speed.append(" ").append(speed.Unit);
  if (fan >= chip::Outputs.size()) return reading;
  const LivingValue duty = DutyNow(parts, fan, old);
  reading.Duty = duty.Known() ? duty.Text + " %" : duty.Text;
  reading.Old = reading.Old || duty.Old;
  return reading;
}

LivingValue CurrentNow(const LivingParts& parts, bool old) {
  if (!KnowsPower(parts)) return {};
  const auto& volts = parts.Measured.Voltages;
  return Measured(ProcessorCurrent(volts[chip::CurrentSupply], volts[chip::VccpSupply], parts.Power), currentQuantity,
                  PowerOld(parts, old));
}

LivingValue PowerNow(const LivingParts& parts, bool old) {
  if (!KnowsPower(parts)) return {};
  const auto& volts = parts.Measured.Voltages;
  constexpr Quantity watts{"W", "W", 2, 2};
  return Measured(ProcessorPower(volts[chip::CurrentSupply], volts[chip::VccpSupply], parts.Power), watts,
                  PowerOld(parts, old));
}

std::string ZoneDegrees(const RegisterImage& seen, const ZoneState& zones, std::size_t zone, std::uint8_t reg) {
  if (!zones.ZoneOpEnable.at(zone)) return std::string(disabled);
  const auto byte = seen.Byte(reg);
  return byte ? std::to_string(SignedByte(*byte)) : "–";
}

LivingValue TminNow(const LivingParts& parts, std::size_t zone, bool old) {
  return ZoneValue(parts, zone, chip::Zones.at(zone).Tmin, old);
}

LivingValue OperatingPointNow(const LivingParts& parts, std::size_t zone, bool old) {
  return ZoneValue(parts, zone, chip::Zones.at(zone).OperatingPoint, old);
}

}  // namespace krx
