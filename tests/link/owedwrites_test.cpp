// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/owedwrites.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <sstream>

#include "link/exitwork.h"
#include "link/registeraccess.h"
#include "simulator/simwords.h"
#include "support/testbench.h"

namespace krx {
namespace {

/// An output in manual control at 0 %, with pending restores of configuration 62h and duty 90h.
struct OwedBench : TestBench {
  explicit OwedBench(Medium medium = Medium::Board) : TestBench(medium) {
    Poke(0x5C, 0x62);
    DutyOwed = Owed.EnterRegister(0x30, 0x90, 0xFF);
    Owed.Change(DutyOwed, 0x00);
    ConfigurationOwed = Owed.EnterRegister(0x5C, 0x62, 0xE0);
    Owed.Change(ConfigurationOwed, 0xE2);
    BusTraffic();
  }
  void FailWrites(std::uint8_t reg, int seconds = 0) {
    Sim.AddFault({.Onward = true, .Op = Operation::WriteByteData, .Register = reg});
    if (seconds > 0) Sim.AddFault(*ParseFault("slow=" + std::to_string(seconds)));
  }
  bool PutBack() { return Owed.PutBack({DutyOwed, ConfigurationOwed}); }
  /// All restores failed; then the bus works again.
  void LetBecomeOverdue() {
    FailWrites(0x5C);
    FailWrites(0x30);
    EXPECT_FALSE(PutBack());
    Sim.ClearFaults();
    BusTraffic();
  }

