// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/alarms.h"

namespace krx {
namespace {

constexpr std::size_t remote1Channel = 1;

struct StatusPlace {
  std::uint8_t Status;
  int Bit;
};

StatusPlace PlaceOf(const Channel& channel) {
  switch (channel.Kind) {
    case ChannelKind::Temperature:
      return {chip::InterruptStatus1, chip::Zones[channel.Slot].StatusBit};
    case ChannelKind::Fan:
      return {chip::InterruptStatus2, chip::Tachs[channel.Slot].StatusBit};
    case ChannelKind::Voltage:
      break;
  }
  const chip::Supply& supply = chip::Supplies[channel.Slot];
  return {supply.Status, supply.StatusBit};
}

}  // namespace

void ApplyAlarms(std::uint8_t status1, std::uint8_t status2, AlarmStates& alarms) {
  for (std::size_t channel = 0; channel < channels.size(); ++channel) {
    const StatusPlace place = PlaceOf(channels[channel]);
    const std::uint8_t status = place.Status == chip::InterruptStatus1 ? status1 : status2;
    alarms[channel] = (status >> place.Bit & 1) != 0 ? AlarmState::Bad : AlarmState::Ok;
  }
  for (std::size_t diode = 0; diode < 2; ++diode) {
    const bool fault = (status2 >> (chip::Diode1Bit + static_cast<int>(diode)) & 1) != 0;
    if (fault) alarms[remote1Channel + diode] = AlarmState::Bad;
  }
}

}  // namespace krx
