// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/visualmodel.h"

#include <algorithm>

#include "console/easysetup.h"
#include "console/workbench.h"
#include "link/registeraccess.h"
#include "registers/chip.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

constexpr std::size_t fan4Channel = 6;
constexpr std::size_t fiveVoltChannel = 7;

constexpr GaugeScale firstStrip2Range{-20, 120};

constexpr std::int16_t thermOn5v = 1;
constexpr std::int16_t thermOnTach4 = 2;
constexpr std::int16_t alertOn25v = 2;

/// A temperature register as last seen on the bus.
std::string SeenDegrees(const RegisterImage& seen, std::uint8_t reg) {
  const auto byte = seen.Byte(reg);
  return byte ? std::to_string(static_cast<std::int8_t>(*byte)) : "–";
}

constexpr std::int16_t boardMedium = 1;
constexpr std::int16_t smbusMedium = 0;

/// The slider's captions, by output.
constexpr std::array<std::string_view, 3> sliderCaptions{"Fan1", "Fan2", "Fan3"};

/// The output (1..3) that drives each fan: fans 3 and 4 share the third.
constexpr std::array<std::int16_t, 4> fanOutputs{1, 2, 3, 3};

}  // namespace

VisualModel::VisualModel(Workbench& bench, MainTimers& timers)
    : bench_(bench),
      timers_(timers),
      seen_(bench.ChipLink.Seen.Subscribe([this](std::uint8_t reg, const auto&) { SawByte(reg); })) {
  state_.ChannelShown.fill(true);
  state_.TraceShown.fill(true);
  std::ranges::copy(traceNames, state_.TraceNames.begin());
  state_.Gauge.SetScale(temperatureScale.Minimum, temperatureScale.Maximum);
  Relabel();
  ShowPwmPanel();
  ShowReadings();
}

void VisualModel::EnterVisualDisplay() {
  const Link::MayGiveUp readings(bench_.ChipLink);
  timers_.StopContinuousReading();
  LabelByPowerMode();
  bench_.Pins.ThermRefresh();
  LabelByThermPin();
  bench_.Pins.AlertRefresh();
  LabelByAlertPin();
  ShowPwmPanel();
  bench_.Cycle.DutyStep();
  ShowDuty();
  if (!visited_) {
    visited_ = true;
    bench_.History.Clear();
    state_.Strip2Range = firstStrip2Range;
    bench_.Display.SelectedChannel = 0;
    state_.Marks.fill(CaptionMark::Plain);
    state_.Marks[0] = CaptionMark::FirstShown;
  }
  ShowReadout();
  if (bench_.Log.TimerStateAtLogStart) return;
  if (bench_.Display.EasySetupUsed || (ReadByte(bench_.ChipLink, chip::Configuration1) & chip::Start) != 0) {
    StartCycle();
  }
}

void VisualModel::ConfigurationWritten(std::uint8_t byte) {
  if ((byte & chip::Start) != 0 && !bench_.Log.TimerStateAtLogStart) StartCycle();
}

void VisualModel::EnterReadWrite() {
  timers_.StopVisualTimer();
  bench_.Cycle.StandStill();
  timers_.StopContinuousReading();
}

void VisualModel::StartCycle() {
  // What the start-up owes is tried before the cycle and never inside it: a tick is to stay as short as it is.
  if (!timers_.VisualTimerRunning() && !bench_.Start.Owed.empty()) {
    const bool powerMode = bench_.Power.PowerMode;
    RetryOwed(bench_);
    ShowReRead(powerMode);
  }
  timers_.StartVisualTimer();
}

void VisualModel::Tick() {
  try {
    bench_.Cycle.Tick();
  } catch (...) {
    ShowReadings();
    throw;
  }
  ShowReadings();
  if (!bench_.Cycle.ThermCaption.empty()) state_.Strip2Caption = bench_.Cycle.ThermCaption;
}

