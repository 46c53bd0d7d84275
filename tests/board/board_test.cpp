// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/board.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

#include "board/boardsync.h"
#include "board/switches.h"
#include "link/registeraccess.h"
#include "support/boardbench.h"

namespace krx {
namespace {

TEST(Board, DiodeAndVidBoxesWriteTheirDeviceOnceAndTheIndicatorsFollowEvenAFailedWrite) {
  BoardBench bench;
  for (const auto& [diode, closed] : {std::pair{0U, true}, {1U, true}, {0U, false}}) bench.Eval.SetDiode(diode, closed);
  for (int input = 0; input < 5; ++input) bench.Eval.SetVid(input, true);
  EXPECT_EQ(bench.BusTraffic(), "S94:07 S94:3F S94:38 S96:01 S96:03 S96:07 S96:0F S96:1F");
  EXPECT_FALSE(bench.Eval.DiodeClosed(0));
  EXPECT_TRUE(bench.Eval.DiodeClosed(1));
  EXPECT_EQ(bench.Reports, 8);
  bench.FailTransfer(1);
  EXPECT_THROW(bench.Eval.SetVid(0, false), CommsError);
  EXPECT_EQ(bench.Reports, 9);
}

TEST(Heater, ChangesItsOwnBitOfTheStatusByteAndCompletes) {
  BoardBench bench;
  bench.Sim.Board().SetControlByte(0x10);
  bench.Eval.SetHeater(1, true);
  EXPECT_TRUE(bench.Flags.HeaterEnabled[1]);
  EXPECT_TRUE(bench.Eval.GetHeater(1).HeaterOn());
  bench.Eval.SetHeater(0, false);
  EXPECT_FALSE(bench.Eval.GetHeater(0).HeaterOn());
  bench.Eval.SwitchHeatersOff();
  Heater(bench.Bus, bench.Owed, 3).SetHeaterOn(true);
  EXPECT_EQ(bench.BusTraffic(), "ST C30 K ST ST C20 K ST ST C20 K ST C00 K ST K");
  EXPECT_EQ(UpToFailure(bench, 1, [&] { bench.Eval.SwitchHeatersOff(); }), "ST! ST C00 K")
      << "if one heater fails, the other is still switched off";
}

TEST(Heater, AtTheEndOnlyHeatersThatThisRunMayHaveSwitchedOnAreSwitchedOff) {
  BoardBench bench;
  std::ostringstream said;
  const auto end = [&] { return bench.Owed.PutBackAtEnd(said), bench.BusTraffic(); };
  bench.Sim.Board().SetControlByte(0x10);
  EXPECT_EQ(end(), "") << "heater 1 was on before";
  EXPECT_EQ(UpToFailure(bench, 2, [&] { bench.Eval.SetHeater(1, true); }), "ST C30!");
  EXPECT_EQ(end(), "ST C10 K") << "a failed write may have reached the board";
  EXPECT_EQ(end(), "");
  for (const std::size_t heater : {0U, 1U}) bench.Eval.SetHeater(heater, true);
  bench.Eval.SetHeater(0, false);
  bench.Eval.SetHeater(0, true);
  bench.BusTraffic();
  bench.FailTransfer(1);
  EXPECT_EQ(end(), "ST! ST C20 K ST C00 K") << "a failed restore is tried again";
  EXPECT_EQ(said.str(), "");
}

TEST(Switches, WholeByteAccessKeepsTheStatesThatALaterSynchronisationWrites) {
  BoardBench bench;
  WriteSwitchDevice(bench.Eval, 0, 0xA5);
  *bench.Sim.Board().Device(0x92) = 0x40;
  EXPECT_EQ(ReadSwitchDevice(bench.Eval, 1), 0x40);
  EXPECT_EQ(bench.Reports, 2);
  SyncAlertSwitches(bench.Eval);
  bench.Eval.ToggleSwitch(31);
  EXPECT_EQ(bench.BusTraffic(), "S90:A5 V92 R78 S90:B5 S96:00 S94:00 S90:B5 S92:50");
}

TEST(Board, OnTheSmbusNothingIsSwitchedAndStatesStayWhileTheRegistersAreStillRead) {
  BoardBench bench(TestBench::Medium::Smbus);
  bench.Eval.Device(SwitchDevice::U4).SetStatus(3, true);
  bench.Eval.ReadAll();
  EXPECT_TRUE(bench.Eval.Device(SwitchDevice::U4).Status(3));
  bench.Eval.ToggleSwitch(0);
  bench.Eval.SetDiode(0, true);
  bench.Eval.SetHeater(0, true);
  EXPECT_FALSE(bench.Eval.GetHeater(0).HeaterOn());
  bench.Eval.SwitchHeatersOff();
  bench.Owed.PutBackAtEnd(std::cerr);
  EXPECT_EQ(bench.BusTraffic(), "");
  ProbeVidDrive(bench.Eval);
  SyncTach4Switches(bench.Eval);
  SyncAlertSwitches(bench.Eval);
  RouteTachsFromChip(bench.Eval);
  RouteTach(bench.Eval, 0, true);
  EXPECT_EQ(bench.BusTraffic(), "R43 R43 R78 R78 R7D R73");
}

TEST(BoardSync, TheVidProbeIsSteadyWhenTheReadingsAgreeAndLeavesU3DClosed) {
  for (const bool follows : {false, true}) {
    BoardBench bench(TestBench::Medium::Board, {.VidFollowsU3 = follows});
    bench.Flags.VidProbeSteady = follows;
    ProbeVidDrive(bench.Eval);
    EXPECT_EQ(bench.BusTraffic(), "S96:00 R43 S96:08 R43");
    EXPECT_EQ(bench.Flags.VidProbeSteady, !follows);
  }
}

TEST(BoardSync, PinFunctionsRouteTheirSwitchesAndVidSwitchesOnlyAfterASteadyProbe) {
  // The devices start with every switch of a VID or pin group closed, so that an unchanged switch is visible.
  const std::tuple<bool, const char*, int, int, int, const char*> rows[] = {
      {true, "78:00 7D:03", 0, 1, 2, "R78 S96:AF R78 S90:F7 R7D S96:AD"},
      {true, "78:02 7D:02", 1, 1, 1, "R78 R7D S96:BB R78 S90:F7 R7D S96:BA"},
      {true, "78:03 7D:00", 2, 2, 1, "R78 R7D S96:6F R78 S90:EF R7D S96:6E"},
      {false, "78:00 7D:03", 0, 1, 0, "R78 S96:BF R78 S90:F7"},
      {false, "78:03 7D:00", 2, 2, 0, "R78 R7D S96:7F R78 S90:EF"},
      {false, "78:02 7D:02", 1, 1, 0, "R78 R7D S96:BF R78 S90:F7"},
  };
  for (const auto& [steady, configuration, therm, alertPwm2, alert25v, traffic] : rows) {
    BoardBench bench;
    bench.Flags.VidProbeSteady = steady;
    bench.Poke(configuration);
    using enum SwitchDevice;
    for (const SwitchDevice device : {U3, U5}) bench.Eval.Device(device).SetStatusByte(0xFF);
    EXPECT_EQ(SyncTach4Switches(bench.Eval), therm);
    const AlertModes modes = SyncAlertSwitches(bench.Eval);
    EXPECT_EQ(modes.AlertPwm2Mode, alertPwm2);
    EXPECT_EQ(modes.Alert25vMode.value_or(0), alert25v);
    EXPECT_EQ(bench.BusTraffic(), traffic);
  }
}

TEST(BoardSync, TachRoutingFollowsConfiguration2AndKeepsTheOtherBits) {
  BoardBench bench;
  bench.Poke("73:05");
  bench.Eval.Device(SwitchDevice::U5).SetStatusByte(0x18);
  RouteTachsFromChip(bench.Eval);
  EXPECT_EQ(bench.BusTraffic(), "R73 S90:1D S90:5D S92:05 S92:45");
  for (int tach = 0; tach < 4; ++tach) RouteTach(bench.Eval, tach, tach % 2 == 1);
  EXPECT_EQ(bench.BusTraffic(), "V90 S90:5A V90 S90:BA V92 S92:42 V92 S92:A2");
}

TEST(BoardSync, AFailedTransferEndsEachRoutineThere) {
  const std::pair<const char*, std::function<void(Board&)>> routines[] = {
      {"S96:00 R43 S96:08 R43", ProbeVidDrive},
      {"R78 R7D S96:44", SyncTach4Switches},
      {"R78 S90:08 R7D S96:02", SyncAlertSwitches},
      {"R73 S90:02 S90:42 S92:02 S92:42", RouteTachsFromChip},
      {"V90 S90:05", [](Board& board) { RouteTach(board, 0, true); }},
      {"S96:00 S94:00 S90:01 S92:00", [](Board& board) { board.ToggleSwitch(0); }},
      {"V96 V94 V90 V92", [](Board& board) { board.ReadAll(); }},
      {"ST C20 K", [](Board& board) { board.SetHeater(1, true); }},
  };
  for (const auto& [traffic, routine] : routines) {
    for (int nth = 1; nth <= WordCount(traffic); ++nth) {
      BoardBench bench;
      bench.Poke("78:03");
      bench.Flags.VidProbeSteady = true;
      EXPECT_EQ(UpToFailure(bench, nth, [&] { routine(bench.Eval); }), FirstFailing(traffic, nth));
      EXPECT_EQ(bench.Sim.LiveHandles(), 0);
    }
  }
}

}  // namespace
}  // namespace krx
