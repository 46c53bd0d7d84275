// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "link/linknewcomport06.h"
#include "monitor/channels.h"

namespace krx {

/// Keeps track of which channels the chip has measured. Before its first conversion a chip returns reset values (-128
/// °C, 0 RPM, 0 V), which are not measured values. A channel counts as measured from the first byte that differs from
/// the reset value, or from a reading 1 s after monitoring was seen on, since a fan may really be stopped. Makes no
/// transfers.
class FirstValues {
 public:
  explicit FirstValues(Link& link);
  FirstValues(const FirstValues&) = delete;
  FirstValues& operator=(const FirstValues&) = delete;

  /// The cycle has read the channel. True when the chip has just measured this value: not before its first conversion,
  /// and not while monitoring is off, when it repeats the last value.
  bool Took(std::size_t channel);
  /// True once the channel has returned a measured value.
  bool Measured(std::size_t channel) const { return measured_[channel]; }
  /// The same for the shown value: a current that is derived from Vccp as well needs both.
  bool Measured(std::size_t channel, const PowerSettings& power) const {
    return Measured(channel) && (channel != currentChannel || !power.NeedsVccp() || Measured(vccpChannel));
  }

  /// Bit 0 of 0x40 as last seen on the bus; empty if unknown.
  std::optional<bool> Monitoring() const;

 private:
  void SawMonitoring(bool on);

  Link& link_;
  std::array<bool, channelCount> measured_{};
  std::optional<double> monitoringSince_;  ///< clock reading when it was first seen on
  RegisterImage::Subscription watch_;
};

}  // namespace krx
