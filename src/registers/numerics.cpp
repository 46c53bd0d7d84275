// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/numerics.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "link/commserror.h"

namespace krx {
namespace {

constexpr std::string_view blanks = " \t\r\n";

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

std::size_t CountDigits(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::find_if_not(text, IsDigit) - text.begin());
}

/// The leading number of a text. Length 0: there is none.
struct Scan {
  std::size_t Start = 0;   ///< of the number, after the blanks
  std::size_t Length = 0;  ///< sign and exponent included
  bool Below1 = false;     ///< by the sign of its exponent, or by its integer digits if it has none
};

Scan ScanNumber(std::string_view text) {
  Scan scan;
  scan.Start = std::min(text.find_first_not_of(blanks), text.size());
  std::size_t at = scan.Start;
  const auto rest = [&] { return text.substr(at); };
  const auto skipSign = [&] {
    if (rest().starts_with('+') || rest().starts_with('-')) ++at;
  };

  skipSign();
  const std::string_view whole = rest().substr(0, CountDigits(rest()));
  at += whole.size();
  std::size_t decimals = 0;
  if (rest().starts_with('.')) {
    decimals = CountDigits(rest().substr(1));
    at += 1 + decimals;
  }
  if (whole.size() + decimals == 0) return scan;
  scan.Length = at - scan.Start;
  scan.Below1 = whole.find_first_not_of('0') == std::string_view::npos;

  if (rest().starts_with('e') || rest().starts_with('E')) {
    ++at;
    const bool negative = rest().starts_with('-');
    skipSign();
    const std::size_t digits = CountDigits(rest());
    if (digits > 0) {
      scan.Length = at + digits - scan.Start;
      scan.Below1 = negative;
    }
  }
  return scan;
}

/// to_chars for any argument list; a double in fixed notation has at most 309 digits before the point.
template <typename... Arguments>
std::string ToText(Arguments... arguments) {
  std::array<char, 400> buffer;
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), arguments...);
  return {buffer.data(), result.ptr};
}

template <typename Real>
std::string Shortest(Real value) {
  if (value == 0) return "0";
  const double magnitude = std::abs(static_cast<double>(value));
  if (!(magnitude >= 1e-15 && magnitude < 1e15)) return ToText(value);
  std::string text = ToText(value, std::chars_format::fixed);
  if (const auto zero = text.find("0."); zero == (value < 0 ? 1U : 0U)) text.erase(zero, 1);
  return text;
}

}  // namespace

double Val(std::string_view text) {
  const Scan scan = ScanNumber(text);
  if (scan.Length == 0) return 0;
  std::string_view number = text.substr(scan.Start, scan.Length);
  if (number.starts_with('+')) number.remove_prefix(1);
  double value = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    const double infinity = std::numeric_limits<double>::infinity();
    value = scan.Below1 ? 0 : (number.starts_with('-') ? -infinity : infinity);
  }
  return value + 0.0;  // turns -0 into 0
}

bool IsNumber(std::string_view text) {
  const Scan scan = ScanNumber(text);
  const auto rest = text.substr(scan.Start + scan.Length);
  return scan.Length > 0 && rest.find_first_not_of(blanks) == std::string_view::npos;
}

int CInt(double value) {
  const double whole = std::nearbyint(value);
  if (!(whole >= std::numeric_limits<int>::min() && whole <= std::numeric_limits<int>::max())) throw Overflow();
  return static_cast<int>(whole);
}

double Floor(double value) {
  return std::floor(value);
}

double Round(double value, int decimals) {
  if (!std::isfinite(value)) return value;
  return Val(ToText(value, std::chars_format::fixed, decimals));
}

std::string ShortestText(float value) {
  return Shortest(value);
}

std::string ShortestText(double value) {
  return Shortest(value);
}

std::string FormatFixed(double value, int decimals) {
  // An exact half is an odd multiple of 2^-(decimals + 1); to_chars rounds it to even, so move it away from zero.
  if (std::fmod(std::ldexp(std::abs(value), decimals + 1), 2.0) == 1.0) {
    value = std::nextafter(value, std::copysign(std::numeric_limits<double>::infinity(), value));
  }
  std::string text = ToText(value, std::chars_format::fixed, decimals);
  if (text.find_first_not_of("-0.") == std::string::npos && text.starts_with('-')) text.erase(0, 1);
  return text;
}

std::string TempText(float celsius) {
  return FormatFixed(celsius, 2) + "C";
}

std::string SpeedText(float rpm) {
  return FormatFixed(rpm, 0) + " RPM";
}

std::string VoltageText(float volts) {
  return FormatFixed(volts, 3) + " V";
}

std::string CurrentText(float amperes) {
  return FormatFixed(amperes, 2) + " A";
}

std::string DutyText(float percent) {
  return FormatFixed(percent, 0) + "%";
}

std::string ThermText(float percent) {
  return "THERM=" + ShortestText(Round(percent, 1)) + "%";
}

}  // namespace krx
