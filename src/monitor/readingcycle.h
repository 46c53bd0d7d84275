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

/// What the reading cycle shares with the rest of the console.
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

/// Round-robin counters, one per kind of reading. A counter is advanced before it is used and goes back to 0 at a
/// multiple of its number of members, so that the selection never jumps.
struct ReadingCounters {
  std::int16_t Temperature = 0;
  std::int16_t Tach = 0;
  std::int16_t Voltage = 0;
  std::int16_t Duty = 0;
  std::int16_t Hysteresis = 0;
  std::int16_t TminOpPoint = 0;
};

/// The periodic reading of the chip. One tick reads one member of every group, so that it stays short on a slow bus.
class ReadingCycle {
 public:
  ReadingCycle(Link& link, ReadingCycleState state);

  /// One tick: its nine steps in order, then one row appended to the history: every value that the chip had measured
  /// when it was read last, else NaN. A failing transfer gives the rest of the tick up and is thrown on; what was
  /// posted until then is appended, and no value made of several bytes is left half-read. So does the
  /// program's end, which gives a tick up between two reads.
  void Tick();

  /// No tick will come for a while: one row of nothing ends the traces, and each begins anew with its next reading. A
  /// tick that comes a second late without it does the same first.
  void StandStill();

  std::int64_t Now() const;  ///< microseconds, on the clock of the history's rows

  /// The duty step alone: reads the next output's duty into DutyTexts.
  void DutyStep();

  /// The last attempt to read the channel, or the duty of output 0..2, failed: what is kept of it is older than the
  /// tick.
  bool ReadFailed(std::size_t channel) const { return failed_.at(channel); }
  bool DutyFailed(std::size_t output) const { return dutyFailed_.at(output); }

  double ThermPeriod = 1;     ///< seconds between two readings of the THERM timer; negative counts as 0
  double ThermReadStart = 0;  ///< clock reading at which the present period began
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
  double start_;                             ///< clock reading that the history's times count from
  std::array<bool, traceCount> measured_{};  ///< read in the last attempt, and measured by the chip
  std::array<bool, channelCount> failed_{};
  std::array<bool, 3> dutyFailed_{};
  std::optional<std::int64_t> lastTick_;  ///< end of the last tick; none while the cycle stands still
};

}  // namespace krx
