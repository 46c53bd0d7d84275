// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace krx {

struct LogState {
  std::string LogFileName;  ///< empty while no log is open
  std::string LogHeader;
  std::array<std::string, 23> ColumnTitles;  ///< an empty title: the column is not logged
  std::int32_t LogLineCount = 0;
  bool LogStopRequested = false;
  bool TimerStateAtLogStart = false;  ///< visual_timer was running when the log was started
  std::int16_t ThermLogMode = 1;      ///< 1: THERM as raw byte, 2: in milliseconds
};

}  // namespace krx
