// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "link/linknewcomport06.h"
#include "monitor/channels.h"
#include "monitor/seenranges.h"

namespace krx {

/// Adds readings to the ranges, and lets a channel's range begin anew when its readings become those of something else:
/// other pulses per revolution, another tach source, a temperature offset, a pin that got another function, the
/// constants of the processor current. Follows what passes on the bus and asks nothing of it.
class RangeSeries {
 public:
  /// All are to outlive it.
  RangeSeries(Link& link, const FanCommon& fans, const PowerSettings& power, SeenRanges& ranges);
  RangeSeries(const RangeSeries&) = delete;
  RangeSeries& operator=(const RangeSeries&) = delete;

  /// The channel's latest reading, in its unit. Left out are readings that the chip may have made before the change
  /// (for 1 s), and the temperature of a remote diode that is open.
  void Add(std::size_t channel, double value);

 private:
  void SawByte(std::uint8_t reg, std::uint8_t byte);
  bool Rescaled(std::size_t channel);

  Link& link_;
  const FanCommon& fans_;
  const PowerSettings& power_;
  SeenRanges& ranges_;
  std::array<std::optional<std::uint8_t>, 256> known_{};  ///< bytes before the one that passes
  std::array<double, channelCount> settled_{};            ///< clock readings from which the values count
  std::array<float, channelCount> fanFactors_{};
  PowerSettings lastPower_;
  RegisterImage::Subscription seen_;
};

}  // namespace krx
