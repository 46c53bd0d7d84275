// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/watchrow.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "console/workbench.h"
#include "simulator/simfaults.h"
#include "simulator/simwords.h"
#include "support/testbench.h"

namespace krx {
namespace {

/// A row with a negative temperature, a stopped fan in alarm, an unused pin and a duty that could not be read.
WatchRow ExampleRow(bool powerMode) {
  WatchRow row;
  row.Time = std::chrono::system_clock::from_time_t(1'700'000'000) + std::chrono::milliseconds(42);
  row.PowerMode = powerMode;
  for (std::size_t i = 0; i < channelCount; ++i) row.Captions[i] = ChannelCaption(i, FanCommon{}, powerMode);
  row.Values = {-0.25, 41.5, 127.75, 0, 4812.4, 12'345.5, std::nullopt, 5.037, 12.0906, 1.4709, 3.31, 2.4};
  row.Alarms.fill(AlarmState::Ok);
  row.Alarms[3] = row.Alarms[6] = row.Alarms[11] = AlarmState::Bad;
  row.Duties = {0, 100, std::nullopt};
  row.Faults = 1;
  return row;
}

TEST(WatchRow, TheTableKeepsItsColumnsAndMarksAlarms) {
  setenv("TZ", "UTC", 1);
  tzset();
  const WatchRow row = ExampleRow(false);
  EXPECT_EQ(
      TableHeader(row),
      "Time        Local  Remote 1  Remote 2   Fan 1   Fan 2   Fan 3   Fan 4       5V      12V     Vccp      Vcc  "
      "   2.5V   PWM1  PWM2  PWM3\n"
      "                C         C         C     RPM     RPM     RPM     RPM        V        V        V        V  "
      "      V      %     %     %");
  EXPECT_EQ(TableLine(row),
            "22:13:20    -0.25     41.50    127.75       0!   4812   12346       -    5.037   12.091    1.471    3.310 "
            "   2.400!     0   100     -");
}

TEST(WatchRow, JsonHasBareNumbersAndNullWhereNothingWasMeasured) {
  EXPECT_EQ(JsonLine(ExampleRow(false), "here"),
            R"({"time":"2023-11-14T22:13:20.042Z","source":"here","local":-0.25,"remote1":41.50,"remote2":127.75,)"
            R"("fan1":0,"fan2":4812,"fan3":12346,"fan4":null,"v5":5.037,"v12":12.091,"vccp":1.471,"vcc":3.310,)"
            R"("v2_5":2.400,"current":null,"pwm1":0,"pwm2":100,"pwm3":null,"alarms":["fan1","v2_5"],"faults":1})");
  WatchRow row = ExampleRow(true);
  EXPECT_NE(JsonLine(row, "").find(R"("v2_5":null,"current":2.40,)"), std::string::npos);
  EXPECT_NE(JsonLine(row, "").find(R"("alarms":["fan1","current"])"), std::string::npos);
  row.Alarms = {};
  EXPECT_NE(JsonLine(row, "").find(R"("alarms":null)"), std::string::npos);
}

TEST(WatchRow, ACurrentIsNotKnownWithoutVccp) {
  TestBench bench(TestBench::Medium::Board);
  Workbench work(bench.Bus);
  work.Power.PowerMode = true;
  bench.Poke(0x20, 0x60), bench.Poke(0x22, 0xC0);
  bench.Sim.AddFault(*ParseFault("fail=1+,reg=21"));
  const WatchRow row = MeasureRow(work);
  EXPECT_TRUE(row.Values[10]);
  EXPECT_FALSE(row.Values[currentChannel]) << *row.Values[currentChannel];
}

}  // namespace
}  // namespace krx
