// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/readingcycle.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "link/registeraccess.h"
#include "power/processorpower.h"
#include "registers/chip.h"
#include "registers/chipreadings.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

constexpr std::size_t fanTraces = 3;
constexpr std::size_t voltageTraces = 9;

constexpr auto nothing = [] {
  std::array<float, traceCount> row{};
  row.fill(std::numeric_limits<float>::quiet_NaN());
  return row;
}();

constexpr std::int16_t wrapOfThree = 99;
constexpr std::int16_t wrapOfFourAndFive = 100;

/// One member's Tmin and operating point, which belong to different zones.
struct TminOpPointRow {
  std::size_t TminZone;
  std::size_t OpPointZone;
};
constexpr std::array<TminOpPointRow, 3> tminOpPointRows{{{0, 1}, {1, 0}, {2, 2}}};

/// Advances a counter and returns the selected member.
std::size_t Next(std::int16_t& counter, std::int16_t wrap, int members) {
  if (++counter == wrap) counter = 0;
  return static_cast<std::size_t>(counter % members);
}

}  // namespace

ReadingCycle::ReadingCycle(Link& link, ReadingCycleState state)
    : link_(link), state_(state), series_(link, state.Fans, state.Power, state.Ranges), start_(link.ElapsedSeconds()) {}

void ReadingCycle::Tick() {
  constexpr std::int64_t late = 1'000'000;
  if (lastTick_ && Now() - *lastTick_ >= late) StandStill();
  Row row = nothing;
  ThermCaption.clear();
  const Link::MayGiveUp readings(link_);
  const auto append = [&] {
    // A chip that is not monitoring repeats its last values.
    if (state_.First.Monitoring() == false) row = nothing;
    lastTick_ = Now();
    state_.History.Append(*lastTick_, row);
  };
  try {
    Steps(row);
  } catch (...) {
    append();
    throw;
  }
  append();
}

void ReadingCycle::StandStill() {
  if (!lastTick_) return;
  state_.History.Append(*lastTick_ + 1, nothing);
  lastTick_.reset();
  measured_.fill(false);
}

std::int64_t ReadingCycle::Now() const {
  constexpr double microseconds = 1e6;
  return std::llround((link_.ElapsedSeconds() - start_) * microseconds);
}

void ReadingCycle::Post(Row& row, std::size_t firstTrace, std::span<const float> values) const {
  for (std::size_t i = 0; i < values.size(); ++i)
    if (measured_[firstTrace + i]) row[firstTrace + i] = values[i];
}

void ReadingCycle::Steps(Row& row) {
  TemperatureStep(row);
  TachStep(row);
  VoltageStep(row);
  AlarmStep();
  DutyStep();
  HysteresisStep();
  TminOpPointStep();
  ThermStep(row);
}

std::size_t ReadingCycle::Begin(ChannelKind kind, std::size_t slot) {
  const auto found =
      std::ranges::find_if(channels, [&](const Channel& row) { return row.Kind == kind && row.Slot == slot; });
  const auto channel = static_cast<std::size_t>(found - channels.begin());
  measured_[found->Trace] = false;
  failed_[channel] = true;
  return channel;
}

void ReadingCycle::Took(std::size_t channel) {
  failed_[channel] = false;
  const bool measured = state_.First.Took(channel);
  measured_[channels[channel].Trace] = measured;
  if (measured && state_.First.Measured(channel, state_.Power))
    series_.Add(channel, ChannelValue(channel, state_.Measured, state_.Power));
}

void ReadingCycle::TemperatureStep(Row& row) {
  const std::size_t slot = Next(Counters.Temperature, wrapOfThree, 3);
  const std::size_t channel = Begin(ChannelKind::Temperature, slot);
  const float fraction = TempFraction(link_, static_cast<int>(slot)).Value;
  const std::uint8_t byte = ReadByte(link_, chip::Zones[slot].Value);
  Measurements& measured = state_.Measured;
  measured.Temperatures[slot] = TempFromByte(byte, fraction);
  Took(channel);
  Post(row, 0, measured.Temperatures);
  if (measured_[voltageTraces + chip::CurrentSupply] && measured_[voltageTraces + chip::VccpSupply])
    row[powerTrace] =
        ProcessorPower(measured.Voltages[chip::CurrentSupply], measured.Voltages[chip::VccpSupply], state_.Power);
}

