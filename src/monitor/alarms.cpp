// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/alarms.h"

namespace krx {
namespace {

enum class Effect { SetAndClear, SetOnly };

struct AlarmBit {
  int Status;  ///< 1: 0x41, 2: 0x42
  int Bit;
  std::size_t Channel;
  Effect Does;
};

// In the order of their effect. OOL (bit 7 of 0x41) and OVT (bit 1 of 0x42) have no indicator.
constexpr std::array<AlarmBit, 14> alarmMap{{
    {1, 0, 11, Effect::SetAndClear},  // 2.5V
    {1, 1, 9, Effect::SetAndClear},   // Vccp
    {1, 2, 10, Effect::SetAndClear},  // Vcc
    {1, 3, 7, Effect::SetAndClear},   // 5V
    {1, 4, 1, Effect::SetAndClear},   // R1T
    {1, 5, 0, Effect::SetAndClear},   // LT
    {1, 6, 2, Effect::SetAndClear},   // R2T
    {2, 0, 8, Effect::SetAndClear},   // 12V/VC
    {2, 2, 3, Effect::SetAndClear},   // FAN1
    {2, 3, 4, Effect::SetAndClear},   // FAN2
    {2, 4, 5, Effect::SetAndClear},   // FAN3
    {2, 5, 6, Effect::SetAndClear},   // F4P
    {2, 6, 1, Effect::SetOnly},       // D1
    {2, 7, 2, Effect::SetOnly},       // D2
}};

}  // namespace

void ApplyAlarms(std::uint8_t status1, std::uint8_t status2, AlarmStates& alarms) {
  for (const AlarmBit& row : alarmMap) {
    const bool set = ((row.Status == 1 ? status1 : status2) >> row.Bit & 1) != 0;
    if (set) {
      alarms[row.Channel] = AlarmState::Bad;
    } else if (row.Does == Effect::SetAndClear) {
      alarms[row.Channel] = AlarmState::Ok;
    }
  }
}

}  // namespace krx
