// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace krx {

// Conversion between register bytes and engineering units, in single precision.

/// The whole °C of a signed byte.
constexpr std::int8_t SignedByte(std::uint8_t byte) {
  return static_cast<std::int8_t>(byte);
}

/// °C of a signed value byte. The fraction increases the magnitude: 0xF6 with 0.25 is -10.25.
float TempFromByte(std::uint8_t byte, float fraction);

/// The signed byte of whole degrees. Throws OutOfRange outside -128..127.
std::uint8_t TempToByte(int degrees);

/// Volts of a 10-bit code (value byte x 4 + extension). 0 V for a channel outside 0..4.
float VoltageFromCode(int channel, int code);

/// Volts of a value or limit byte. 0 V for a channel outside 0..4.
float VoltageFromByte(int channel, std::uint8_t byte);

/// The limit byte at or below a voltage, at most 255. `name` is that of a voltage channel; another one throws
/// CommsError 11 "Division by zero". Throws OutOfRange for a negative voltage and for NaN.
std::uint8_t VoltageToByte(std::string_view name, float volts);

/// Speed in RPM of a tachometer count, and count of a speed: the relation is its own inverse. 0 gives 65535, and the
/// counts of a stopped fan (65,061 to 65,535) give 0.
float TachToRPM(float value);

/// The limit count of a speed: TachToRPM × programmed / actual pulses, evaluated from left to right, halves to even; or
/// × their quotient, which some callers form first. 0 RPM is "no limit", 65535 regardless of the pulses. Throws
/// OutOfRange for a negative speed and for a count outside 0..65535.
std::uint16_t TachLimitCount(float rpm, float programmedOrQuotient, float actual = 1);

/// Percent of a duty byte: 255 is 100.
float DutyToPercent(std::uint8_t byte);

/// Percent of the read period during which THERM was asserted, at most 100; empty for a period of 0 or less, so that
/// the last value is kept. `count` is the byte of 0x79.
std::optional<float> ThermShare(std::uint8_t count, float seconds);

/// Milliseconds during which THERM was asserted.
float ThermTime(std::uint8_t count);

}  // namespace krx