void ReadingCycle::TachStep(Row& row) {
  const std::size_t fan = Next(Counters.Tach, wrapOfFourAndFive, 4);
  const std::size_t channel = Begin(ChannelKind::Fan, fan);
  const int low = ReadByte(link_, chip::Tachs[fan].Low);
  const int high = ReadByte(link_, chip::Tachs[fan].High);
  Measurements& measured = state_.Measured;
  if (state_.Fans.PulsesKnown) {
    measured.FanSpeeds[fan] = state_.Fans.Corrected(TachToRPM(static_cast<float>(high * 256 + low)), fan);
    Took(channel);
  } else {
    failed_[channel] = false;
    measured.FanSpeeds.fill(std::numeric_limits<float>::quiet_NaN());
  }
  Post(row, fanTraces, measured.FanSpeeds);
}

void ReadingCycle::VoltageStep(Row& row) {
  const std::size_t slot = Next(Counters.Voltage, wrapOfFourAndFive, 5);
  const std::size_t channel = Begin(ChannelKind::Voltage, slot);
  const int extension = VoltageExtension(link_, static_cast<int>(slot));
  const int byte = ReadByte(link_, chip::Supplies[slot].Value);
  Measurements& measured = state_.Measured;
  measured.Voltages[slot] = VoltageFromCode(static_cast<int>(slot), byte * 4 + extension);
  Took(channel);
  Post(row, voltageTraces, measured.Voltages);
}

void ReadingCycle::AlarmStep() {
  const std::uint8_t status1 = ReadByte(link_, chip::InterruptStatus1);
  const std::uint8_t status2 = ReadByte(link_, chip::InterruptStatus2);
  ApplyAlarms(status1, status2, Alarms);
}

void ReadingCycle::DutyStep() {
  const std::size_t output = Next(Counters.Duty, wrapOfThree, 3);
  dutyFailed_[output] = true;
  const std::uint8_t duty = ReadByte(link_, chip::Outputs[output].Duty);
  dutyFailed_[output] = false;
  state_.Measured.DutyTexts[output] = DutyText(DutyToPercent(duty));
}

void ReadingCycle::HysteresisStep() {
  const std::size_t zone = Next(Counters.Hysteresis, wrapOfThree, 3);
  state_.Measured.ZoneHysteresis[zone] = HysteresisOf(link_, static_cast<int>(zone));
}

void ReadingCycle::TminOpPointStep() {
  const TminOpPointRow& row = tminOpPointRows[Next(Counters.TminOpPoint, wrapOfThree, 3)];
  const std::uint8_t tmin = ReadByte(link_, chip::Zones[row.TminZone].Tmin);
  const std::uint8_t opPoint = ReadByte(link_, chip::Zones[row.OpPointZone].OperatingPoint);
  state_.Zones.ZoneTmin[row.TminZone] = SignedByte(tmin);
  state_.Zones.ZoneOpPoint[row.OpPointZone] = SignedByte(opPoint);
}

void ReadingCycle::ThermStep(Row& row) {
  Measurements& measured = state_.Measured;
  const double period = std::max(0.0, ThermPeriod);
  if (link_.ElapsedSeconds() - ThermReadStart < period) {
    row[thermTrace] = measured.ThermPercent;
    return;
  }
  const std::uint8_t count = ReadByte(link_, chip::ThermTimer);
  measured.ThermPercent = ThermShare(count, static_cast<float>(period)).value_or(measured.ThermPercent);
  row[thermTrace] = measured.ThermPercent;
  measured.ThermReading = state_.Log.ThermLogMode == 2 ? ThermTime(count) : static_cast<float>(count);
  ThermReadStart = link_.ElapsedSeconds();
  state_.Pins.ThermRefresh();
  if (state_.Pins.ThermPinMode != 0) ThermCaption = ThermText(measured.ThermPercent);
}

}  // namespace krx
