// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/registeraccess.h"

#include <gtest/gtest.h>

#include "link/commserror.h"

namespace krx {
namespace {

class NoModule : public EventPump {
 public:
  void Pump(double, PumpMode) override { FAIL() << "no wait before an overflow"; }
};

TEST(RegisterAccess, AValueOutsideAByteOverflowsBeforeAnyWaitOrTraffic) {
  SystemClock clock;
  NoModule pump;
  CommsRoot root([]() -> std::unique_ptr<CommsModule> { throw CommsError(1, "traffic"); });
  Link link(root, clock, pump);
  for (const int value : {-1, 256, 65536, -65536}) EXPECT_THROW(WriteByte(link, 0x30, value), Overflow) << value;
}

}  // namespace
}  // namespace krx
