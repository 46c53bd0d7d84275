// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/rangeseries.h"

#include <utility>

#include "monitor/diodefault.h"
#include "registers/chip.h"

namespace krx {
namespace {

/// Bits that determine what a channel's value register means.
struct SeriesBits {
  std::size_t Channel;
  std::uint8_t Register;
  std::uint8_t Mask;
};

constexpr SeriesBits PulsesOf(std::size_t channel, std::size_t tach) {
  return {channel, chip::FanPulses, static_cast<std::uint8_t>(chip::PulsesMask << chip::Tachs[tach].PulsesShift)};
}

constexpr std::array<SeriesBits, 22> seriesBits{{
    {0, chip::Zones[0].Offset, 0xFF},
    {1, chip::Zones[1].Offset, 0xFF},
    {2, chip::Zones[2].Offset, 0xFF},
    PulsesOf(3, 0),
    PulsesOf(4, 1),
    PulsesOf(5, 2),
    PulsesOf(6, 3),
    {3, chip::Configuration2, chip::Tachs[0].TwoWire},
    {4, chip::Configuration2, chip::Tachs[1].TwoWire},
    {5, chip::Configuration2, chip::Tachs[2].TwoWire},
    {6, chip::Configuration2, chip::Tachs[3].TwoWire},
    {7, chip::Configuration2, chip::Attenuators},
    {8, chip::Configuration2, chip::Attenuators},
    {9, chip::Configuration2, chip::Attenuators},
    {10, chip::Configuration2, chip::Attenuators},
    {11, chip::Configuration2, chip::Attenuators},
    {6, chip::Configuration3, chip::ThermEnabled},  // THERM uses the 5V or the Tach4 pin
    {7, chip::Configuration3, chip::ThermEnabled},
    {6, chip::Configuration4, chip::ThermOn5V},
    {7, chip::Configuration4, chip::ThermOn5V},
    {11, chip::Configuration4, chip::AlertOn25V},
    {currentChannel, chip::Configuration1, chip::CurrentInput},
}};

constexpr double conversionSeconds = 1;  ///< of a tachometer, the slowest

}  // namespace

RangeSeries::RangeSeries(Link& link, const FanCommon& fans, const PowerSettings& power, SeenRanges& ranges)
    : link_(link),
      fans_(fans),
      power_(power),
      ranges_(ranges),
      lastPower_(power),
      seen_(link.Seen.Subscribe([this](std::uint8_t reg, std::optional<std::uint8_t> byte) {
        if (byte) SawByte(reg, *byte);
      })) {}

void RangeSeries::SawByte(std::uint8_t reg, std::uint8_t byte) {
  const std::uint8_t before = std::exchange(known_[reg], byte).value_or(byte);
  const auto changed = static_cast<std::uint8_t>(before ^ byte);
  if (changed == 0) return;
  for (const SeriesBits& row : seriesBits) {
    if (row.Register != reg || (row.Mask & changed) == 0) continue;
    ranges_.Reset(row.Channel);
    settled_[row.Channel] = link_.ElapsedSeconds() + conversionSeconds;
  }
}

bool RangeSeries::Rescaled(std::size_t channel) {
  const Channel& row = channels.at(channel);
  if (row.Kind == ChannelKind::Fan) {
    const float factor = fans_.PulseCorrection(row.Slot);
    return std::exchange(fanFactors_[channel], factor) != factor;
  }
  return channel == currentChannel && std::exchange(lastPower_, power_) != power_;
}

void RangeSeries::Add(std::size_t channel, double value) {
  if (Rescaled(channel)) ranges_.Reset(channel);
  if (link_.ElapsedSeconds() < settled_[channel] || IsDiodeCode(channel, value, link_.Seen)) return;
  ranges_.Add(channel, value);
}

}  // namespace krx
