// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/exitwork.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

namespace krx {
namespace {

void SayDone() {
  std::cerr << "done;";
}

TEST(ExitWork, IsDoneOnceByAnExitPastItsDestructorAndByTerminateAndNotAfterIt) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  const auto exitWithin = [] {
    const ExitWork work(SayDone);
    std::exit(1);
  };
  const auto terminateWithin = [] {
    const ExitWork work([] { SayDone(), std::terminate(); });
    std::terminate();
  };
  const auto exitBehind = [] {
    { const ExitWork work(SayDone); }
    std::exit(1);
  };
  EXPECT_EXIT(exitWithin(), testing::ExitedWithCode(1), "^done;$");
  EXPECT_EXIT(terminateWithin(), testing::KilledBySignal(SIGABRT), "^done;[^;]*$");
  EXPECT_EXIT(exitBehind(), testing::ExitedWithCode(1), "^$");
}

}  // namespace
}  // namespace krx
