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
  EXPECT_EXIT(
      {
        const ExitWork work(SayDone);
        std::exit(1);
      },
      testing::ExitedWithCode(1), "^done;$");
  EXPECT_EXIT(
      {
        const ExitWork work([] {
          SayDone();
          std::terminate();
        });
        std::terminate();
      },
      testing::KilledBySignal(SIGABRT), "^done;[^;]*$");
  EXPECT_EXIT(
      {
        { const ExitWork work(SayDone); }
        std::exit(1);
      },
      testing::ExitedWithCode(1), "^$");
}

}  // namespace
}  // namespace krx
