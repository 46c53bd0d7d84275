// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/backoff.h"

#include <gtest/gtest.h>

#include <vector>

namespace krx {
namespace {

TEST(Backoff, RestsFromTheSecondFailureInARowUntilASuccess) {
  Backoff backoff;
  const auto fail = [&](int times) {
    std::vector<int> pauses;
    for (int i = 0; i < times; ++i) {
      backoff.Failed();
      pauses.push_back(backoff.PauseMilliseconds());
    }
    return pauses;
  };
  EXPECT_EQ(fail(8), (std::vector{0, 100, 200, 400, 800, 1600, 2000, 2000}));
  EXPECT_EQ(fail(1000).back(), 2000);
  backoff.Succeeded();
  EXPECT_EQ(backoff.PauseMilliseconds(), 0);
  EXPECT_EQ(fail(2), (std::vector{0, 100}));
}

}  // namespace
}  // namespace krx
