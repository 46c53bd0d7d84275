// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "autocontrol/zonestate.h"
#include "monitor/measurements.h"
#include "power/powersettings.h"

namespace krx {

// The slots of a log line, in file order.
inline constexpr std::size_t logColumnCount = 23;
inline constexpr std::size_t logStartColumns = 10;  ///< the first ten are logged by default
inline constexpr std::array<std::string_view, logColumnCount> logColumnTitles{"Int(°C)",
                                                                              "Ext1(°C)",
                                                                              "Ext2(°C)",
                                                                              "PWM1(%)",
                                                                              "PWM2(%)",
                                                                              "PWM3(%)",
                                                                              "Fan1 RPM",
                                                                              "Fan2 RPM",
                                                                              "Fan3 RPM",
                                                                              "Fan4 RPM",
                                                                              "12V",
                                                                              "5V",
                                                                              "2.5V",
                                                                              "Vccp",
                                                                              "Vcc",
                                                                              "Proc. Power (Watts)",
                                                                              "LocTmin(°C)",
                                                                              "Rem1Tmin(°C)",
                                                                              "Rem2Tmin(°C)",
                                                                              "LocOpPoint(°C)",
                                                                              "Rem1OpPoint(°C)",
                                                                              "Rem2OpPoint(°C)",
                                                                              "PROCHOT#"};
/// Title of the last slot while THERM is logged in milliseconds.
inline constexpr std::string_view logThermMillisecondsTitle = "PROCHOT#(ms)";

/// The sources of a log line.
struct LogSources {
  const Measurements& Measured;
  const ZoneState& Zones;
  const PowerSettings& Power;
};

/// The titles at start-up: the first ten slots, the others empty (not logged).
std::array<std::string, logColumnCount> StartColumnTitles();

/// The slot's present value in its number format, without tab.
std::string LogColumnText(std::size_t slot, const LogSources& sources);

}  // namespace krx
