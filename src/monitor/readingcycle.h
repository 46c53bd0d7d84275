// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "autocontrol/zonestate.h"
#include "control/pinfunctions.h"
#include "controls/tracehistory.h"
#include "fans/fancommon.h"
#include "link/linknewcomport06.h"
#include "monitor/alarms.h"
#include "monitor/channels.h"
#include "monitor/firstvalues.h"
#include "monitor/measurements.h"
#include "monitor/rangeseries.h"
#include "monitor/seenranges.h"
#include "power/powersettings.h"
#include "records/logstate.h"

namespace krx {

/// State shared between the reading cycle and the rest of the console.
struct ReadingCycleState {
  Measurements& Measured;
  ZoneState& Zones;
  const FanCommon& Fans;
  const PowerSettings& Power;
  const LogState& Log;
  PinFunctions& Pins;
  TraceHistory& History;
  FirstValues& First;
  SeenRanges& Ranges;
};

/// Round-robin counters, one per kind of reading. A counter is advanced before use and wraps to 0 at a multiple of its
/// number of members, so that the selection never jumps.
struct ReadingCounters {
  std::int16_t Temperature = 0;
  std::int16_t Tach = 0;
  std::int16_t Voltage = 0;
  std::int16_t Duty = 0;
  std::int16_t Hysteresis = 0;
  std::int16_t TminOpPoint = 0;
};

/// Periodic reading of the chip. One tick reads one member of every group, so that it stays short on a slow bus.
class ReadingCycle {
 public:
  ReadingCycle(Link& link, ReadingCycleState state);

  /// One tick: its nine steps in order, then one row is appended to the history: every value that was measured by the
  /// chip at its last reading, else NaN. A failed transfer aborts the tick and is rethrown; the values posted so far
  /// are appended, and no value of several bytes is left half read. A request to end the program aborts a tick between
  /// two reads in the same way.
  void Tick();

  /// The cycle stops for a while: an empty row ends the traces, and each restarts with its next reading. A tick that
  /// comes a second late does the same first.
  void StandStill();

  std::int64_t Now() const;  ///< microseconds, in the time of the history's rows

  /// The duty step alone: reads the next output's duty into DutyTexts.
  void DutyStep();

  /// True if the last attempt to read the channel, or the duty of output 0..2, failed, so that its value is out of
  /// date.
  bool ReadFailed(std::size_t channel) const { return failed_.at(channel); }
  bool DutyFailed(std::size_t output) const { return dutyFailed_.at(output); }

  double ThermPeriod = 1;     ///< seconds between two readings of the THERM timer; negative counts as 0
  double ThermReadStart = 0;  ///< clock reading at the start of the present period
  ReadingCounters Counters;
  AlarmStates Alarms{};
  std::string ThermCaption;  ///< "THERM=22.8%" after a tick that read THERM with the input enabled, else empty

 private:
  using Row = std::array<float, traceCount>;

  void Steps(Row& row);
  void Post(Row& row, std::size_t firstTrace, std::span<const float> values) const;
  void TemperatureStep(Row& row);
  void TachStep(Row& row);
  void VoltageStep(Row& row);
  void AlarmStep();
  void HysteresisStep();
  void TminOpPointStep();
  void ThermStep(Row& row);
  std::size_t Begin(ChannelKind kind, std::size_t slot);
  void Took(std::size_t channel);

  Link& link_;
  ReadingCycleState state_;
  RangeSeries series_;
  double start_;                             ///< clock reading at time 0 of the history
  std::array<bool, traceCount> measured_{};  ///< last read succeeded, and the value was measured by the chip
  std::array<bool, channelCount> failed_{};
  std::array<bool, 3> dutyFailed_{};
  std::optional<std::int64_t> lastTick_;  ///< end of the last tick; empty while the cycle is stopped
};

}  // namespace krx
