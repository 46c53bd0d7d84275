// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/logcolumns.h"

#include <gtest/gtest.h>

#include <limits>

namespace krx {
namespace {

TEST(LogColumns, EverySlotHasItsOwnValueAndFormat) {
  Measurements measured;
  measured.Temperatures = {45.25F, -.5F, 30};
  measured.FanSpeeds = {4800.4F, 0, 0, 1199.6F};
  measured.Voltages = {5.04F, 12.1F, 1.5F, 3.31F, 1.2F};
  measured.DutyTexts = {"40%", "", "100%"};
  measured.ThermReading = 227.6F;
  ZoneState zones;
  zones.ZoneTmin = {40, -2, 41};
  zones.ZoneOpPoint = {60, 61, 62};
  const PowerSettings power;  // the Rout equation is chosen, the log uses the other one
  const std::array<const char*, logColumnCount> expected{
      "45.25",  "-.5",    "30",     "40%",     "",   "100%", "4800", "0",  "0",  "1200", "12.1000", "5.0400",
      "1.2000", "1.5000", "3.3100", "24.0000", "40", "-2",   "41",   "60", "61", "62",   "227.6"};
  for (std::size_t slot = 0; slot < logColumnCount; ++slot) {
    EXPECT_EQ(LogColumnText(slot, {measured, zones, power}), expected[slot]) << logColumnTitles[slot];
  }
  measured.FanSpeeds[0] = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(LogColumnText(6, {measured, zones, power}), "-") << "an unknown speed";
}

}  // namespace
}  // namespace krx
