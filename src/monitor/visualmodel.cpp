// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/visualmodel.h"

#include <algorithm>

#include "autocontrol/zonestate.h"
#include "control/pinfunctions.h"
#include "controls/tracehistory.h"
#include "link/registeraccess.h"
#include "monitor/displaystate.h"
#include "monitor/easysetup.h"
#include "monitor/firstvalues.h"
#include "monitor/livingvalue.h"
#include "monitor/readingcycle.h"
#include "monitor/seenranges.h"
#include "records/logstate.h"
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

constexpr std::int16_t boardMedium = 1;
constexpr std::int16_t smbusMedium = 0;

/// The slider's captions, by output.
constexpr std::array<std::string_view, 3> sliderCaptions{"Fan1", "Fan2", "Fan3"};

/// The output (1..3) that drives each fan: fans 3 and 4 share the third.
constexpr std::array<std::int16_t, 4> fanOutputs{1, 2, 3, 3};

}  // namespace

VisualModel::VisualModel(const VisualParts& parts, VisualFrame& frame)
    : parts_(parts),
      frame_(frame),
      seen_(parts.ChipLink.Seen.Subscribe([this](std::uint8_t reg, const auto&) { SawByte(reg); })) {
  state_.ChannelShown.fill(true);
  state_.TraceShown.fill(true);
  std::ranges::copy(traceNames, state_.TraceNames.begin());
  state_.Gauge.SetScale(temperatureScale.Minimum, temperatureScale.Maximum);
  Relabel();
  ShowPwmPanel();
  ShowReadings();
}

void VisualModel::EnterVisualDisplay() {
  const Link::MayGiveUp readings(parts_.ChipLink);
  frame_.StopContinuousReading();
  LabelByPowerMode();
  parts_.Pins.ThermRefresh();
  LabelByThermPin();
  parts_.Pins.AlertRefresh();
  LabelByAlertPin();
  ShowPwmPanel();
  parts_.Cycle.DutyStep();
  ShowDuty();
  if (!visited_) {
    visited_ = true;
    parts_.History.Clear();
    state_.Strip2Range = firstStrip2Range;
    parts_.Display.SelectedChannel = 0;
    state_.Marks.fill(CaptionMark::Plain);
    state_.Marks[0] = CaptionMark::FirstShown;
  }
  ShowReadout();
  if (parts_.Log.TimerStateAtLogStart) return;
  if (parts_.Display.EasySetupUsed || (ReadByte(parts_.ChipLink, chip::Configuration1) & chip::Start) != 0) {
    StartCycle();
  }
}

void VisualModel::ConfigurationWritten(std::uint8_t byte) {
  if ((byte & chip::Start) != 0 && !parts_.Log.TimerStateAtLogStart) StartCycle();
}

void VisualModel::EnterReadWrite() {
  frame_.StopVisualTimer();
  parts_.Cycle.StandStill();
  frame_.StopContinuousReading();
}

void VisualModel::StartCycle() {
  // Failed start-up steps are retried before the cycle and never inside it, to keep ticks short.
  if (!frame_.VisualTimerRunning() && frame_.OwesStartUp()) {
    const bool powerMode = parts_.Power.PowerMode;
    frame_.RetryStartUp();
    ShowChangedMode(powerMode);
  }
  frame_.StartVisualTimer();
}

void VisualModel::Tick() {
  try {
    parts_.Cycle.Tick();
  } catch (...) {
    ShowReadings();
    throw;
  }
  ShowReadings();
  if (!parts_.Cycle.ThermCaption.empty()) state_.Strip2Caption = parts_.Cycle.ThermCaption;
}

void VisualModel::SelectChannel(std::size_t channel) {
  const Link::MayGiveUp readings(parts_.ChipLink);
  const Channel& row = channels.at(channel);
  parts_.Display.SelectedChannel = static_cast<std::int16_t>(channel);
  state_.Marks.fill(CaptionMark::Plain);
  state_.Marks[channel] = CaptionMark::Selected;
  // Before the reads: a failed one must not leave the previous channel's value under this one's name.
  ShowReadout();
  state_.ShownStrip = ChannelChart(channel, parts_.Power.PowerMode);
  PlaceLimits(parts_.ChipLink, channel, Limits(), state_.Gauge);
  if (row.Kind == ChannelKind::Fan) {
    parts_.Display.SelectedPwm = fanOutputs.at(row.Slot);
    ShowPwmPanel();
    ShowDuty();
    const auto output = static_cast<std::size_t>(parts_.Display.SelectedPwm - 1);
    const std::uint8_t duty = ReadByte(parts_.ChipLink, chip::Outputs.at(output).Duty);
    if (state_.SliderShown) ShowSlider(duty);
  }
  StartCycle();
}

void VisualModel::EasySetup() {
  WriteEasySetup(parts_.ChipLink);
  parts_.Pins.ThermRefresh();
  parts_.Pins.AlertRefresh();
  StartCycle();
  parts_.Display.EasySetupUsed = true;
  SelectChannel(0);
}

void VisualModel::SliderPressed() {
  sliderPressed_ = true;
  frame_.StopVisualTimer();
  parts_.Cycle.StandStill();
}

void VisualModel::SliderMoving(int value) {
  ShowSlider(value);
  if (parts_.ChipLink.EvalBoardMedium == boardMedium) WriteSlider(value);
}

void VisualModel::SliderReleased() {
  sliderPressed_ = false;
  StartCycle();
}

void VisualModel::SliderReleasedAfterMove(int value) {
  ShowSlider(value);
  if (parts_.ChipLink.EvalBoardMedium == smbusMedium) WriteSlider(value);
}

