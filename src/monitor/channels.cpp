// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/channels.h"

#include <algorithm>
#include <cmath>

#include "fans/fantables.h"
#include "power/processorpower.h"
#include "registers/chip.h"
#include "registers/numerics.h"

namespace krx {
namespace {

bool MeasuresCurrent(std::size_t channel, bool powerMode) {
  return channel == currentChannel && powerMode;
}

}  // namespace

std::string ChannelCaption(std::size_t channel, const FanCommon& fans, bool powerMode) {
  const Channel& row = channels.at(channel);
  if (MeasuresCurrent(channel, powerMode)) return "Current";
  if (row.Kind == ChannelKind::Fan) {
    const std::string& label = fans.FanLabel.at(row.Slot);
    if (std::ranges::find(fanTypes, label, &FanType::Label) != fanTypes.end()) return label;
  }
  return std::string(row.Caption);
}

GaugeScale ChannelScale(std::size_t channel, bool powerMode) {
  return MeasuresCurrent(channel, powerMode) ? currentScale : channels.at(channel).Scale;
}

const Quantity& ChannelQuantity(std::size_t channel, bool powerMode) {
  return MeasuresCurrent(channel, powerMode) ? currentQuantity : channels.at(channel).Quantity;
}

Strip ChannelChart(std::size_t channel, bool powerMode) {
  return MeasuresCurrent(channel, powerMode) ? Strip::Strip2 : channels.at(channel).Chart;
}

double ChannelValue(std::size_t channel, const Measurements& measured, const PowerSettings& power) {
  const Channel& row = channels.at(channel);
  switch (row.Kind) {
    case ChannelKind::Temperature:
      return measured.Temperatures.at(row.Slot);
    case ChannelKind::Fan:
      return measured.FanSpeeds.at(row.Slot);
    case ChannelKind::Voltage:
      break;
  }
  const float volts = measured.Voltages.at(row.Slot);
  if (!MeasuresCurrent(channel, power.PowerMode)) return volts;
  // This argument order keeps NaN (unknown).
  return std::max(ProcessorCurrent(volts, measured.Voltages[chip::VccpSupply], power), 0.0F);
}

std::string ReadoutText(std::size_t channel, const Measurements& measured, const PowerSettings& power) {
  const auto value = static_cast<float>(ChannelValue(channel, measured, power));
  switch (channels.at(channel).Kind) {
    case ChannelKind::Temperature:
      return TempText(value);
    case ChannelKind::Fan:
      return std::isnan(value) ? "– RPM" : SpeedText(value);
    case ChannelKind::Voltage:
      break;
  }
  return MeasuresCurrent(channel, power.PowerMode) ? CurrentText(value) : VoltageText(value);
}

}  // namespace krx
