// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "controls/gaugemarkers.h"
#include "fans/fancommon.h"
#include "monitor/measurements.h"
#include "power/powersettings.h"
#include "registers/chip.h"

namespace krx {

// The twelve measured channels. Captions, indicators, gauge, alarm map and readout use the same number.

enum class ChannelKind { Temperature, Fan, Voltage };

/// The two strip charts; one is visible at a time.
enum class Strip { Strip2, Strip3 };

/// Unit and format of a measured quantity.
struct Quantity {
  std::string_view Unit;
  std::string_view ReadoutUnit;  ///< without the degree sign, for use directly after a value
  int Decimals;                  ///< of a measured value
  int LimitDecimals;             ///< of a limit
};
inline constexpr Quantity temperatureQuantity{"°C", "C", 2, 0};
inline constexpr Quantity speedQuantity{"RPM", "RPM", 0, 0};
inline constexpr Quantity voltageQuantity{"V", "V", 3, 3};
inline constexpr Quantity currentQuantity{"A", "A", 2, 2};

struct Channel {
  std::string_view Caption;  ///< for a fan: used unless its label is that of a fan type
  ChannelKind Kind;
  std::size_t Slot;                ///< index into Temperatures, FanSpeeds or Voltages
  std::uint8_t ValueRegister;      ///< for a fan: the low byte, the high byte follows
  std::uint8_t LowLimitRegister;   ///< for a fan: the low byte of the tach minimum
  std::uint8_t HighLimitRegister;  ///< for a fan: the high byte of the tach minimum
  GaugeScale Scale;
  krx::Quantity Quantity;
  Strip Chart;
  std::size_t Trace;  ///< number in the trace history
};

inline constexpr std::size_t channelCount = 12;
inline constexpr std::size_t vccpChannel = 9;
inline constexpr std::size_t currentChannel = 11;  ///< 2.5V, or the processor current while PowerMode is set

inline constexpr GaugeScale temperatureScale{-55, 127};
inline constexpr GaugeScale fanScale{0, 20000};
inline constexpr GaugeScale currentScale{0, 180};  ///< channel 11 while PowerMode is set, A

constexpr Channel TemperatureChannel(std::string_view caption, std::size_t zone) {
  const chip::Zone& row = chip::Zones[zone];
  return {caption,          ChannelKind::Temperature, zone,          row.Value, row.LowLimit, row.HighLimit,
          temperatureScale, temperatureQuantity,      Strip::Strip2, zone};
}
constexpr Channel FanChannel(std::string_view caption, std::size_t tach) {
  const chip::Tach& row = chip::Tachs[tach];
  return {caption,       ChannelKind::Fan, tach,          row.Low,       row.LimitLow,
          row.LimitHigh, fanScale,         speedQuantity, Strip::Strip2, 3 + tach};
}
constexpr Channel VoltageChannel(std::size_t supply, double fullScale) {
  const chip::Supply& row = chip::Supplies[supply];
  return {row.Name,      ChannelKind::Voltage, supply,          row.Value,     row.LowLimit,
          row.HighLimit, {0, fullScale},       voltageQuantity, Strip::Strip3, 9 + supply};
}

inline constexpr std::array<Channel, channelCount> channels{{
    TemperatureChannel("Local", 0),
    TemperatureChannel("Remote 1", 1),
    TemperatureChannel("Remote 2", 2),
    FanChannel("Fan 1", 0),
    FanChannel("Fan 2", 1),
    FanChannel("Fan 3", 2),
    FanChannel("Fan 4", 3),
    VoltageChannel(0, 8),
    VoltageChannel(1, 18),
    VoltageChannel(2, 4),
    VoltageChannel(3, 6),
    VoltageChannel(4, 4),
}};

// Traces of the history: Strip2's channels 0..8, then Strip3's 0..4.
inline constexpr std::size_t traceCount = 14;
inline constexpr std::size_t powerTrace = 7;
inline constexpr std::size_t thermTrace = 8;
inline constexpr std::array<std::string_view, traceCount> traceNames{
    "Internal",        "External 1", "External 2", "Fan1", "Fan2", "Fan3", "Fan4",
    "Proc. Power (W)", "THERM= %",   "5V",         "12V",  "Vccp", "Vcc",  "2.5V"};

/// The channel's caption: the label of a fan's type, "Current" for channel 11 in power mode, else the table's.
std::string ChannelCaption(std::size_t channel, const FanCommon& fans, bool powerMode);

/// The gauge's scale; channel 11 in power mode has its own.
GaugeScale ChannelScale(std::size_t channel, bool powerMode);

/// Unit and format of the channel's values and limits; channel 11 in power mode is a current.
const Quantity& ChannelQuantity(std::size_t channel, bool powerMode);

/// The chart shown when the channel is selected; channel 11 in power mode shows Strip2, where the power trace is.
Strip ChannelChart(std::size_t channel, bool powerMode);

/// The channel's last measured value in °C, RPM (NaN: unknown), V, or A for channel 11 in power mode (never negative).
double ChannelValue(std::size_t channel, const Measurements& measured, const PowerSettings& power);

/// The value with its unit: "45.25C", "2400 RPM", "3.312 V", "12.50 A"; "– RPM" for an unknown speed.
std::string ReadoutText(std::size_t channel, const Measurements& measured, const PowerSettings& power);

}  // namespace krx
