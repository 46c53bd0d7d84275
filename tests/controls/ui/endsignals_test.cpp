// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/endsignals.h"

#include <gtest/gtest.h>

#include "support/livebench.h"

namespace krx {
namespace {

TEST(EndSignals, ASignalFromOutsideBecomesARequestOnceNothingIsUnderWay) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) {
    bool busy = true;
    int requests = 0;
    EndSignals endSignals([&] { return busy; });
    QObject::connect(&endSignals, &EndSignals::EndRequested, [&] { ++requests; });
    std::raise(SIGPIPE);
    LiveBench::Run(20);
    busy = false;
    LiveBench::Run(20);
    EXPECT_EQ(requests, 0) << "a reader that went away ends nothing";
    busy = true;
    EXPECT_FALSE(endSignals.Asked());
    std::raise(signal);
    EXPECT_TRUE(endSignals.Asked()) << "at once: a transfer under way handles no event";
    LiveBench::Run(30);
    EXPECT_EQ(requests, 0);
    busy = false;
    LiveBench::Run(50);
    EXPECT_EQ(requests, 1);
  }
}

}  // namespace
}  // namespace krx
