// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/rangeseries.h"

#include <utility>

#include "console/diodefault.h"

namespace krx {
namespace {

/// Bits that decide what a channel's value register stands for.
struct SeriesBits {
  std::size_t Channel;
  std::uint8_t Register;
  std::uint8_t Mask;
};

constexpr std::array<SeriesBits, 22> seriesBits{{
    {0, 0x71, 0xFF},  // temperature offsets
    {1, 0x70, 0xFF},
    {2, 0x72, 0xFF},
    {3, 0x7B, 0x03},  // pulses per revolution
    {4, 0x7B, 0x0C},
    {5, 0x7B, 0x30},
    {6, 0x7B, 0xC0},
    {3, 0x73, 0x01},  // tach source
    {4, 0x73, 0x02},
    {5, 0x73, 0x04},
    {6, 0x73, 0x08},
    {7, 0x73, 0x20},  // the inputs' attenuators
    {8, 0x73, 0x20},
    {9, 0x73, 0x20},
    {10, 0x73, 0x20},
    {11, 0x73, 0x20},
    {6, 0x78, 0x02},  // THERM takes the 5V or the Tach4 pin
    {7, 0x78, 0x02},
    {6, 0x7D, 0x02},
    {7, 0x7D, 0x02},
    {11, 0x7D, 0x01},              // the alert output takes the 2.5V pin
    {currentChannel, 0x40, 0x10},  // the 2.5V input stands for the processor current
}};

constexpr double conversionSeconds = 1;  ///< a tachometer's, the slowest

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
