// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/owedturn.h"

#include <gtest/gtest.h>

#include "link/registeraccess.h"
#include "support/livebench.h"

namespace krx {
namespace {

TEST(OwedTurn, WritesWhatIsOverdueOnceTheBusWorksAgainAndNeverWhileAHandlerHoldsTheChip) {
  LiveBench bench;
  OwedWrites owed(bench.Bus);
  int putBack = 0;
  const OwedTurn turn(
      owed, bench.Turns, [&](bool setAnew) { putBack += setAnew ? 100 : 1; }, 5);
  const auto ticket = owed.EnterRegister(0x5C, 0x62, 0xE0);
  owed.Change(ticket, 0xE2);
  Fault fault;
  fault.Onward = true;
  bench.Sim.AddFault(fault);
  EXPECT_FALSE(owed.PutBack({ticket}));
  bench.Sim.ClearFaults();
  LiveBench::Run(50);
  EXPECT_EQ(bench.Sim.SmbusChip().Peek(0x5C), 0xE2) << "nothing has shown yet that the bus works";
  {
    const ChipTurns::Hold handler(bench.Turns);
    ReadByte(bench.Bus, 0x26);
    LiveBench::Run(50);
    EXPECT_EQ(bench.Sim.SmbusChip().Peek(0x5C), 0xE2);
  }
  for (int passes = 0; passes < 100 && putBack == 0; ++passes) LiveBench::Run(20);
  EXPECT_EQ(bench.Sim.SmbusChip().Peek(0x5C), 0x62);
  LiveBench::Run(50);
  EXPECT_EQ(putBack, 1);
}

}  // namespace
}  // namespace krx
