// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/alarmtext.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "monitor/alarms.h"
#include "monitor/pwmbehaviour.h"

namespace krx {
namespace {

using Bytes = std::vector<std::pair<int, int>>;

RegisterImage Seen(const Bytes& bytes) {
  RegisterImage seen;
  for (const auto& [reg, byte] : bytes) seen.Saw(static_cast<std::uint8_t>(reg), static_cast<std::uint8_t>(byte));
  return seen;
}

TEST(Alarms, EachBitSetsOnlyItsOwnIndicatorToBad) {
  std::string bad;
  for (int bit = 0; bit < 16; ++bit) {
    AlarmStates alarms{};
    alarms.fill(AlarmState::Bad);  // of the previous tick
    ApplyAlarms(static_cast<std::uint8_t>(1 << bit), static_cast<std::uint8_t>(1 << bit >> 8), alarms);
    for (std::size_t channel = 0; channel < channelCount; ++channel)
      if (alarms[channel] != AlarmState::Ok) bad += std::to_string(channel) + " ";
    bad += "| ";
  }
  EXPECT_EQ(bad, "11 | 9 | 10 | 7 | 1 | 0 | 2 | | 8 | | 3 | 4 | 5 | 6 | 1 | 2 | ");
}

TEST(AlarmReason, NamesTheLimitSeenOnTheBus) {
  const struct {
    std::size_t Channel;
    std::optional<double> Value;
    Bytes Registers;
    const char* Words;
    bool PowerMode = false;
  } rows[] = {
      {1, 62.25, {{0x4E, 0x0A}, {0x4F, 62}}, "above high limit 62 °C"},
      {0, -11, {{0x50, 0xF6}, {0x51, 0x50}}, "below low limit -10 °C"},
      {0, 62, {{0x50, 0xF6}, {0x51, 62}}, "out of limits"},
      {0, -10, {{0x50, 0xF6}, {0x51, 62}}, "out of limits"},
      {0, 99, {{0x50, 0x0A}}, "out of limits"},
      {0, std::nullopt, {{0x50, 0x0A}, {0x51, 62}}, "out of limits"},
      {4, 1999, {{0x56, 0x94}, {0x57, 0x11}}, "below low limit 2400 RPM"},  // 4500 counts, two pulses for one
      {4, 0, {{0x57, 0x11}}, "out of limits"},                              // half a count is not a limit
      {4, 30000, {{0x56, 0x94}, {0x57, 0x11}}, "out of limits"},
      {7, 5.3, {{0x4A, 0xB8}, {0x4B, 0xC8}}, "above high limit 5.200 V"},
      {11, 20, {{0x44, 0x64}, {0x45, 0x82}}, "below low limit 22.40 A", true},
      {2, -128, {{0x42, 0x80}, {0x52, 0x0A}}, "diode fault"},
      {2, -128, {{0x42, 0x40}, {0x52, 0x0A}}, "below low limit 10 °C"},  // the other diode's
      {1, -128, {{0x42, 0x40}}, "diode fault"},
  };
  FanCommon fans;
  fans.PulsesKnown = true;
  fans.ProgrammedPulses[1] = 2;
  Measurements measured;
  PowerSettings power;
  power.PowerEquation = false;
  for (const auto& row : rows) {
    power.PowerMode = row.PowerMode;
    EXPECT_EQ(AlarmReason(row.Channel, row.Value, Seen(row.Registers), {fans, power, measured}), row.Words)
        << row.Channel;
  }
}

TEST(PwmBehaviour, FollowsTheByteAndReportsAnOutdatedPanel) {
  const struct {
    int Register, Byte;
    std::size_t Output;
    bool Manual;
    std::string Shown;  ///< word, difference, remedy
  } rows[] = {
      {0x5C, 0x62, 0, false, "Always On||"},
      {0x5C, 0x02, 0, false, "Remote1 Control||"},
      {0x5E, 0xA2, 2, false, "Fastest of Remote 1,2||"},
      {0x5D, 0xE2, 1, true, "manual||"},
      {0x5D, 0xE2, 1, false, "manual|PWM2 is now set to Manual Control|Use slider"},
      {0x5E, 0x42, 2, true, "Remote2 Control|PWM3 is now set to Remote2 Control: the slider has no effect|Hide slider"},
      {0x5D, 0xE2, 0, true, "not read||"},
  };
  for (const auto& row : rows) {
    const PwmBehaviour behaviour = PwmBehaviourOf(Seen({{row.Register, row.Byte}}), row.Output, row.Manual);
    EXPECT_EQ(behaviour.Word + "|" + behaviour.Difference + "|" + behaviour.Remedy, row.Shown);
  }
}

}  // namespace
}  // namespace krx
