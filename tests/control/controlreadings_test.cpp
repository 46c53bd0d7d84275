// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/controlreadings.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "board/switches.h"
#include "console/pageparts.h"
#include "link/commserror.h"
#include "link/registeraccess.h"
#include "monitor/recenttrend.h"
#include "support/testbench.h"

namespace krx {
namespace {

struct ReadingsBench : TestBench {
  ControlReadings Read(bool old = false) { return ReadControl(ControlPartsOf(Work), Model.State(), old); }
  /// The values in the order of the page: zone Remote1, PWM1, the power figures.
  std::string Values(bool old = false) {
    const ControlReadings read = Read(old);
    std::string words = read.Outputs[0].Behaviour;
    for (const LivingValue& value : {read.Zones[1].Now, read.Zones[1].Tmin, read.Zones[1].OperatingPoint,
                                     read.Outputs[0].Duty, read.Outputs[0].Speed, read.Power, read.Current, read.Vccp})
      words += "|" + value.Words();
    return words;
  }
  void Tick(int ticks) {
    for (int i = 0; i < ticks; ++i) Work.Cycle.Tick();
  }
  Workbench Work{Bus};
  ControlModel Model{ControlPartsOf(Work)};
};

TEST(ControlReadings, TellWhatIsKnownWhatIsOldAndNeverAskTheBus) {
  ReadingsBench bench;
  EXPECT_EQ(bench.Values(), "not read|unknown|unknown|unknown|unknown|unknown|unknown|unknown|unknown");
  EXPECT_EQ(bench.Read().ThermRead, "not read yet");
  bench.Advance(2);  // past the first THERM period
  bench.Poke("25:3A 77:04 28:00 29:08 30:E0 5C:A2 67:28 33:F6 21:7D 20:C8");
  bench.Work.Fans.PulsesKnown = true;
  bench.Work.Power.PowerEquation = false;
  ReadByte(bench.Bus, 0x5C);
  bench.Tick(10);
  bench.BusTraffic();
  const std::string power = "|unknown|unknown|1.465 V";
  EXPECT_EQ(bench.Values(), "Fastest of Remote 1,2|58.25 C|40 °C|-10 °C|88 %|2637 RPM" + power)
      << "a supply, no current";
  bench.Work.Power.PowerMode = true;
  EXPECT_EQ(bench.Values(true),
            "Fastest of Remote 1,2|58.25 C, out of date|40 °C, out of date|-10 °C, out of date|88 %, out of date|"
            "2637 RPM, out of date|182.83 W, out of date|124.80 A, out of date|1.465 V, out of date");
  bench.Work.Pins.Alert25vMode = 2;
  EXPECT_EQ(bench.Read().Current.Words(), "unknown") << "the pin has another function";
  bench.Work.Zones.ZoneOpEnable[1] = false;
  EXPECT_EQ(bench.Read().Zones[1].Tmin.Words(), "Disabled");
  EXPECT_EQ(bench.Read().ThermRead, "read just now");
  bench.Advance(12.5);
  EXPECT_EQ(bench.Read().ThermRead, "last read 12 s ago");
  EXPECT_EQ(bench.BusTraffic(), "");

  bench.FailTransfer(1, true);
  for (int tick = 0; tick < 3; ++tick) EXPECT_THROW(bench.Tick(1), CommsError);
  bench.Sim.ClearFaults();
  EXPECT_EQ(bench.Read().Zones[1].Now.Words(), "58.25 C, out of date") << "the last attempt failed";
  EXPECT_EQ(bench.Read().Outputs[0].Speed.Words(), "2637 RPM");
  ReadByte(bench.Bus, 0x40);
  EXPECT_EQ(bench.Read().Outputs[0].Speed.Words(), "2637 RPM, out of date") << "monitoring is off";
}

TEST(ControlReadings, AHeaterTellsHowLongThisRunHasItOn) {
  ReadingsBench bench;
  const auto words = [&] { return bench.Read().Heaters[0].Words; };
  EXPECT_EQ(words(), "no board") << "before the page was shown";
  bench.Model.Enter();
  EXPECT_EQ(words(), "off");
  bench.FailTransfer(1);
  EXPECT_THROW(bench.Model.SetHeater(0, true), CommsError);
  bench.Advance(100);
  bench.Model.SetHeater(0, true);
  bench.Advance(41);
  EXPECT_EQ(words(), "on for 00:41") << "from the write that succeeded";
  bench.Model.SetHeater(0, true);
  EXPECT_EQ(words(), "on for 00:41");
  bench.Model.SetHeater(0, false);
  EXPECT_EQ(words(), "off");
  bench.Sim.Board().SetControlByte(0x10);
  bench.Model.Enter();
  EXPECT_EQ(words(), "on") << "somebody else switched it on";
  EXPECT_EQ(RunningText(3599.9) + " " + RunningText(3723), "59:59 1:02:03");
}

TEST(ControlModel, CountsTheClosedSwitchesAndComparesThoseOfADiode) {
  ReadingsBench bench;
  bench.Model.Enter();
  Board& board = bench.Work.EvalBoard;
  const auto words = [&](int u4) {
    WriteSwitchDevice(board, 2, static_cast<std::uint8_t>(u4));
    bench.Model.ShowSwitches();
    const ControlState& state = bench.Model.State();
    return DiodeWords(state, 0) + "|" + DiodeWords(state, 1) + "|" + SwitchesWords(state);
  };
  const int others[] = {0x01, 0x00, 0x3F, 0x80};  // U5, U6, U4, U3: the first switch of the map is U5A
  for (int device = 0; device < 4; ++device)
    WriteSwitchDevice(board, device, static_cast<std::uint8_t>(others[device]));
  EXPECT_EQ(words(0x07), "U4A, U4B, U4C closed|U4D, U4E, U4F open|5 of 32 switches closed");
  EXPECT_EQ(words(0x3B), "U4A, U4B, U4C differ|U4D, U4E, U4F closed|7 of 32 switches closed");
}

TEST(RecentTrend, TellsASlopeOnlyWhereTenSecondsKnowIt) {
  const float none = std::numeric_limits<float>::quiet_NaN();
  const auto post = [](TraceHistory& history, double seconds, float value) {
    history.Append(static_cast<std::int64_t>(seconds * 1e6), std::array{value});
  };
  const struct {
    std::vector<std::pair<double, float>> Rows;
    double Now;
    const char* Words;
  } rows[] = {
      {{}, 1, "–"},
      {{{0, 20}, {2.9, 30}}, 3, "–"},
      {{{0, 20}, {3, 23}}, 3, "+1.0 C/s"},
      {{{0, 90}, {10, 30}, {15, 30}, {20, 27.5F}}, 20, "-0.3 C/s"},  // from ten seconds back on; the half goes up
      {{{0, 30}, {10, 30.25F}}, 10, "steady"},                       // one step of the chip's
      {{{0, 20}, {10, 30}}, 12.1, "–"},                              // nothing came for two seconds
      {{{0, 20}, {4, none}, {6, none}, {8, 30}, {10, 30}}, 10, "–"},
  };
  for (const auto& row : rows) {
    TraceHistory history(1);
    for (const auto& [seconds, value] : row.Rows) post(history, seconds, value);
    EXPECT_EQ(SlopeWords(RecentSlope(history, 0, static_cast<std::int64_t>(row.Now * 1e6))), row.Words);
  }
  TraceHistory history(1);
  EXPECT_FALSE(RangeOf(RecentColumns(history, 0, 0)));
  post(history, 5, 99);
  post(history, 70, 30);
  post(history, 99.8, 45);
  const std::vector<TraceColumn> columns = RecentColumns(history, 0, 99'900'000);
  EXPECT_EQ(columns.size(), 120U);
  EXPECT_EQ(columns.back().Max, 45);
  EXPECT_EQ(columns[60].Min, 30) << "0.5 s a column, up to 100 s";
  const auto range = RangeOf(columns);
  EXPECT_TRUE(range && range->Low == 30 && range->High == 45);
  history.Clear();
  post(history, 1, 30.25F);
  EXPECT_EQ(RangeOf(RecentColumns(history, 0, 1'000'000))->High, 40.25) << "a quarter degree is no move";
}

TEST(SectionWords, SayWhatAFunctionCosts) {
  ControlState state;
  for (const auto& words : {ThermWords(state), AlertWords(state)}) EXPECT_EQ(words.Word, "not read");
  EXPECT_EQ(SensorWords(state).Word + HeaterWords(state).Word + SwitchesWords(state), "no boardno boardno board");
  state.HasBoard = state.PinsRead = state.VidShown = true;
  EXPECT_EQ(SensorWords(state).Word + HeaterWords(state).Word + SwitchesWords(state),
            "not readnot read– of 32 switches closed");
  EXPECT_EQ(ThermWords(state).Consequence, "The 5V and Tach4 pins measure as usual");
  EXPECT_EQ(AlertWords(state).Consequence, "VID inputs follow the board: ALERT on 2.5V pin is not available");
  state.VidShown = false;
  state.ThermOnTach4 = state.AlertOn25v = true;
  EXPECT_EQ(ThermWords(state).Consequence, "Fan 4 is not measured while its pin is the THERM input");
  EXPECT_EQ(AlertWords(state).Consequence, "2.5V is not measured while its pin is the alert output");
  state.ThermOn5v = state.AlertOnPwm2 = true;
  EXPECT_EQ(ThermWords(state).Word + ", " + AlertWords(state).Word, "on the 5V pin, on both pins");
  state.DiodeSwitches = {SwitchState::Closed, SwitchState::Mixed};
  EXPECT_EQ(SensorWords(state).Word + ", " + DiodeWords(state, 1), "partly connected, U4D, U4E, U4F differ");
  state.DiodeSwitches[1] = SwitchState::Open;
  state.HeatersRead = {true, true};
  state.Heaters = {false, true};
  EXPECT_EQ(SensorWords(state).Word + ", " + HeaterWords(state).Word, "one connected, one on");
}

}  // namespace
}  // namespace krx
