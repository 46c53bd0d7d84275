// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace krx {

// Numbers from and to text, and rounding. Independent of the locale: the decimal sign is a point.

/// The leading decimal number of a text; the rest is ignored, and without a number the result is 0. A number consists
/// of leading blanks, a sign, digits with at most one point (".5", "5."), and an exponent if it is complete ("1e3";
/// "1e" is 1). Overflow gives infinity, underflow 0.
double Val(std::string_view text);

/// True when the whole text, apart from surrounding blanks, is one number as read by Val.
bool IsNumber(std::string_view text);

/// Nearest whole number, halves to the even neighbour. Throws Overflow outside the range of int, and for NaN.
int CInt(double value);

/// The largest whole number not above the value.
double Floor(double value);

/// Rounded to `decimals` >= 0 places, halves to even. Halves refer to the exact binary value: 0.125 is a half and
/// becomes 0.12, while 1.005 is just below one and becomes 1.
double Round(double value, int decimals);

/// The shortest decimal text that reads back as the same single or double, without a digit before the point for
/// magnitudes below 1: "159.32", ".84", "-.9", "0". Magnitudes from 1e-15 to below 1e15 never have an exponent, others
/// do if it is shorter ("1e+20"); infinities and NaN give "inf" and "nan".
std::string ShortestText(float value);
std::string ShortestText(double value);

/// The formats "##0.00", "###0", "#0.0000", ...: at least one digit before the point and exactly `decimals` after it.
/// Rounded to nearest, exact halves (of the binary value, see Round) away from zero; a zero has no sign.
std::string FormatFixed(double value, int decimals);

std::string TempText(float celsius);     ///< "45.25C"
std::string SpeedText(float rpm);        ///< "2400 RPM"
std::string VoltageText(float volts);    ///< "3.312 V"
std::string CurrentText(float amperes);  ///< "12.50 A"
std::string DutyText(float percent);     ///< "50%"
std::string ThermText(float percent);    ///< "THERM=22.8%": rounded to one decimal, shortest text

}  // namespace krx
