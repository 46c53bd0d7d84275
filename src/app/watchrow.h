// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <chrono>
#include <optional>
#include <string>

#include "console/alarms.h"
#include "console/channels.h"
#include "console/workbench.h"

namespace krx {

/// One complete reading of the chip.
struct WatchRow {
  std::chrono::system_clock::time_point Time;
  std::array<std::string, channelCount> Captions;
  std::array<std::optional<double>, channelCount> Values;  ///< none: not in use, not measured, or its transfer failed
  bool AnythingRead = false;                               ///< a value arrived, measured by the chip or not
  bool AnythingMeasured = false;                           ///< a value stands in Values
  AlarmStates Alarms{};
  std::array<std::optional<int>, 3> Duties;  ///< percent, PWM1..PWM3
  bool PowerMode = false;                    ///< channel 11 is the processor current in A
  int Faults = 0;                            ///< transfers that failed since the row before
  std::string LastFault;                     ///< text of the last of them
};

/// Which channels the chip has measured, as far as one can tell who only reads. A register unlike the one that a chip
/// comes up with was measured. One that is like it (-128 °C, 0 V, a fan that stands) is, when the chip says that it is
/// ready or has had the time to convert everything once.
class MeasuredChannels {
 public:
  /// The chip monitors and says that its values are ready.
  void SeenReady() { ready_ = true; }
  /// Monitoring is seen on, at this clock reading.
  void SeenMonitoring(double seconds) { monitoringSince_ = seconds; }
  /// Takes notice of the values just read; `now` is a clock reading.
  void Update(const Measurements& measured, double now);
  bool Has(std::size_t channel) const { return ready_ || measured_.at(channel); }

 private:
  bool ready_ = false;
  std::optional<double> monitoringSince_;
  std::array<bool, channelCount> measured_{};
};

/// Runs the reading cycle until every channel has been read once. Failing transfers are counted in the row and leave
/// their values out, and so does what the chip has not measured yet. Pins and Power of the bench say which channels are
/// in use.
WatchRow MeasureRow(Workbench& bench, MeasuredChannels& measured);

// The forms in which a row is shown; none ends with a line end.
std::string TableHeader(const WatchRow& row);                         ///< captions and units above the columns
std::string TableLine(const WatchRow& row);                           ///< local time and values; "!" marks an alarm
std::string JsonLine(const WatchRow& row, const std::string& place);  ///< one object; null where nothing was measured

/// The row as a page of lines, one a channel.
std::string ScreenPage(const WatchRow& row, const std::string& title);

}  // namespace krx
