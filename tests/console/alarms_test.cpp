// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/alarms.h"

#include <gtest/gtest.h>

#include <vector>

namespace krx {
namespace {

TEST(Alarms, EachBitTurnsItsIndicatorBad) {
  struct Row {
    std::uint8_t Status1, Status2;
    std::vector<std::size_t> Bad;
  };
  const std::vector<Row> rows{{0x01, 0, {11}}, {0x02, 0, {9}}, {0x04, 0, {10}}, {0x08, 0, {7}},
                              {0x10, 0, {1}},  {0x20, 0, {0}}, {0x40, 0, {2}},  {0x80, 0, {}},
                              {0, 0x01, {8}},  {0, 0x02, {}},  {0, 0x04, {3}},  {0, 0x08, {4}},
                              {0, 0x10, {5}},  {0, 0x20, {6}}, {0, 0x40, {1}},  {0, 0x80, {2}}};
  for (const Row& row : rows) {
    AlarmStates alarms{};
    ApplyAlarms(row.Status1, row.Status2, alarms);
    AlarmStates expected{};
    expected.fill(AlarmState::Ok);
    for (const std::size_t channel : row.Bad) expected[channel] = AlarmState::Bad;
    EXPECT_EQ(alarms, expected) << int{row.Status1} << " " << int{row.Status2};
  }
}

TEST(Alarms, AClearDiodeBitLeavesTheTemperaturesResult) {
  AlarmStates alarms{};
  ApplyAlarms(0x50, 0x00, alarms);
  EXPECT_EQ(alarms[1], AlarmState::Bad);
  EXPECT_EQ(alarms[2], AlarmState::Bad);
  ApplyAlarms(0x00, 0xC0, alarms);
  EXPECT_EQ(alarms[1], AlarmState::Bad);
  ApplyAlarms(0x00, 0x00, alarms);
  EXPECT_EQ(alarms[1], AlarmState::Ok);
  EXPECT_EQ(alarms[2], AlarmState::Ok);
}

}  // namespace
}  // namespace krx
