// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/watch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "app/command.h"
#include "app/testhost.h"

namespace krx {
namespace {

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// The number behind a key of a JSON line; NaN for null.
double NumberOf(const std::string& line, const std::string& key) {
  const std::size_t at = line.find("\"" + key + "\":");
  EXPECT_NE(at, std::string::npos) << key << " in: " << line;
  const std::string rest = line.substr(at + key.size() + 3);
  return rest.starts_with("null") ? std::nan("") : std::stod(rest);
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(Watch, EveryChannelHasAPlausibleValueFromTheFirstRowOn) {
  TestHost host;
  ASSERT_EQ(RunCommand({"watch", "--json", "--count", "2"}, host), 0);
  const struct {
    const char* Key;
    double From, To;
  } rows[] = {{"local", 20, 40},    {"remote1", 20, 60},  {"remote2", 20, 60},  {"fan1", 4700, 4900},
              {"fan2", 3500, 3700}, {"fan3", 2550, 2650}, {"fan4", 2350, 2450}, {"v5", 4.8, 5.2},
              {"v12", 11.8, 12.4},  {"vccp", 1.3, 1.6},   {"vcc", 3.2, 3.4},    {"v2_5", 2.2, 2.6},
              {"pwm1", 0, 100},     {"pwm3", 0, 100},     {"faults", 0, 0}};
  for (const std::string& line : LinesOf(host.Data.str())) {
    for (const auto& row : rows) {
      EXPECT_GE(NumberOf(line, row.Key), row.From) << row.Key << " in: " << line;
      EXPECT_LE(NumberOf(line, row.Key), row.To) << row.Key << " in: " << line;
    }
  }
  EXPECT_TRUE(Contains(host.Talk.str(), "Simulated board, chip at 2Dh on printer port 0"));
  EXPECT_TRUE(Contains(host.Talk.str(), "monitoring was off and has been started"));
  TestHost halved;
  ASSERT_EQ(RunCommand({"watch", "--json", "--count", "1", "--pulses", "2"}, halved), 0);
  EXPECT_NEAR(NumberOf(halved.Data.str(), "fan1"), 2400, 50);
}

TEST(Watch, TheSameSeedGivesTheSameRowsAndAnotherSeedOthers) {
  const auto rowsOf = [](const std::string& seed) {
    TestHost host;
    EXPECT_EQ(RunCommand({"watch", "--json", "--count", "5", "--seed", seed}, host), 0);
    return host.Data.str();
  };
  EXPECT_EQ(rowsOf("7"), rowsOf("7"));
  EXPECT_NE(rowsOf("7"), rowsOf("8"));
}

TEST(Watch, RowsKeepToTheIntervalAndEndWithTheDuration) {
  TestHost host;
  ASSERT_EQ(RunCommand({"watch", "--json", "--interval", "2", "--duration", "7"}, host), 0);
  const auto lines = LinesOf(host.Data.str());
  ASSERT_EQ(lines.size(), 4U);
  // The clock stands at 1970 and the chip's first measurement takes 1.1 s.
  const char* times[] = {"1970-01-01T00:00:01.1", "1970-01-01T00:00:03.1", "1970-01-01T00:00:05.1",
                         "1970-01-01T00:00:07.1"};
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_TRUE(lines[i].starts_with(std::string("{\"time\":\"") + times[i])) << lines[i];
  }
}

TEST(Watch, ARowThatTakesLongerThanTheIntervalDoesNotQueueOthersUp) {
  TestHost host;
  // A round on the SMBus takes more than 0.3 s, so every row starts four intervals after the one before.
  ASSERT_EQ(RunCommand({"watch", "--bus", "smbus", "--interval", "0.1", "--duration", "3", "--json"}, host), 0);
  const auto rows = LinesOf(host.Data.str()).size();
  EXPECT_GE(rows, 6U);
  EXPECT_LE(rows, 9U);
}

TEST(Watch, AFailedTransferCostsItsValueIsCountedAndTheNextRowIsWhole) {
  TestHost host;
  // The Remote1 temperature is read twice a row.
  ASSERT_EQ(
      RunCommand({"watch", "--json", "--count", "3", "--fault", "fail=3,reg=25", "--fault", "fail=4,reg=25"}, host), 0);
  const auto lines = LinesOf(host.Data.str());
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(NumberOf(lines[0], "faults"), 0);
  EXPECT_GT(NumberOf(lines[1], "faults") + NumberOf(lines[2], "faults"), 0);
  EXPECT_TRUE(Contains(lines[1] + lines[2], "\"remote1\":null"));
  EXPECT_TRUE(Contains(host.Talk.str(), "krx5580: bus fault 2: Error: 57, Device I/O error"));
}

TEST(Watch, ADeadBusIsToldAndEndsWithOne) {
  TestHost host;
  EXPECT_EQ(RunCommand({"watch", "--count", "2", "--fault", "fail=12+"}, host), 1);
  EXPECT_TRUE(Contains(LinesOf(host.Data.str()).back(), "-       -"));
  EXPECT_TRUE(Contains(host.Talk.str(), "Monitoring: Error: 57, Device I/O error"));
}

TEST(Watch, AChannelBeyondItsLimitIsMarked) {
  TestHost host;
  ASSERT_EQ(RunCommand({"watch", "--count", "1", "--fault", "diode=1"}, host), 0);
  const auto lines = LinesOf(host.Data.str());
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_TRUE(Contains(lines[2], "!")) << lines[2];
  TestHost json;
  ASSERT_EQ(RunCommand({"watch", "--json", "--count", "1", "--fault", "diode=1"}, json), 0);
  EXPECT_TRUE(Contains(json.Data.str(), "\"alarms\":[\"remote1\"")) << json.Data.str();
}

TEST(Watch, HardwareIsNotWrittenUntilStartIsAskedFor) {
  for (const ChipBus bus : {ChipBus::PrinterPort, ChipBus::Smbus}) {
    for (const bool start : {false, true}) {
      TestHost host;
      Simulation hardware(host.Time, SimOptions{});
      ChipConnection connection({.Kind = MediumKind::Linux,
                                 .Name = "PC",
                                 .Reason = {},
                                 .Factory = [&] { return hardware.MakeCommsModule(); }},
                                host);
      connection.Find({.Bus = bus, .Address = {}});
      hardware.Trace().Clear();
      Watch({.Count = 3, .Duration = {}, .Start = start}, connection, host);
      const std::string traffic = " " + hardware.Trace().Text(TraceFilter::Bus);
      // W writes the chip, S a switch device of the board, C its heaters; 0x79 is cleared by being read.
      EXPECT_EQ(Contains(traffic, " W"), start) << traffic;
      EXPECT_EQ(Contains(traffic, "R40 R40 W40:01"), start) << traffic;
      EXPECT_EQ(Contains(traffic, " S") || Contains(traffic, " C"), start && bus == ChipBus::PrinterPort) << traffic;
      EXPECT_FALSE(Contains(traffic, "R79")) << traffic;
      EXPECT_EQ(Contains(host.Talk.str(), "monitoring is off, the values stand still: start it with --start"), !start);
    }
  }
}

TEST(Watch, OnATerminalOnePageIsKeptCurrentUntilCtrlC) {
  TestHost host;
  host.Lines = 24;
  int waits = 0;
  host.OnWait = [&] { host.Stop = ++waits == 3; };
  EXPECT_EQ(RunCommand({"watch"}, host), 0);
  const std::string text = host.Data.str();
  EXPECT_TRUE(text.starts_with("\x1b[?1049h\x1b[?25l\x1b[H"));
  EXPECT_TRUE(Contains(text, "  Remote 1  "));
  // The terminal is given back with the last page in it.
  const std::size_t back = text.find("\x1b[?25h\x1b[?1049l");
  ASSERT_NE(back, std::string::npos);
  EXPECT_TRUE(Contains(text.substr(back), "readings: 2, bus faults: 0"));
}

}  // namespace
}  // namespace krx