  OwedWrites Owed{Bus};
  OwedWrites::Ticket DutyOwed = 0, ConfigurationOwed = 0;
};

TEST(OwedWrites, AByteIsTriedThreeTimesFiftyMillisecondsApartWithoutAnotherHandlerBetween) {
  OwedBench bench;
  bench.FailWrites(0x5C);
  int overdue = 0;
  bench.Owed.BecameOverdue = [&] { ++overdue; };
  bench.Pump.OnPump = [&] { EXPECT_TRUE(bench.Bus.TransferInProgress()); };
  const double start = bench.Time.Seconds();
  EXPECT_FALSE(bench.PutBack());
  EXPECT_EQ(bench.BusTraffic(), "W30:90 W5C:62! W5C:62! W5C:62!");
  EXPECT_NEAR(bench.Time.Seconds() - start, 0.1, 0.01);
  EXPECT_EQ(bench.Pump.LastMode, PumpMode::HoldUserInput);
  EXPECT_EQ(overdue, 1);
  EXPECT_TRUE(bench.Owed.OverdueByte(0x5C) == 0x62 && !bench.Owed.OverdueByte(0x30));
  EXPECT_EQ(bench.Owed.LastFailure().BoxText(), "Error: 57, Device I/O error");

  OwedBench ended;
  ended.FailWrites(0x5C);
  ended.Bus.EndAsked = [&] { return ended.Sim.FaultsFired() > 0; };
  EXPECT_FALSE(ended.PutBack());
  EXPECT_EQ(ended.BusTraffic(), "W30:90 W5C:62!") << "the rest is done by the requested end";

  OwedBench once;
  once.FailTransfer(1);
  int madeGood = 0;
  once.Owed.MadeGood = [&](const CommsError& error) { madeGood += error.Number(); };
  EXPECT_TRUE(once.PutBack());
  EXPECT_EQ(once.BusTraffic(), "W30:90! W5C:62 W30:90");
  EXPECT_TRUE(once.PutBack());
  EXPECT_EQ(once.BusTraffic(), "") << "it has been removed from the list";
  EXPECT_EQ(madeGood, 57);
}

TEST(OwedWrites, ATurnMakesOverdueRestoresOnceATransferHasSucceeded) {
  OwedBench bench;
  bench.LetBecomeOverdue();
  bench.Owed.TakeTurn();  // the last transfer failed
  ReadByte(bench.Bus, 0x26);
  bench.FailWrites(0x5C);
  EXPECT_THROW(bench.Owed.TakeTurn(), CommsError);
  bench.Sim.ClearFaults();
  bench.Owed.TakeTurn();
  ReadByte(bench.Bus, 0x26);
  bench.Owed.TakeTurn();
  EXPECT_EQ(bench.BusTraffic(), "R26 W30:90 W5C:62! R26 W5C:62");
  EXPECT_FALSE(bench.Owed.AnyOverdue());
}

TEST(OwedWrites, ARegisterChangedMeanwhileIsNotOverwritten) {
  const struct {
    std::uint8_t Register, Byte;
    const char* Turn;
    bool SetAnew;
  } rows[] = {
      {0x5C, 0x02, "W30:90", true},          // another behaviour
      {0x5C, 0x62, "W30:90", false},         // what it should hold
      {0x5C, 0xE5, "W30:90 W5C:65", false},  // another spin-up: its behaviour is still the detection's
      {0x30, 0x80, "W5C:62", true},          // the slider
      {0x30, 0x00, "W30:90 W5C:62", false},  // still as left by the detection
  };
  for (const auto& row : rows) {
    OwedBench bench;
    bench.LetBecomeOverdue();
    WriteByte(bench.Bus, row.Register, row.Byte);
    bench.BusTraffic();
    bench.Owed.TakeTurn();
    EXPECT_EQ(bench.BusTraffic(), row.Turn);
    EXPECT_EQ(bench.Owed.TakeSetAnew(), row.SetAnew);
  }
}

TEST(OwedWrites, TheEndTriesOnceIfTheLastTransferFailedBeginsNoneAfterThreeSecondsAndListsTheRest) {
  // Whether the previous transfer failed, the seconds per transfer, and the tries.
  const std::tuple<bool, int, const char*> rows[] = {
      {false, 0, "W30:90! W5C:62! W30:90! W5C:62! W30:90! W5C:62!"},
      {true, 0, "W30:90! W5C:62!"},
      {true, 4, "W30:90!"},
      {false, 2, "W30:90! W5C:62!"},
  };
  for (const auto& [failedBefore, seconds, traffic] : rows) {
    OwedBench bench;
    bench.FailWrites(0x5C, seconds);
    bench.FailWrites(0x30);
    ReadByte(bench.Bus, 0x26);
    if (failedBefore) {
      EXPECT_THROW(WriteByte(bench.Bus, 0x5C, 0), CommsError);
    }
    bench.BusTraffic();
    std::ostringstream said;
    bench.Owed.PutBackAtEnd(said);
    EXPECT_EQ(bench.BusTraffic(), traffic);
    EXPECT_EQ(said.str(),
              "Not restored: 30h should hold 90h (Error: 57, Device I/O error)\n"
              "Not restored: 5Ch should hold 62h (Error: 57, Device I/O error)\n");
  }
  OwedBench bench;
  std::ostringstream said;
  bench.Owed.BeginEnding();
  bench.Advance(3.5);
  bench.Owed.PutBackAtEnd(said);
  EXPECT_EQ(bench.BusTraffic(), "") << "the time counts from the request to end";
  EXPECT_EQ(said.str(), "Not restored: 30h should hold 90h\nNot restored: 5Ch should hold 62h\n");
}

TEST(OwedWrites, AtAnEndWithoutWindowsTransfersSleepAndNotifyNoListener) {
  OwedBench bench(TestBench::Medium::Smbus);
  SystemClock clock;
  ScriptedPump pump(bench.Time);
  Link link(bench.Root, clock, pump);
  link.ChipAddress = 0x2E;
  int told = 0;
  const auto subscription = link.Seen.Subscribe([&](std::uint8_t, std::optional<std::uint8_t>) { ++told; });
  link.LeaveWindowsAlone();
  const double start = link.ElapsedSeconds();
  WriteByte(link, 0x30, 0x90);
  const double written = link.ElapsedSeconds();
  EXPECT_GE(written - start, 0.005);
  SleepingPump().Pump(0.005, PumpMode::Everything);
  EXPECT_GE(link.ElapsedSeconds() - written, 0.005);
  EXPECT_EQ(pump.Calls, 0);
  EXPECT_EQ(told, 0);
}

TEST(ExitWork, RunsOnceOnExitOrTerminateWithoutDestructorAndNotAfterIt) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  static constexpr auto sayDone = [] { std::cerr << "done;"; };
  const auto exitWithin = [] {
    const ExitWork work(sayDone);
    std::exit(1);
  };
  const auto terminateWithin = [] {
    const ExitWork work([] { sayDone(), std::terminate(); });
    std::terminate();
  };
  const auto exitBehind = [] {
    { const ExitWork work(sayDone); }
    std::exit(1);
  };
  EXPECT_EXIT(exitWithin(), testing::ExitedWithCode(1), "^done;$");
  EXPECT_EXIT(terminateWithin(), testing::KilledBySignal(SIGABRT), "^done;[^;]*$");
  EXPECT_EXIT(exitBehind(), testing::ExitedWithCode(1), "^$");
}

}  // namespace
}  // namespace krx
