// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>

#include "monitor/channels.h"

namespace krx {

/// State of an indicator. Unread until the first tick.
enum class AlarmState : std::uint8_t { Unread, Ok, Bad };

using AlarmStates = std::array<AlarmState, channelCount>;

/// Applies the bits of Interrupt Status 1 (0x41) and 2 (0x42) to the indicators; OOL and OVT have none. A diode-fault
/// bit can only set its indicator to bad: when clear, it keeps the state set by the temperature's own bit.
void ApplyAlarms(std::uint8_t status1, std::uint8_t status2, AlarmStates& alarms);

}  // namespace krx
