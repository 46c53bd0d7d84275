// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <chrono>
#include <optional>
#include <string>

#include "console/workbench.h"
#include "monitor/alarms.h"
#include "monitor/channels.h"

namespace krx {

/// One complete reading of the chip.
struct WatchRow {
  std::chrono::system_clock::time_point Time;
  std::array<std::string, channelCount> Captions;
  std::array<std::optional<double>, channelCount> Values;  ///< none: not in use, not measured, or its transfer failed
  bool AnythingRead = false;                               ///< a value was read, whether measured by the chip or not
  AlarmStates Alarms{};
  std::array<std::optional<int>, 3> Duties;  ///< percent, PWM1..PWM3
  bool PowerMode = false;                    ///< channel 11 is the processor current in A
  int Faults = 0;                            ///< failed transfers since the previous row
  std::string LastFault;                     ///< text of the last one
};

/// Runs the reading cycle until every channel has been read once. Failed transfers are counted in the row; their values
/// and those that the chip has not measured yet are left empty. Pins and Power of the bench decide which channels are
/// in use.
WatchRow MeasureRow(Workbench& bench);

// The output formats of a row, without a final line end.
std::string TableHeader(const WatchRow& row);                         ///< captions and units above the columns
std::string TableLine(const WatchRow& row);                           ///< local time and values; "!" marks an alarm
std::string JsonLine(const WatchRow& row, const std::string& place);  ///< one object; null where nothing was measured

/// The row as a page with one line per channel.
std::string ScreenPage(const WatchRow& row, const std::string& title);

}  // namespace krx
