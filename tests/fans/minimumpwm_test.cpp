// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/minimumpwm.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <utility>

#include "link/registeraccess.h"
#include "support/fanbench.h"

namespace krx {
namespace {

/// The board with quiet fans, and a monitor that waits by moving the clock.
struct DetectionBench : FanBench, DetectionMonitor {
  static SimOptions Quiet() {
    SimOptions options;
    options.Noise = 0;
    return options;
  }
  DetectionBench() : FanBench(Medium::Board, Quiet()) {
    for (const std::uint8_t device : {std::uint8_t{0x90}, std::uint8_t{0x92}}) {
      *Sim.Board().Device(device) = 0x42;  // three-wire tachometers
    }
    WriteByte(Bus, 0x40, 0x01);
    Advance(10);
    BusTraffic();
  }
  void Show(const DetectionProgress& progress) override {
    if (Waits.empty()) First = progress;
    Last = progress;
  }
  double Seconds() override { return Time.Seconds(); }
  bool Wait(double seconds) override {
    Advance(seconds);
    Waited += seconds;
    Waits.push_back(seconds);
    if (OnWait) OnWait();
    return Waited < CancelAfter;
  }
  /// Writes to a register fail from now on.
  void FailWrites(std::uint8_t reg) {
    Fault fault;
    fault.Onward = true;
    fault.Op = Operation::WriteByteData;
    fault.Register = reg;
    Sim.AddFault(fault);
  }
  void Break(Fault::Kind kind, int fan) {
    Fault fault;
    fault.What = kind;
    fault.Index = fan;
    Sim.AddFault(fault);
  }
  MinimumPwm Detection{Bus, Owed, Fans, *this};
  DetectionProgress First, Last;
  double Waited = 0;
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
  struct Row {
    std::array<std::uint16_t, steadyReadingCount> Counts;
    int Misses;
  };
  const Row rows[] = {
      {Readings({}, 1000), 0},
      {Readings({65535}, 1000), 0},             // the first one takes no part
      {Readings({1000, 5000, 5000}, 1000), 2},  // mean 1400, band 980 to 1820
      {Readings({1000, 4000, 4000, 4000}, 1200), 3},
      // Mean 1000: exactly 700 and 1300 are inside, one count further is not.
      {Readings({0, 700, 1300}, 1000), 0},
      {Readings({0, 699, 1301}, 1000), 2},
      {Readings({}, 65535), 20},
      {Readings({1000, 65535, 65535, 65535}, 60000), 3},
  };
  for (const Row& row : rows) {
    const SteadyVerdict verdict = JudgeReadings(row.Counts);
    EXPECT_EQ(verdict.Misses, row.Misses);
    EXPECT_EQ(verdict.Passed, row.Misses < 3);
  }
}

TEST(MinimumPwm, FindsWhereEachSimulatedFanStartsAndPutsTheConfigurationBack) {
  for (const auto& [index, duty, byte] :
       {std::tuple{std::size_t{0}, 30, 0x4C}, {std::size_t{1}, 25, 0x40}, {std::size_t{2}, 35, 0x59}}) {
    DetectionBench bench;
    const DetectionResult result = bench.Detection.Min_PWM(index);
    EXPECT_EQ(result.Value, duty);
    EXPECT_EQ(result.End, DetectionEnd::Found);
    EXPECT_EQ(result.Message, "");
    EXPECT_EQ(static_cast<int>(result.Evidence.size()), (duty - 10) / 5);
    for (std::size_t i = 0; i < result.Evidence.size(); ++i) {
      EXPECT_EQ(result.Evidence[i].Duty, 15 + 5 * static_cast<int>(i));
    }
    EXPECT_EQ(bench.Last.Values, 100);
    EXPECT_EQ(bench.Last.Readings, 100);
    EXPECT_GE(bench.Waited, 22.5 * static_cast<double>(result.Evidence.size()));
    EXPECT_EQ(bench.Peek(static_cast<std::uint8_t>(0x5C + index)), 0x62);
    EXPECT_NE(bench.BusTraffic().find(fmt::format("W{:02X}:{:02X} ", 0x30 + index, byte)), std::string::npos);
  }
}

TEST(MinimumPwm, WaitsHalfASecondAtZeroThenForStandstillThenOneSecondAndTwentyOneReadings) {
  DetectionBench bench;
  bench.Detection.Min_PWM(1);
  std::vector<double> steps;  // without the polls for the standstill
  std::ranges::copy_if(bench.Waits, std::back_inserter(steps), [](double seconds) { return seconds > 0.1; });
  ASSERT_EQ(steps.size(), 3 * 23U);
  for (std::size_t i = 0; i < steps.size(); ++i) EXPECT_EQ(steps[i], i % 23 == 0 ? 0.5 : 1) << i;
  EXPECT_NEAR(bench.First.SecondsLeft, 8 * 22.5, 0.01);
  EXPECT_EQ(bench.Waits.front(), 0.5) << "at 0 %, before the tachometer is asked";
}

TEST(MinimumPwm, TheDutyThatWasFoundIsKeptInManualControl) {
  DetectionBench bench;
  WriteByte(bench.Bus, 0x5D, 0xE2);
  WriteByte(bench.Bus, 0x31, 0x90);
  bench.Advance(5);
  bench.BusTraffic();
  EXPECT_EQ(bench.Detection.Min_PWM(1).Value, 25);
  EXPECT_TRUE(bench.BusTraffic().ends_with("W5D:E2"));
  EXPECT_EQ(bench.Peek(0x31), 0x40);
  bench.Owed.PutBackAtEnd(std::cerr);
  EXPECT_EQ(bench.BusTraffic(), "") << "nothing is owed";
}

TEST(MinimumPwm, AnAbsentFanTakesOneWriteAndItsReturn) {
  DetectionBench bench;
  bench.Break(Fault::Kind::StalledFan, 2);
  bench.Advance(20);
  const DetectionResult result = bench.Detection.Min_PWM(1);
  EXPECT_EQ(bench.BusTraffic(), "R6B R26 R6A R25 R6C R27 R5D W5D:E2 R2A R2B W5D:62");
  EXPECT_EQ(result.Value, 100);
  EXPECT_EQ(result.Message, "Fan Not Present!");
}

TEST(MinimumPwm, EveryOtherEndThanSuccessGivesConfigurationAndManualDutyBack) {
  struct Row {
    const char* Name;
    std::function<void(DetectionBench&)> Arrange;
    DetectionEnd End;
    int Value;
    const char* Message;
  };
  const Row rows[] = {
      {"never starts",
       [](DetectionBench& bench) { bench.OnWait = [&bench] { bench.Break(Fault::Kind::StalledFan, 1); }; },
       DetectionEnd::NoneFound, 0, ""},
      {"hunts", [](DetectionBench& bench) { bench.Break(Fault::Kind::HuntingFan, 1); }, DetectionEnd::NoneFound, 0, ""},
      {"never stops", [](DetectionBench& bench) { bench.Break(Fault::Kind::RunawayFan, 1); }, DetectionEnd::DidNotStop,
       100, "Fan Did Not Stop!"},
      {"cancelled", [](DetectionBench& bench) { bench.CancelAfter = 10; }, DetectionEnd::Cancelled, 100, ""},
      {"the program is to end",
       [](DetectionBench& bench) { bench.Bus.EndAsked = [&bench] { return bench.Waited > 10; }; },
       DetectionEnd::Cancelled, 100, ""},
      {"hot while it runs",
       [](DetectionBench& bench) {
         bench.OnWait = [&bench] {
           if (bench.Waited > 10) bench.Plant().HoldTemperature(0, 101);
         };
       },
       DetectionEnd::TooHot, 100, "Temperature Too High!"},
      {"hot while it is waited for",
       [](DetectionBench& bench) {
         bench.Break(Fault::Kind::RunawayFan, 1);
         bench.OnWait = [&bench] { bench.Plant().HoldTemperature(2, 101); };
       },
       DetectionEnd::TooHot, 100, "Temperature Too High!"},
  };
  for (const Row& row : rows) {
    for (const bool manualBefore : {false, true}) {
      DetectionBench bench;
      if (manualBefore) {
        WriteByte(bench.Bus, 0x5C, 0xE2);
        WriteByte(bench.Bus, 0x30, 0x90);
        bench.Advance(5);
      }
      row.Arrange(bench);
      bench.BusTraffic();
      const DetectionResult result = bench.Detection.Min_PWM(0);
      EXPECT_EQ(result.End, row.End) << row.Name;
      EXPECT_EQ(result.Value, row.Value) << row.Name;
      if (row.End == DetectionEnd::NoneFound) {
        EXPECT_EQ(result.Evidence.back().Duty, 50);
      }
      EXPECT_EQ(result.Message.substr(0, result.Message.find('\n')), row.Message);
      EXPECT_EQ(bench.Peek(0x5C), manualBefore ? 0xE2 : 0x62) << row.Name;
      if (manualBefore) {
        EXPECT_EQ(bench.Peek(0x30), 0x90) << row.Name;
      }
      const std::string traffic = bench.BusTraffic();
      const std::string end = manualBefore ? "W30:90 W5C:E2" : "W5C:62";
      EXPECT_TRUE(traffic.ends_with((row.End == DetectionEnd::TooHot ? "W30:FF " : "") + end)) << row.Name;
      if (row.End == DetectionEnd::DidNotStop) {
        EXPECT_GT(bench.Waited, 30.4) << "the pause and 30 s";
        EXPECT_LT(bench.Waited, 31.5);
      }
    }
  }
}

TEST(MinimumPwm, RefusesToStartAtAThermLimit) {
  DetectionBench bench;
  bench.Plant().HoldTemperature(1, 100);
  bench.Advance(2);
  EXPECT_EQ(bench.Detection.Min_PWM(0).End, DetectionEnd::TooHot);
  EXPECT_EQ(bench.BusTraffic(), "R6B R26 R6A R25");
}

TEST(MinimumPwm, SaysWhyTheFanProbablyDidNotStop) {
  DetectionBench bench;
  bench.Break(Fault::Kind::RunawayFan, 1);
  EXPECT_NE(bench.Detection.Min_PWM(0).Message.find("does not come to a standstill"), std::string::npos);
  for (const auto& [speed, cause] :
       {std::pair{2000, "probably not controlled by this output"}, {4000, "probably inverted"}}) {
    DetectionBench other;
    // The tachometer shows 2000 RPM before and `speed` afterwards, whatever the output does.
    WriteByte(other.Bus, 0x40, 0x00);
    int shown = 2000;
    const auto hold = [&] {
      other.Poke(0x28, static_cast<std::uint8_t>(5400000 / shown & 0xFF));
      other.Poke(0x29, static_cast<std::uint8_t>(5400000 / shown >> 8));
    };
    hold();
    other.OnWait = [&, after = speed] {
      shown = after;
      hold();
    };
    const std::string message = other.Detection.Min_PWM(0).Message;
    EXPECT_NE(message.find(cause), std::string::npos) << message;
    EXPECT_NE(message.find(fmt::format("Speed before: 2000 RPM\nSpeed at 0 %: {} RPM", speed)), std::string::npos);
  }
}

TEST(MinimumPwm, AnyTransferMayFailAndTheConfigurationIsBackBeforeItIsReported) {
  constexpr int putBackAfterPresenceTest = 11;
  for (int nth = 1; nth <= 400; nth += nth < 20 ? 1 : 37) {
    DetectionBench bench;
    bench.FailTransfer(nth);
    if (nth == putBackAfterPresenceTest) {
      EXPECT_EQ(bench.Detection.Min_PWM(1).Value, 25) << "it is tried again";
    } else {
      EXPECT_THROW(bench.Detection.Min_PWM(1), CommsError) << nth;
    }
    EXPECT_EQ(bench.Peek(0x5D), 0x62) << nth;
    EXPECT_FALSE(bench.Owed.AnyOverdue());
  }
}

TEST(MinimumPwm, WhatCannotBePutBackIsSaidKeptAndReturnedToByTheNextRun) {
  struct Row {
    const char* Name;
    std::uint8_t Before;
    std::vector<std::uint8_t> Failing;
    double FailAfter, CancelAfter;
    DetectionEnd End;
    const char* Message;
    const char* NotRestored;
    const char* Turn;
  };
  constexpr const char* fault = "Error: 57, Device I/O error";
  const Row rows[] = {
      {"cancelled",
       0x62,
       {0x5C},
       5,
       6,
       DetectionEnd::Cancelled,
       "",
       "It stands in manual control at 15 %; 5Ch should hold 62h.",
       "W5C:62"},
      {"manual before",
       0xE2,
       {0x5C, 0x30},
       1,
       2,
       DetectionEnd::Cancelled,
       "",
       "It stands in manual control at an unknown duty; 5Ch should hold E2h, 30h should hold 90h.",
       "W30:90 W5C:E2"},
      {"a failed transfer",
       0x62,
       {0x5C, 0x30},
       1,
       1e9,
       DetectionEnd::LinkFault,
       fault,
       "It stands in manual control at an unknown duty; 5Ch should hold 62h.",
       "W5C:62"},
      {"presence test",
       0x62,
       {0x5C},
       0,
       1e9,
       DetectionEnd::LinkFault,
       fault,
       "It stands in manual control at 90 %; 5Ch should hold 62h.",
       "W5C:62"},
  };
  for (const Row& row : rows) {
    DetectionBench bench;
    WriteByte(bench.Bus, 0x5C, row.Before);
    WriteByte(bench.Bus, 0x30, row.FailAfter > 0 ? 0x90 : 0xE6);
    bench.Advance(5);
    bool failing = false;
    const auto fail = [&] {
      if (std::exchange(failing, true)) return;
      for (const std::uint8_t reg : row.Failing) bench.FailWrites(reg);
    };
    bench.OnWait = [&] {
      if (bench.Waited >= row.FailAfter) fail();
    };
    if (row.FailAfter == 0) fail();
    bench.CancelAfter = row.CancelAfter;
    const DetectionResult result = bench.Detection.Min_PWM(0);
    EXPECT_EQ(result.End, row.End) << row.Name;
    EXPECT_EQ(result.Value, 100) << row.Name;
    EXPECT_EQ(result.Message, row.Message) << row.Name;
    EXPECT_EQ(result.NotRestored, fmt::format("PWM1 could not be put back ({}).\n{}", fault, row.NotRestored))
        << row.Name;
    bench.Sim.ClearFaults();
    bench.OnWait = nullptr;
    ReadByte(bench.Bus, 0x26);
    bench.BusTraffic();
    bench.Waited = 0;
    bench.CancelAfter = 1;
    EXPECT_EQ(bench.Detection.Min_PWM(0).NotRestored, "") << row.Name;
    EXPECT_TRUE(bench.BusTraffic().ends_with(row.Turn)) << row.Name;
  }
}

TEST(MinimumPwm, WarnsByTheConfigurationLastSeenWhenTheChipDoesNotMonitor) {
  TestBench bench;
  EXPECT_EQ(MonitoringWarning(bench.Bus), "Temperatures may not be measured: it is not known whether monitoring is on");
  WriteByte(bench.Bus, 0x40, 0x01);
  EXPECT_EQ(MonitoringWarning(bench.Bus), "");
  WriteByte(bench.Bus, 0x40, 0x12);
  EXPECT_EQ(MonitoringWarning(bench.Bus), "Temperatures are not measured: monitoring is off");
}

TEST(MinimumPwm, TheEvidenceNamesCountsMeanMissesAndVerdict) {
  DetectionResult result;
  result.Value = 20;
  result.End = DetectionEnd::Found;
  result.Evidence.push_back({15, 2.04, Readings({7}, 65535), JudgeReadings(Readings({7}, 65535))});
  result.Evidence.push_back({20, 0, Readings({7, 9}, 10), JudgeReadings(Readings({7, 9}, 10))});
  const std::string text = EvidenceText(result, 1);
  EXPECT_TRUE(
      text.starts_with("Minimum PWM of fan 1: 20 %\n\n15 %: failed\n"
                       "stopped after 2.0 s, mean count 65535, misses 20 of 20\ncounts: 7 65535 65535"));
  EXPECT_NE(text.find("20 %: passed\nstopped after 0.0 s, mean count 9.95, misses 0 of 20\ncounts: 7 9 10 10"),
            std::string::npos);
  const std::pair<DetectionEnd, const char*> ends[] = {{DetectionEnd::NoneFound, "none found"},
                                                       {DetectionEnd::DidNotStop, "fan did not stop"},
                                                       {DetectionEnd::TooHot, "too hot"},
                                                       {DetectionEnd::Cancelled, "cancelled"},
                                                       {DetectionEnd::LinkFault, "ended by a failed transfer"}};
  for (const auto& [end, heading] : ends) {
    result.End = end;
    EXPECT_TRUE(EvidenceText(result, 2).starts_with(fmt::format("Minimum PWM of fan 2: {}\n", heading))) << heading;
  }
}

}  // namespace
}  // namespace krx
