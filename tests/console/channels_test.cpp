// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/channels.h"

#include <gtest/gtest.h>

namespace krx {
namespace {

TEST(Channels, FansAreCalledByTheirPlaceOrTheirNumber) {
  FanCommon fans;
  fans.FanLabel = {"CPU Fan", "Fan2", "Int. Circ.", "My fan"};
  EXPECT_EQ(ChannelCaption(3, fans, false), "CPU Fan");
  EXPECT_EQ(ChannelCaption(4, fans, false), "Fan 2");
  EXPECT_EQ(ChannelCaption(5, fans, false), "Int. Circ.");
  EXPECT_EQ(ChannelCaption(6, fans, false), "Fan 4");
  EXPECT_EQ(ChannelCaption(11, fans, false), "2.5V");
  EXPECT_EQ(ChannelCaption(11, fans, true), "Current");
}

TEST(Channels, ReadoutsCarryTheirUnits) {
  Measurements measured;
  measured.Temperatures = {45.25F, -10.25F, 0};
  measured.FanSpeeds[3] = 2399.6F;
  measured.Voltages = {5.04F, 0, 1.5F, 3.312F, 1.2F};
  PowerSettings power;
  EXPECT_EQ(ReadoutText(0, measured, power), "45.25C");
  EXPECT_EQ(ReadoutText(1, measured, power), "-10.25C");
  EXPECT_EQ(ReadoutText(6, measured, power), "2400 RPM");
  EXPECT_EQ(ReadoutText(10, measured, power), "3.312 V");
  EXPECT_EQ(ReadoutText(11, measured, power), "1.200 V");
  power.PowerMode = true;
  EXPECT_EQ(ReadoutText(11, measured, power), "0.00 A") << "-400 A";
  power.PowerEquation = false;
  EXPECT_EQ(ReadoutText(11, measured, power), "16.00 A");
  EXPECT_EQ(ChannelScale(11, true).Maximum, 180);
  EXPECT_EQ(ChannelChart(11, true), Strip::Strip2);
  EXPECT_EQ(ChannelChart(10, true), Strip::Strip3);
}

}  // namespace
}  // namespace krx
