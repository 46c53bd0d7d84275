// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simcomms.h"

#include <gtest/gtest.h>

#include "link/commserror.h"
#include "link/registeraccess.h"
#include "support/testbench.h"

namespace krx {
namespace {

TEST(SimComms, TheTraceHoldsEveryOperationInOrderWithTheFailedOnesMarked) {
  TestBench bench;
  ReadByte(bench.Bus, 0x77);
  WriteByte(bench.Bus, 0x30, 0xFF);
  EXPECT_EQ(bench.Sim.Trace().Text(TraceFilter::All), "A D R77 A D W30:FF");
  bench.FailTransfer(2);
  ReadByte(bench.Bus, 0x25);
  EXPECT_THROW(ReadByte(bench.Bus, 0x2A), CommsError);
  ReadByte(bench.Bus, 0x2B);
  EXPECT_EQ(bench.Traffic(), "R77 W30:FF R25 R2A! R2B");
  EXPECT_EQ(bench.Sim.LiveHandles(), 0);
}

}  // namespace
}  // namespace krx
