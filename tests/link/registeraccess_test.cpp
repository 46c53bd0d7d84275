// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/registeraccess.h"

#include <gtest/gtest.h>

#include "support/fakecomms.h"

namespace krx {
namespace {

TEST(RegisterAccess, AValueOutsideAByteOverflowsBeforeAnyWaitOrTraffic) {
  FakeBench bench;
  bench.Link.CommsMedium = 0;
  for (const int value : {-1, 256, 65536, -65536}) EXPECT_THROW(WriteByte(bench.Link, 0x30, value), Overflow) << value;
  EXPECT_TRUE(bench.Bus.Diary.empty());
}

TEST(RegisterAccess, UpdateBitsReadsOnceWritesOnceAndKeepsTheNeighbours) {
  FakeBench bench;
  bench.Bus.Registers[0x5C] = 0xA5;
  UpdateBits(bench.Link, 0x5C, 0x1E, 0xFF);
  UpdateBits(bench.Link, 0x5C, 0xE0, 0x00);
  EXPECT_EQ(bench.Bus.Diary, (std::vector<std::string>{"port read 5A 5C", "port write 5A 5C BF", "port read 5A 5C",
                                                       "port write 5A 5C 1F"}));
}

}  // namespace
}  // namespace krx
