// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "link/linknewcomport06.h"
#include "monitor/channels.h"

namespace krx {

/// Which channels the chip has measured. Before its first conversion a chip gives what it was reset to (-128 °C,
/// 0 RPM, 0 V), which is no measured value. A channel counts as measured from the first byte unlike the reset value, or
/// from a reading 1 s after monitoring was seen on: a fan may really stand still. Asks nothing of the bus.
class FirstValues {
 public:
  explicit FirstValues(Link& link);
  FirstValues(const FirstValues&) = delete;
  FirstValues& operator=(const FirstValues&) = delete;

  /// The cycle has read the channel. True when the chip has just measured that value: not before its first conversion,
  /// and not while it is seen not monitoring, when it repeats its last one.
  bool Took(std::size_t channel);
  /// What was read last is, or once was, a measured value.
  bool Measured(std::size_t channel) const { return measured_[channel]; }
  /// The same of the channel's value as it is shown: a current that rests on Vccp, too, needs both.
  bool Measured(std::size_t channel, const PowerSettings& power) const {
    return Measured(channel) && (channel != currentChannel || !power.NeedsVccp() || Measured(vccpChannel));
  }

  /// Bit 0 of 0x40 as last seen on the bus; nothing when it is not known.
  std::optional<bool> Monitoring() const;

 private:
  void SawMonitoring(bool on);

  Link& link_;
  std::array<bool, channelCount> measured_{};
  std::optional<double> monitoringSince_;  ///< clock reading at which it was seen on
  RegisterImage::Subscription watch_;
};

}  // namespace krx