void VisualModel::SelectChannel(std::size_t channel) {
  const Link::MayGiveUp readings(bench_.ChipLink);
  const Channel& row = channels.at(channel);
  bench_.Display.SelectedChannel = static_cast<std::int16_t>(channel);
  state_.Marks.fill(CaptionMark::Plain);
  state_.Marks[channel] = CaptionMark::Selected;
  // Before the reads: a failing one must not leave the last channel's value under this one's name.
  ShowReadout();
  state_.ShownStrip = ChannelChart(channel, bench_.Power.PowerMode);
  PlaceLimits(bench_.ChipLink, channel, Limits(), state_.Gauge);
  if (row.Kind == ChannelKind::Fan) {
    bench_.Display.SelectedPwm = fanOutputs.at(row.Slot);
    ShowPwmPanel();
    ShowDuty();
    const auto output = static_cast<std::size_t>(bench_.Display.SelectedPwm - 1);
    const std::uint8_t duty = ReadByte(bench_.ChipLink, chip::Outputs.at(output).Duty);
    if (state_.SliderShown) ShowSlider(duty);
  }
  StartCycle();
}

void VisualModel::EasySetup() {
  WriteEasySetup(bench_.ChipLink);
  bench_.Pins.ThermRefresh();
  bench_.Pins.AlertRefresh();
  StartCycle();
  bench_.Display.EasySetupUsed = true;
  SelectChannel(0);
}

void VisualModel::SliderPressed() {
  sliderPressed_ = true;
  timers_.StopVisualTimer();
  bench_.Cycle.StandStill();
}

void VisualModel::SliderMoving(int value) {
  ShowSlider(value);
  if (bench_.ChipLink.EvalBoardMedium == boardMedium) WriteSlider(value);
}

void VisualModel::SliderReleased() {
  sliderPressed_ = false;
  StartCycle();
}

void VisualModel::SliderReleasedAfterMove(int value) {
  ShowSlider(value);
  if (bench_.ChipLink.EvalBoardMedium == smbusMedium) WriteSlider(value);
}

void VisualModel::WriteSlider(int value) {
  const auto caption = std::ranges::find(sliderCaptions, state_.SliderCaption);
  if (caption == sliderCaptions.end()) return;
  const auto output = static_cast<std::size_t>(caption - sliderCaptions.begin());
  bench_.Measured.DutyTexts.at(output) = state_.DutyCycleText;
  WriteByte(bench_.ChipLink, chip::Outputs.at(output).Duty, value);
}

StepProblems VisualModel::ReReadChip() {
  bench_.Cycle.StandStill();  // no tick comes between its reads
  const bool powerMode = bench_.Power.PowerMode;
  StepProblems problems = krx::ReReadChip(bench_);
  ShowReRead(powerMode);
  return problems;
}

void VisualModel::ShowReRead(bool powerModeBefore) {
  const auto selected = static_cast<std::size_t>(bench_.Display.SelectedChannel);
  if (bench_.Power.PowerMode != powerModeBefore && selected == currentChannel) {
    // Its markers stand for the other unit; the next selection places them anew.
    const GaugeScale scale = ChannelScale(currentChannel, bench_.Power.PowerMode);
    state_.Gauge.SetScale(scale.Minimum, scale.Maximum);
    state_.ShownStrip = ChannelChart(currentChannel, bench_.Power.PowerMode);
  }
  // Its volts are no amperes.
  if (bench_.Power.PowerMode != powerModeBefore) bench_.Ranges.Reset(currentChannel);
  Relabel();
  ShowPwmPanel();
  ShowReadings();
}

void VisualModel::Relabel() {
  LabelByPowerMode();
  LabelByThermPin();
  LabelByAlertPin();
  const auto selected = static_cast<std::size_t>(bench_.Display.SelectedChannel);
  RenewLimits(bench_.ChipLink.Seen, selected, Limits(), state_.Gauge);
  if (channels[selected].Kind == ChannelKind::Fan) PlaceAwaitedLimits();
}

