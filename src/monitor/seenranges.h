// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "monitor/channels.h"

namespace krx {

/// Statistics of a channel since its last reset: °C, RPM or V. The mean is over the readings.
struct SeenRange {
  std::uint64_t Count = 0;
  double Minimum = 0;
  double Maximum = 0;
  double Mean = 0;
  bool Any() const { return Count > 0; }
};

/// Minimum, maximum and mean of every channel.
class SeenRanges {
 public:
  void Add(std::size_t channel, double value);
  const SeenRange& Of(std::size_t channel) const { return ranges_.at(channel); }
  void Reset(std::size_t channel) { ranges_.at(channel) = {}; }
  void ResetAll() { ranges_ = {}; }

 private:
  std::array<SeenRange, channelCount> ranges_{};
};

}  // namespace krx
