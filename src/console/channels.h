// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "console/measurements.h"
#include "controls/gaugemarkers.h"
#include "fans/fancommon.h"
#include "power/powersettings.h"

namespace krx {

// The twelve measured channels. The number is shared by captions, indicators, gauge, alarm map and readout.

enum class ChannelKind { Temperature, Fan, Voltage };

/// Which of the two strip charts; one is visible at a time.
enum class Strip { Strip2, Strip3 };

struct Channel {
  std::string_view Caption;  ///< of a fan: while its label is none of the five of `fanPlaceLabels`
  ChannelKind Kind;
  std::size_t Slot;                ///< index into Temperatures, FanSpeeds or Voltages
  std::uint8_t ValueRegister;      ///< of a fan: the low byte, the high byte follows
  std::uint8_t LowLimitRegister;   ///< of a fan: the low byte of the tach minimum
  std::uint8_t HighLimitRegister;  ///< of a fan: the high byte of the tach minimum
  GaugeScale Scale;
  Strip Chart;
  std::size_t Trace;  ///< number in the trace history
};

inline constexpr std::size_t channelCount = 12;
inline constexpr std::size_t vccpChannel = 9;
inline constexpr std::size_t currentChannel = 11;  ///< 2.5V, or the processor current while PowerMode is set

inline constexpr GaugeScale temperatureScale{-55, 127};
inline constexpr GaugeScale fanScale{0, 20000};
inline constexpr GaugeScale currentScale{0, 180};  ///< channel 11 while PowerMode is set, A

inline constexpr std::array<Channel, channelCount> channels{{
    {"Local", ChannelKind::Temperature, 0, 0x26, 0x50, 0x51, temperatureScale, Strip::Strip2, 0},
    {"Remote 1", ChannelKind::Temperature, 1, 0x25, 0x4E, 0x4F, temperatureScale, Strip::Strip2, 1},
    {"Remote 2", ChannelKind::Temperature, 2, 0x27, 0x52, 0x53, temperatureScale, Strip::Strip2, 2},
    {"Fan 1", ChannelKind::Fan, 0, 0x28, 0x54, 0x55, fanScale, Strip::Strip2, 3},
    {"Fan 2", ChannelKind::Fan, 1, 0x2A, 0x56, 0x57, fanScale, Strip::Strip2, 4},
    {"Fan 3", ChannelKind::Fan, 2, 0x2C, 0x58, 0x59, fanScale, Strip::Strip2, 5},
    {"Fan 4", ChannelKind::Fan, 3, 0x2E, 0x5A, 0x5B, fanScale, Strip::Strip2, 6},
    {"5V", ChannelKind::Voltage, 0, 0x23, 0x4A, 0x4B, {0, 8}, Strip::Strip3, 9},
    {"12V", ChannelKind::Voltage, 1, 0x24, 0x4C, 0x4D, {0, 18}, Strip::Strip3, 10},
    {"Vccp", ChannelKind::Voltage, 2, 0x21, 0x46, 0x47, {0, 4}, Strip::Strip3, 11},
    {"Vcc", ChannelKind::Voltage, 3, 0x22, 0x48, 0x49, {0, 6}, Strip::Strip3, 12},
    {"2.5V", ChannelKind::Voltage, 4, 0x20, 0x44, 0x45, {0, 4}, Strip::Strip3, 13},
}};

// Traces of the history: Strip2's channels 0..8, then Strip3's 0..4.
inline constexpr std::size_t traceCount = 14;
inline constexpr std::size_t powerTrace = 7;
inline constexpr std::size_t thermTrace = 8;
inline constexpr std::array<std::string_view, traceCount> traceNames{
    "Internal",        "External 1", "External 2", "Fan1", "Fan2", "Fan3", "Fan4",
    "Proc. Power (W)", "THERM= %",   "5V",         "12V",  "Vccp", "Vcc",  "2.5V"};

/// The labels that say where a fan sits; any other label leaves the channel its numbered caption.
inline constexpr std::array<std::string_view, 5> fanPlaceLabels{"CPU Fan", "Fr. Chas.", "Rr. Chas.", "Int. Circ.",
                                                                "Unused"};

/// The channel's caption: a fan's place label, "Current" for channel 11 in power mode, else the table's.
std::string ChannelCaption(std::size_t channel, const FanCommon& fans, bool powerMode);

/// The gauge's scale; channel 11 in power mode has its own.
GaugeScale ChannelScale(std::size_t channel, bool powerMode);

/// The chart shown when the channel is selected; channel 11 in power mode shows Strip2, where the power trace is.
Strip ChannelChart(std::size_t channel, bool powerMode);

/// The channel's last measured value in °C, RPM (NaN: not known), V, or A for channel 11 in power mode (never
/// negative).
double ChannelValue(std::size_t channel, const Measurements& measured, const PowerSettings& power);

/// The value with its unit: "45.25C", "2400 RPM", "3.312 V", "12.50 A"; "– RPM" for a speed that is not known.
std::string ReadoutText(std::size_t channel, const Measurements& measured, const PowerSettings& power);

}  // namespace krx