void VisualModel::LabelByPowerMode() {
  const bool powerMode = bench_.Power.PowerMode;
  state_.Strip2Caption = powerMode ? "Proc Power (W)" : "";
  state_.Strip3Caption = powerMode ? "" : "2.5V";
  // Without a current input the power is a number without meaning.
  state_.TraceShown[powerTrace] = powerMode;
  for (std::size_t channel = 0; channel < channelCount; ++channel) {
    state_.Captions[channel] = ChannelCaption(channel, bench_.Fans, powerMode);
  }
}

void VisualModel::LabelByThermPin() {
  const std::int16_t mode = bench_.Pins.ThermPinMode;
  state_.ChannelShown[fan4Channel] = mode != thermOnTach4;
  state_.TraceShown[channels[fan4Channel].Trace] = mode != thermOnTach4;
  state_.ChannelShown[fiveVoltChannel] = mode != thermOn5v;
  state_.TraceShown[thermTrace] = mode != 0;
  state_.Strip2Caption = mode != 0 ? "THERM %" : "";
}

void VisualModel::LabelByAlertPin() {
  const bool measured = bench_.Pins.Alert25vMode != alertOn25v;
  state_.ChannelShown[currentChannel] = measured;
  state_.TraceShown[channels[currentChannel].Trace] = measured;
}

void VisualModel::ShowPwmPanel() {
  const std::int16_t output = bench_.Display.SelectedPwm;
  const auto index = static_cast<std::size_t>(output - 1);
  state_.SliderShown = bench_.Display.PwmManual.at(index);
  state_.PanelCaption = "Fan" + std::to_string(output) + " PWM";
  state_.SliderCaption = sliderCaptions.at(index);
  state_.Pwm = PwmBehaviourOf(bench_.ChipLink.Seen, index, state_.SliderShown);
}

void VisualModel::ShowSeen() {
  ShowReadout();
  ShowPwmPanel();
  ShowZones();
}

void VisualModel::ShowReadings() {
  ShowSeen();
  ShowDuty();
  state_.Alarms = bench_.Cycle.Alarms;
  if (bench_.Power.PowerMode && bench_.Display.SelectedChannel == currentChannel) PlaceAwaitedLimits();
}

void VisualModel::ShowReadout() {
  const auto channel = static_cast<std::size_t>(bench_.Display.SelectedChannel);
  state_.Gauge.SetValue(ChannelValue(channel, bench_.Measured, bench_.Power));
  state_.Readout = ReadoutText(channel, bench_.Measured, bench_.Power);
}

void VisualModel::ShowDuty() {
  const auto output = static_cast<std::size_t>(bench_.Display.SelectedPwm - 1);
  std::string text = bench_.Measured.DutyTexts.at(output);
  // The cycle may stand still, and somebody else have read it.
  const auto seen = bench_.ChipLink.Seen.Byte(chip::Outputs.at(output).Duty);
  if (text.empty() && seen) text = DutyText(DutyToPercent(*seen));
  state_.PwmText = text.empty() ? "–" : text;
  if (sliderPressed_) return;  // it is the user's
  state_.DutyCycleText = state_.PwmText;
  if (text.empty()) return;
  // Times 2.55, in an order that is exact: 50 % is 127.5 and becomes 128.
  state_.SliderValue = CInt(Val(text) * 255 / 100);
}

void VisualModel::ShowSlider(int value) {
  state_.SliderValue = value;
  state_.DutyCycleText = DutyText(DutyToPercent(static_cast<std::uint8_t>(value)));
}

void VisualModel::ShowZones() {
  const ZoneState& zones = bench_.Zones;
  for (std::size_t zone = 0; zone < zones.ZoneTmin.size(); ++zone) {
    const bool enabled = zones.ZoneOpEnable[zone];
    state_.TminTexts[zone] = enabled ? SeenDegrees(bench_.ChipLink.Seen, chip::Zones[zone].Tmin) : "Disabled";
    state_.OpPointTexts[zone] =
        enabled ? SeenDegrees(bench_.ChipLink.Seen, chip::Zones[zone].OperatingPoint) : "Disabled";
  }
}

}  // namespace krx
