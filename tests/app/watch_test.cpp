// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/watch.h"
#include "console/workbench.h"
#include "simulator/simwords.h"
#include "support/testbench.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "app/testhost.h"
#include "app/watchrow.h"

namespace krx {
namespace {

/// The number of a key in a JSON line; NaN for null.
double NumberOf(const std::string& line, const std::string& key) {
  const std::size_t at = line.find("\"" + key + "\":");
  EXPECT_NE(at, std::string::npos) << key << " in: " << line;
  const std::string rest = line.substr(at + key.size() + 3);
  return rest.starts_with("null") ? std::nan("") : std::stod(rest);
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

/// Checks that every value is in range, or missing where that is allowed.
void ExpectPlausible(const std::string& line, bool complete) {
  const std::tuple<const char*, double, double> rows[] = {
      {"local", 20, 40},    {"remote1", 20, 60},  {"remote2", 20, 60}, {"fan1", 4700, 4900}, {"fan2", 3500, 3700},
      {"fan3", 2550, 2650}, {"fan4", 2350, 2450}, {"v5", 4.8, 5.2},    {"v12", 11.8, 12.4},  {"vccp", 1.3, 1.6},
      {"vcc", 3.2, 3.4},    {"v2_5", 2.2, 2.6},   {"pwm1", 0, 100},    {"pwm3", 0, 100}};
  for (const auto& [key, from, to] : rows) {
    const double value = NumberOf(line, key);
    EXPECT_TRUE(std::isnan(value) ? !complete : value >= from && value <= to) << key << " in: " << line;
  }
}

TEST(Watch, TheFirstRowComesAtOnceAndUnmeasuredValuesAreLeftOut) {
  for (const std::string bus : {"printer-port", "smbus"}) {
    TestHost host;
    ASSERT_EQ(host.Run("watch --json --count 3 --interval 2 --bus " + bus), 0);
    const auto lines = host.Lines();
    ASSERT_EQ(lines.size(), 3U);
    const std::string start = bus == "smbus" ? "{\"time\":\"1970-" : "{\"time\":\"1970-01-01T00:00:00.0";
    EXPECT_TRUE(lines[0].starts_with(start)) << lines[0];
    for (const std::string& line : lines) {
      ExpectPlausible(line, &line != &lines[0]);
      EXPECT_EQ(NumberOf(line, "faults"), 0);
    }
    EXPECT_TRUE(host.Said("monitoring was off and has been started"));
  }
  TestHost halved, seeded;
  ASSERT_EQ(halved.Run("watch --json --count 2 --interval 2 --pulses 2"), 0);
  EXPECT_NEAR(NumberOf(halved.Lines()[1], "fan1"), 2400, 50);
  ASSERT_EQ(seeded.Run("watch --json --count 2 --interval 2 --pulses 2 --seed 8"), 0);
  EXPECT_NE(seeded.Data.str(), halved.Data.str());
}

TEST(Watch, FailuresAreCountedLoseTheirValueAndAreRetriedBetweenRows) {
  // Injected faults, fault counts of the second and the first row, whether the second has fans, and the message.
  const std::tuple<std::string, int, int, bool, const char*> rows[] = {
      {"fail=1,reg=7B", 0, 1, true, "bus fault 1: Error: 57"},
      {"fail=1,reg=7B --fault fail=2,reg=7B", 0, 2, true, "Programmed pulses: Error: 57"},
      {"fail=1,reg=7B --fault fail=2,reg=7B --fault fail=3,reg=7B", 1, 2, false, "bus fault 3: Error: 57"},
      {"fail=1,op=write,reg=40 --fault fail=2,op=write,reg=40", 0, 2, true, "Monitoring: Error: 57, Device I/O error"},
  };
  for (const auto& [faults, second, first, fansInSecond, talk] : rows) {
    TestHost host;
    ASSERT_EQ(host.Run("watch --json --bus smbus --count 3 --interval 2 --fault " + faults), 0);
    const auto lines = host.Lines();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(NumberOf(lines[0], "faults"), first);
    EXPECT_EQ(NumberOf(lines[1], "faults"), second);
    ExpectPlausible(lines[0], false);
    ExpectPlausible(lines[1], fansInSecond);
    EXPECT_EQ(std::isnan(NumberOf(lines[1], "fan1")), !fansInSecond);
    ExpectPlausible(lines[2], true);
    EXPECT_TRUE(host.Said(talk)) << host.Talk.str();
  }
  for (const auto& [key, reg, faults] :
       {std::tuple{"remote1", "25", 9}, {"fan1", "28", 5}, {"v5", "23", 3}, {"pwm1", "30", 9}}) {
    TestHost host;
    ASSERT_EQ(host.Run(fmt::format("watch --json --count 9 --interval 2 --fault fail=7+,reg={}", reg)), 0);
    EXPECT_FALSE(std::isnan(NumberOf(host.Lines()[1], key))) << host.Data.str();
    EXPECT_TRUE(std::isnan(NumberOf(host.Lines()[8], key))) << host.Data.str();
    EXPECT_TRUE(host.Said(fmt::format("krx5580: bus fault {}: Error: 57, Device I/O error", faults)));
  }
}

TEST(Watch, AChipThatCannotBeStartedHasNoValuesAndADeadBusEndsWithOne) {
  TestHost host;
  EXPECT_EQ(host.Run("watch --json --count 1 --fault fail=1+,op=write,reg=40"), 1);
  EXPECT_EQ(host.Run("watch --json --count 3 --fault fail=1+,op=write,reg=40"), 1) << "its counters run";
  for (const std::string& line : host.Lines()) {
    for (const char* key : {"local", "remote1", "v5"}) EXPECT_TRUE(std::isnan(NumberOf(line, key))) << line;
    EXPECT_GT(NumberOf(line, "faults"), 0);
  }
  TestHost dead;
  EXPECT_EQ(dead.Run("watch --count 2 --fault fail=12+"), 1);
  EXPECT_TRUE(Contains(dead.Lines().back(), "-       -"));
  EXPECT_TRUE(dead.Said("Monitoring: Error: 57, Device I/O error"));
}

TEST(Watch, RowsKeepToTheIntervalEndWithTheDurationAndDoNotQueueUp) {
  TestHost host;
  ASSERT_EQ(host.Run("watch --json --interval 2 --duration 7"), 0);
  std::string times;
  for (const std::string& line : host.Lines()) times += line.substr(26, 4);
  EXPECT_EQ(times, "00.002.004.006.0");
  EXPECT_NEAR(host.Time.Seconds(), 7, 0.5);
  TestHost slow;
  // A round on the SMBus takes more than 0.3 s, so every row starts four intervals after the one before.
  ASSERT_EQ(slow.Run("watch --bus smbus --interval 0.1 --duration 3 --json"), 0);
  EXPECT_NEAR(static_cast<double>(slow.Lines().size()), 7.5, 1.5);
}

TEST(Watch, AChannelBeyondItsLimitIsMarked) {
  TestHost host;
  ASSERT_EQ(host.Run("watch --count 2 --interval 2 --fault diode=1"), 0);
  EXPECT_TRUE(Contains(host.Lines().at(3), "!")) << host.Lines()[3];
  ASSERT_EQ(host.Run("watch --json --count 2 --interval 2 --fault diode=1"), 0);
  EXPECT_TRUE(Contains(host.Lines().back(), "\"alarms\":[\"remote1\"")) << host.Lines().back();
}

TEST(Watch, HardwareIsNotWrittenWithoutStart) {
  for (const auto& [bus, start] : {std::pair{ChipBus::PrinterPort, false},
                                   {ChipBus::PrinterPort, true},
                                   {ChipBus::Smbus, false},
                                   {ChipBus::Smbus, true}}) {
    TestHost host;
    Simulation hardware(host.Time, SimOptions{});
    ChipConnection connection({MediumKind::Linux, "PC", {}, [&] { return hardware.MakeCommsModule(); }}, host);
    connection.Find({.Bus = bus, .Address = {}});
    hardware.Trace().Clear();
    Watch({.Count = 3, .Duration = {}, .Start = start}, connection, host);
    const std::string traffic = " " + hardware.Trace().Text(TraceFilter::Bus);
    // W writes the chip, S a switch device of the board, C its heaters; 0x79 is cleared by being read.
    EXPECT_EQ(Contains(traffic, " W"), start) << traffic;
    EXPECT_EQ(Contains(traffic, "R40 R40 W40:01"), start) << traffic;
    EXPECT_EQ(Contains(traffic, " S") || Contains(traffic, " C"), start && bus == ChipBus::PrinterPort) << traffic;
    EXPECT_FALSE(Contains(traffic, "R79")) << traffic;
    EXPECT_EQ(host.Said("monitoring is off, values are out of date: use --start to start it"), !start);
  }
}

TEST(Watch, CtrlCAbortsARowBetweenTwoTransfers) {
  for (const int transfer : {3, 40}) {  // of the preparation, and of a row
    TestHost host;
    host.Pumping.OnPump = [&] { host.Stop = host.Stop || host.Pumping.Calls == transfer; };
    EXPECT_EQ(host.Run("watch --bus smbus --json"), 0) << transfer;
    EXPECT_EQ(host.Pumping.Calls, transfer) << "no transfer waits after it";
    EXPECT_EQ(host.Data.str(), "") << "no partly read row";
  }
  for (const auto& [command, code] : {std::pair{"watch", 0}, {"dump", 1}}) {
    TestHost host;
    host.Stop = true;
    EXPECT_EQ(RunCommand({command}, host), code);
    EXPECT_EQ(host.Data.str() + host.Talk.str(), code == 0 ? "" : "krx5580: interrupted\n");
  }
}

TEST(Watch, OnATerminalOnePageIsUpdatedUntilCtrlC) {
  TestHost host;
  host.ScreenHeight = 24;
  int waits = 0;
  host.OnWait = [&] { host.Stop = ++waits == 2; };
  EXPECT_EQ(host.Run("watch"), 0);
  const std::string text = host.Data.str();
  EXPECT_TRUE(text.starts_with("\x1b[?1049h\x1b[?25l\x1b[H"));
  const std::string back = text.substr(text.find("\x1b[?25h\x1b[?1049l"));  // with the last page in the terminal
  EXPECT_TRUE(Contains(back, "  Remote 1  ") && Contains(back, "readings: 2, bus faults: 0")) << back;
}

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

TEST(WatchRow, ACurrentIsUnknownWithoutVccp) {
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
