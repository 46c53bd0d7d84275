// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/minimumpwm.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <tuple>
#include <utility>

#include "link/registeraccess.h"
#include "simulator/simwords.h"
#include "support/fanbench.h"

namespace krx {
namespace {

/// The board with quiet fans, and a monitor that waits by moving the clock.
struct DetectionBench : FanBench, DetectionMonitor {
  explicit DetectionBench(const char* before = "") : FanBench(Medium::Board, {.Noise = 0}) {
    for (const int device : {0x90, 0x92}) *Sim.Board().Device(static_cast<std::uint8_t>(device)) = 0x42;  // three-wire
    WriteByte(Bus, 0x40, 0x01);
    Write(before);
    Advance(10);
    BusTraffic();
  }
  void Show(const DetectionProgress& progress) override {
    if (Waits.empty()) First = progress;
    Last = progress;
    LeastStandstill = std::min(LeastStandstill, progress.StandstillSecondsLeft.value_or(LeastStandstill));
  }
  double Seconds() override { return Time.Seconds(); }
  bool Wait(double seconds) override {
    Advance(seconds);
    Waited += seconds;
    Waits.push_back(seconds);
    if (OnWait) OnWait();
    return Waited < CancelAfter;
  }
  void Break(Fault::Kind kind, int fan) { Sim.AddFault({.What = kind, .Index = fan}); }
  MinimumPwm Detection{Bus, Owed, Fans, *this};
  DetectionProgress First, Last;
  double LeastStandstill = 99, Waited = 0;
  std::vector<double> Waits;
  double CancelAfter = 1e9;
  std::function<void()> OnWait;
};

std::array<std::uint16_t, steadyReadingCount> Readings(std::initializer_list<std::uint16_t> odd, std::uint16_t rest) {
  std::array<std::uint16_t, steadyReadingCount> counts;
  counts.fill(rest);
  std::copy(odd.begin(), odd.end(), counts.begin());
  return counts;
}

TEST(MinimumPwm, TwoReadingsOutsideTheBandPassAndThreeFail) {
  const std::pair<std::array<std::uint16_t, steadyReadingCount>, int> rows[] = {
      {Readings({}, 1000), 0},
      {Readings({65535}, 1000), 0},             // the first one is ignored
      {Readings({1000, 5000, 5000}, 1000), 2},  // mean 1400, band 980 to 1820
      {Readings({1000, 4000, 4000, 4000}, 1200), 3},
      // Mean 1000: exactly 700 and 1300 are inside, one count further is not.
      {Readings({0, 700, 1300}, 1000), 0},
      {Readings({0, 699, 1301}, 1000), 2},
      {Readings({}, 65535), 20},
      {Readings({1000, 65535, 65535, 65535}, 60000), 3},
  };
  for (const auto& [counts, misses] : rows) {
    const SteadyVerdict verdict = JudgeReadings(counts);
    EXPECT_EQ(verdict.Misses, misses);
    EXPECT_EQ(verdict.Passed, misses < 3);
  }
}

TEST(MinimumPwm, FindsWhereEachSimulatedFanStartsAndRestoresTheConfiguration) {
  for (const auto& [index, duty, written] :
       {std::tuple{std::size_t{0}, 30, "W30:4C "}, {std::size_t{1}, 25, "W31:40 "}, {std::size_t{2}, 35, "W32:59 "}}) {
    DetectionBench bench;
    const DetectionResult result = bench.Detection.Min_PWM(index);
    EXPECT_EQ(result.Value, duty);
    EXPECT_EQ(result.End, DetectionEnd::Found);
    EXPECT_EQ(result.Message, "");
    EXPECT_EQ(static_cast<int>(result.Evidence.size()), (duty - 10) / 5);
    EXPECT_EQ(result.Evidence.back().Duty, duty);
    EXPECT_EQ(bench.Last.Values + bench.Last.Readings, 200);
    EXPECT_NEAR(bench.First.SecondsLeft, 8 * 22.5, 0.01);
    EXPECT_LT(bench.LeastStandstill, 30) << "shown while waiting";
    EXPECT_EQ(bench.Peek(static_cast<std::uint8_t>(0x5C + index)), 0x62);
    EXPECT_NE(bench.BusTraffic().find(written), std::string::npos);
    // For each duty half a second at 0 %, the polls for the standstill, one second and twenty-one readings.
    EXPECT_EQ(bench.Waits.front(), 0.5) << "before the tachometer is read";
    std::erase_if(bench.Waits, [](double seconds) { return seconds < 0.1; });
    ASSERT_EQ(bench.Waits.size(), result.Evidence.size() * 23U);
    for (std::size_t i = 0; i < bench.Waits.size(); ++i) EXPECT_EQ(bench.Waits[i], i % 23 == 0 ? 0.5 : 1) << i;
  }
}

TEST(MinimumPwm, TheDutyThatWasFoundIsKeptInManualControl) {
  DetectionBench bench("5D:E2 31:90");
  EXPECT_EQ(bench.Detection.Min_PWM(1).Value, 25);
  const std::string traffic = bench.BusTraffic();
  EXPECT_TRUE(traffic.ends_with("W5D:E2"));
  EXPECT_NE(traffic.find("W5D:E2 W31:00 R2A R2B R2A R2B R2A R2B "), std::string::npos) << "no heat in the first second";
  EXPECT_EQ(bench.Peek(0x31), 0x40);
  bench.Owed.PutBackAtEnd(std::cerr);
  EXPECT_EQ(bench.BusTraffic(), "") << "nothing is pending";
}

TEST(MinimumPwm, AnAbsentFanTakesOneWriteAndItsRestore) {
  DetectionBench bench;
  bench.Break(Fault::Kind::StalledFan, 2);
  bench.Advance(20);
  const DetectionResult result = bench.Detection.Min_PWM(1);
  EXPECT_EQ(bench.BusTraffic(), "R6B R26 R6A R25 R6C R27 R5D W5D:E2 R2A R2B W5D:62");
  EXPECT_EQ(result.Message, "Fan Not Present!");
}

TEST(MinimumPwm, EveryEndExceptSuccessRestoresConfigurationAndManualDuty) {
  using enum DetectionEnd;
  using Bench = DetectionBench&;
  using Act = std::function<void(Bench)>;  // before the run, and while waiting
  const auto nothing = [](Bench) {};
  const auto breaks = [](Fault::Kind kind) { return [kind](Bench bench) { bench.Break(kind, 1); }; };
  const std::tuple<const char*, DetectionEnd, int, const char*, Act, Act> rows[] = {
      {"never starts", NoneFound, 0, "", nothing, breaks(Fault::Kind::StalledFan)},
      {"hunts", NoneFound, 0, "", breaks(Fault::Kind::HuntingFan), nothing},
      {"never stops", DidNotStop, 100, "Fan Did Not Stop!", breaks(Fault::Kind::RunawayFan), nothing},
      {"cancelled", Cancelled, 100, "", [](Bench bench) { bench.CancelAfter = 10; }, nothing},
      {"the program ends", Cancelled, 100, "",
       [](Bench bench) { bench.Bus.EndAsked = [&bench] { return bench.Waited > 10; }; }, nothing},
      {"hot while it runs", TooHot, 100, "Temperature Too High!", nothing,
       [](Bench bench) { bench.Plant().HoldTemperature(0, bench.Waited > 10 ? 101 : 30); }},
      {"hot while waiting for standstill", TooHot, 100, "Temperature Too High!", breaks(Fault::Kind::RunawayFan),
       [](Bench bench) { bench.Plant().HoldTemperature(2, 101); }},
  };
  for (const auto& [name, wantedEnd, value, message, arrange, whileWaiting] : rows) {
    for (const bool manualBefore : {false, true}) {
      DetectionBench bench(manualBefore ? "5C:E2 30:90" : "");
      arrange(bench);
      bench.OnWait = [&] { whileWaiting(bench); };
      const DetectionResult result = bench.Detection.Min_PWM(0);
      EXPECT_EQ(result.End, wantedEnd) << name;
      EXPECT_EQ(result.Value, value) << name;
      EXPECT_TRUE(wantedEnd != NoneFound || result.Evidence.back().Duty == 50) << name;
      EXPECT_EQ(result.Message.substr(0, result.Message.find('\n')), message);
      const std::string end = manualBefore ? "W30:90 W5C:E2" : "W5C:62";
      EXPECT_TRUE(bench.BusTraffic().ends_with((wantedEnd == TooHot ? "W30:FF " : "") + end)) << name;
      EXPECT_TRUE(wantedEnd != DidNotStop || std::abs(bench.Waited - 31) < 0.6) << "the pause and 30 s";
    }
  }
}

TEST(MinimumPwm, RefusesToStartAtAThermLimitUnlessItIsDisabled) {
  DetectionBench bench;
  bench.Plant().HoldTemperature(1, 100);
  bench.Advance(2);
  EXPECT_EQ(bench.Detection.Min_PWM(0).End, DetectionEnd::TooHot);
  EXPECT_EQ(bench.BusTraffic(), "R6B R26 R6A R25");
  bench.Write("6A:80");
  EXPECT_EQ(bench.Detection.Min_PWM(0).End, DetectionEnd::Found);
}

TEST(MinimumPwm, SaysWhyTheFanProbablyDidNotStop) {
  // What the tachometer shows at 0 %, regardless of the output, with 2000 RPM before.
  const std::tuple<const char*, int, const char*> rows[] = {
      {"28:10 29:0E", 1500, "but does not stop"},
      {"28:2F 29:0D", 1600, "probably not controlled by this output"},
      {"28:C4 29:09", 2160, "probably not controlled by this output"},
      {"28:60 29:09", 2250, "probably inverted"},
  };
  for (const auto& [count, speed, cause] : rows) {
    DetectionBench bench("40:00");
    bench.Poke("28:8C 29:0A");
    bench.OnWait = [&bench, shown = count] { bench.Poke(shown); };
    const std::string message = bench.Detection.Min_PWM(0).Message;
    EXPECT_NE(message.find(cause), std::string::npos) << message;
    EXPECT_NE(message.find(fmt::format("Speed before: 2000 RPM\nSpeed at 0 %: {} RPM", speed)), std::string::npos);
  }
}

TEST(MinimumPwm, AnyTransferMayFailAndTheConfigurationIsRestoredBeforeTheReport) {
  constexpr int restoreAfterPresenceTest = 11;
  for (int nth = 1; nth <= 400; nth += nth < 20 ? 1 : 37) {
    DetectionBench bench;
    bench.FailTransfer(nth);
    if (nth == restoreAfterPresenceTest) {
      EXPECT_EQ(bench.Detection.Min_PWM(1).Value, 25) << "it is tried again";
    } else {
      EXPECT_THROW(bench.Detection.Min_PWM(1), CommsError) << nth;
    }
    EXPECT_EQ(bench.Peek(0x5D), 0x62) << nth;
    EXPECT_FALSE(bench.Owed.AnyOverdue());
  }
}

TEST(MinimumPwm, AFailedRestoreIsReportedKeptAndDoneByTheNextRun) {
  using enum DetectionEnd;
  const std::string fault = "Error: 57, Device I/O error";
  struct Row {
    int Configuration, Duty;  ///< before
    bool DutyFails;           ///< besides the configuration, from FailAfter on
    double FailAfter, CancelAfter;
    DetectionEnd End;
    const char* NotRestored;
  };
  const Row rows[] = {
      {0x62, 0x90, false, 5, 6, Cancelled, "15 %; 5Ch should hold 62h."},
      {0xE2, 0x90, true, 1, 2, Cancelled, "an unknown duty; 5Ch should hold E2h, 30h should hold 90h."},
      {0x62, 0x90, true, 1, 1e9, LinkFault, "an unknown duty; 5Ch should hold 62h."},
      {0x62, 0xE6, false, 0, 1e9, LinkFault, "90 %; 5Ch should hold 62h."},
  };
  for (const Row& row : rows) {
    DetectionBench bench;
    WriteByte(bench.Bus, 0x5C, row.Configuration);
    WriteByte(bench.Bus, 0x30, row.Duty);
    bench.Advance(5);
    bool failing = false;
    bench.OnWait = [&] {
      if (bench.Waited < row.FailAfter || std::exchange(failing, true)) return;
      bench.Sim.AddFault(*ParseFault("fail=1+,op=write,reg=5C"));
      if (row.DutyFails) bench.Sim.AddFault(*ParseFault("fail=1+,op=write,reg=30"));
    };
    bench.OnWait();
    bench.CancelAfter = row.CancelAfter;
    const DetectionResult result = bench.Detection.Min_PWM(0);
    EXPECT_EQ(result.End, row.End) << row.NotRestored;
    EXPECT_EQ(result.Value, 100) << row.NotRestored;
    EXPECT_EQ(result.Message, row.End == LinkFault ? fault : "") << row.NotRestored;
    EXPECT_EQ(result.NotRestored,
              "PWM1 could not be restored (" + fault + ").\nIt is in manual control at " + row.NotRestored);
    bench.Sim.ClearFaults();
    bench.OnWait = nullptr;
    ReadByte(bench.Bus, 0x26);
    bench.Waited = 0;
    bench.CancelAfter = 1;
    EXPECT_EQ(bench.Detection.Min_PWM(0).NotRestored, "") << row.NotRestored;
    EXPECT_TRUE(bench.BusTraffic().ends_with(row.Configuration == 0xE2 ? "W30:90 W5C:E2" : "W5C:62"))
        << row.NotRestored;
  }
}

TEST(MinimumPwm, WarnsByTheConfigurationLastSeenWhenTheChipDoesNotMonitor) {
  TestBench bench;
  EXPECT_EQ(MonitoringWarning(bench.Bus), "Temperatures may not be measured: monitoring state unknown");
  WriteByte(bench.Bus, 0x40, 0x01);
  EXPECT_EQ(MonitoringWarning(bench.Bus), "");
  WriteByte(bench.Bus, 0x40, 0x12);
  EXPECT_EQ(MonitoringWarning(bench.Bus), "Temperatures are not measured: monitoring is off");
}

TEST(MinimumPwm, TheEvidenceNamesCountsMeanMissesAndVerdict) {
  DetectionResult result{20, DetectionEnd::Found, "", {}, "", {}};
  result.Evidence.push_back({15, 2.04, Readings({7}, 65535), JudgeReadings(Readings({7}, 65535))});
  result.Evidence.push_back({20, 0, Readings({7, 9}, 10), JudgeReadings(Readings({7, 9}, 10))});
  const std::string text = EvidenceText(result, 1);
  EXPECT_TRUE(
      text.starts_with("Minimum PWM of fan 1: 20 %\n\n15 %: failed\n"
                       "stopped after 2.0 s, mean count 65535, misses 20 of 20\ncounts: 7 65535 65535"));
  EXPECT_NE(text.find("20 %: passed\nstopped after 0.0 s, mean count 9.95, misses 0 of 20\ncounts: 7 9 10 10"),
            std::string::npos);
  for (int end = 1; const char* const heading : {"none found", "fan not present", "fan did not stop", "too hot",
                                                 "cancelled", "aborted by a failed transfer"}) {
    result.End = static_cast<DetectionEnd>(end++);
    EXPECT_TRUE(EvidenceText(result, 2).starts_with(fmt::format("Minimum PWM of fan 2: {}\n", heading))) << heading;
  }
}

}  // namespace
}  // namespace krx
