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

/// Adds readings to the ranges, and restarts a channel's range when the meaning of its readings changes: pulses per
/// revolution, tach source, temperature offset, pin function, or the constants of the processor current. Follows the
/// transfers on the bus and makes none.
class RangeSeries {
 public:
  /// All must outlive it.
  RangeSeries(Link& link, const FanCommon& fans, const PowerSettings& power, SeenRanges& ranges);
  RangeSeries(const RangeSeries&) = delete;
  RangeSeries& operator=(const RangeSeries&) = delete;

  /// Adds the channel's latest reading, in its unit. Ignores readings that the chip may have taken before the change
  /// (for 1 s) and the reading of an open remote diode.
  void Add(std::size_t channel, double value);

 private:
  void SawByte(std::uint8_t reg, std::uint8_t byte);
  bool Rescaled(std::size_t channel);

  Link& link_;
  const FanCommon& fans_;
  const PowerSettings& power_;
  SeenRanges& ranges_;
  std::array<std::optional<std::uint8_t>, 256> known_{};  ///< previous bytes
  std::array<double, channelCount> settled_{};            ///< clock readings from which values count
  std::array<float, channelCount> fanFactors_{};
  PowerSettings lastPower_;
  RegisterImage::Subscription seen_;
};

}  // namespace krx