void VisualModel::WriteSlider(int value) {
  const auto caption = std::ranges::find(sliderCaptions, state_.SliderCaption);
  if (caption == sliderCaptions.end()) return;
  const auto output = static_cast<std::size_t>(caption - sliderCaptions.begin());
  parts_.Measured.DutyTexts.at(output) = state_.DutyCycleText;
  WriteByte(parts_.ChipLink, chip::Outputs.at(output).Duty, value);
}

void VisualModel::ReRead(const std::function<void()>& read) {
  parts_.Cycle.StandStill();
  const bool powerMode = parts_.Power.PowerMode;
  read();
  ShowChangedMode(powerMode);
}

void VisualModel::ShowChangedMode(bool powerModeBefore) {
  const auto selected = static_cast<std::size_t>(parts_.Display.SelectedChannel);
  if (parts_.Power.PowerMode != powerModeBefore && selected == currentChannel) {
    // Its markers are in the other unit; the next selection places them again.
    const GaugeScale scale = ChannelScale(currentChannel, parts_.Power.PowerMode);
    state_.Gauge.SetScale(scale.Minimum, scale.Maximum);
    state_.ShownStrip = ChannelChart(currentChannel, parts_.Power.PowerMode);
  }
  // Volts and amperes must not be mixed.
  if (parts_.Power.PowerMode != powerModeBefore) parts_.Ranges.Reset(currentChannel);
  Relabel();
  ShowPwmPanel();
  ShowReadings();
}

void VisualModel::Relabel() {
  LabelByPowerMode();
  LabelByThermPin();
  LabelByAlertPin();
  const auto selected = static_cast<std::size_t>(parts_.Display.SelectedChannel);
  RenewLimits(parts_.ChipLink.Seen, selected, Limits(), state_.Gauge);
  if (channels[selected].Kind == ChannelKind::Fan) PlaceAwaitedLimits();
}

void VisualModel::LabelByPowerMode() {
  const bool powerMode = parts_.Power.PowerMode;
  state_.Strip2Caption = powerMode ? "Proc Power (W)" : "";
  state_.Strip3Caption = powerMode ? "" : "2.5V";
  // Without a current input the power is meaningless.
  state_.TraceShown[powerTrace] = powerMode;
  for (std::size_t channel = 0; channel < channelCount; ++channel) {
    state_.Captions[channel] = ChannelCaption(channel, parts_.Fans, powerMode);
  }
}

void VisualModel::LabelByThermPin() {
  const std::int16_t mode = parts_.Pins.ThermPinMode;
  state_.ChannelShown[fan4Channel] = mode != thermOnTach4;
  state_.TraceShown[channels[fan4Channel].Trace] = mode != thermOnTach4;
  state_.ChannelShown[fiveVoltChannel] = mode != thermOn5v;
  state_.TraceShown[thermTrace] = mode != 0;
  state_.Strip2Caption = mode != 0 ? "THERM %" : "";
}

void VisualModel::LabelByAlertPin() {
  const bool measured = parts_.Pins.Alert25vMode != alertOn25v;
  state_.ChannelShown[currentChannel] = measured;
  state_.TraceShown[channels[currentChannel].Trace] = measured;
}

void VisualModel::ShowPwmPanel() {
  const std::int16_t output = parts_.Display.SelectedPwm;
  const auto index = static_cast<std::size_t>(output - 1);
  state_.SliderShown = parts_.Display.PwmManual.at(index);
  state_.PanelCaption = "Fan" + std::to_string(output) + " PWM";
  state_.SliderCaption = sliderCaptions.at(index);
  state_.Pwm = PwmBehaviourOf(parts_.ChipLink.Seen, index, state_.SliderShown);
}

void VisualModel::ShowSeen() {
  ShowReadout();
  ShowPwmPanel();
  ShowZones();
}

void VisualModel::ShowReadings() {
  ShowSeen();
  ShowDuty();
  state_.Alarms = parts_.Cycle.Alarms;
  if (parts_.Power.PowerMode && parts_.Display.SelectedChannel == currentChannel) PlaceAwaitedLimits();
}

void VisualModel::ShowReadout() {
  const auto channel = static_cast<std::size_t>(parts_.Display.SelectedChannel);
  state_.Gauge.SetValue(ChannelValue(channel, parts_.Measured, parts_.Power));
  state_.Readout = ReadoutText(channel, parts_.Measured, parts_.Power);
}

void VisualModel::ShowDuty() {
  const auto output = static_cast<std::size_t>(parts_.Display.SelectedPwm - 1);
  std::string text = parts_.Measured.DutyTexts.at(output);
  // The cycle may be stopped while other code has read the duty.
  const auto seen = parts_.ChipLink.Seen.Byte(chip::Outputs.at(output).Duty);
  if (text.empty() && seen) text = DutyText(DutyToPercent(*seen));
  state_.PwmText = text.empty() ? "–" : text;
  if (sliderPressed_) return;  // the user is moving it
  state_.DutyCycleText = state_.PwmText;
  if (text.empty()) return;
  // × 2.55 in an order that is exact: 50 % is 127.5 and becomes 128.
  state_.SliderValue = CInt(Val(text) * 255 / 100);
}

void VisualModel::ShowSlider(int value) {
  state_.SliderValue = value;
  state_.DutyCycleText = DutyText(DutyToPercent(static_cast<std::uint8_t>(value)));
}

void VisualModel::ShowZones() {
  const auto text = [&](std::size_t zone, std::uint8_t reg) {
    return ZoneDegrees(parts_.ChipLink.Seen, parts_.Zones, zone, reg);
  };
  for (std::size_t zone = 0; zone < chip::Zones.size(); ++zone) {
    state_.TminTexts[zone] = text(zone, chip::Zones[zone].Tmin);
    state_.OpPointTexts[zone] = text(zone, chip::Zones[zone].OperatingPoint);
  }
}

}  // namespace krx
