// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/logcolumns.h"

#include <algorithm>
#include <cmath>

#include "registers/chip.h"
#include "registers/numerics.h"

namespace krx {
namespace {

enum class Kind { Temperature, Duty, Speed, Voltage, Power, Tmin, OpPoint, Therm };

struct SlotValue {
  Kind What;
  std::size_t Index = 0;
};

// Voltages are logged in a different order: 12V, 5V, 2.5V, Vccp, Vcc.
constexpr std::array<SlotValue, logColumnCount> slotValues{{
    {Kind::Temperature, 0}, {Kind::Temperature, 1}, {Kind::Temperature, 2}, {Kind::Duty, 0},    {Kind::Duty, 1},
    {Kind::Duty, 2},        {Kind::Speed, 0},       {Kind::Speed, 1},       {Kind::Speed, 2},   {Kind::Speed, 3},
    {Kind::Voltage, 1},     {Kind::Voltage, 0},     {Kind::Voltage, 4},     {Kind::Voltage, 2}, {Kind::Voltage, 3},
    {Kind::Power},          {Kind::Tmin, 0},        {Kind::Tmin, 1},        {Kind::Tmin, 2},    {Kind::OpPoint, 0},
    {Kind::OpPoint, 1},     {Kind::OpPoint, 2},     {Kind::Therm},
}};

constexpr int voltageDecimals = 4;

/// The log's power column always uses the Scale/Offset equation, independent of the displays.
float LoggedPower(const LogSources& sources) {
  const auto& volts = sources.Measured.Voltages;
  return (volts[chip::CurrentSupply] - sources.Power.SenseOffset) / sources.Power.SenseScale * volts[chip::VccpSupply];
}

}  // namespace

std::array<std::string, logColumnCount> StartColumnTitles() {
  std::array<std::string, logColumnCount> titles;
  std::copy_n(logColumnTitles.begin(), logStartColumns, titles.begin());
  return titles;
}

std::string LogColumnText(std::size_t slot, const LogSources& sources) {
  const SlotValue& value = slotValues.at(slot);
  const Measurements& measured = sources.Measured;
  switch (value.What) {
    case Kind::Temperature:
      return ShortestText(measured.Temperatures.at(value.Index));
    case Kind::Duty:
      return measured.DutyTexts.at(value.Index);
    case Kind::Speed:
      return std::isnan(measured.FanSpeeds.at(value.Index)) ? "-" : FormatFixed(measured.FanSpeeds.at(value.Index), 0);
    case Kind::Voltage:
      return FormatFixed(measured.Voltages.at(value.Index), voltageDecimals);
    case Kind::Power:
      return FormatFixed(LoggedPower(sources), voltageDecimals);
    case Kind::Tmin:
      return std::to_string(sources.Zones.ZoneTmin.at(value.Index));
    case Kind::OpPoint:
      return std::to_string(sources.Zones.ZoneOpPoint.at(value.Index));
    case Kind::Therm:
      break;
  }
  return ShortestText(measured.ThermReading);
}

}  // namespace krx
