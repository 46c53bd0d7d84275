// SPDX-License-Identifier: GPL-3.0-or-later
#include "power/processorpower.h"

#include <gtest/gtest.h>

namespace krx {
namespace {

TEST(ProcessorPower, BothEquationsAndTheirInverse) {
  PowerSettings settings;
  EXPECT_NEAR(ProcessorCurrent(1.2F, 1.5F, settings), -400, 1e-3);
  EXPECT_NEAR(ProcessorPower(1.2F, 1.5F, settings), -600, 1e-3);
  EXPECT_NEAR(SenseVoltsFor(-400, 1.5F, settings), 1.2, 1e-6);
  settings.PowerEquation = false;
  EXPECT_NEAR(ProcessorCurrent(1.2F, 1.5F, settings), 16, 1e-4);
  EXPECT_NEAR(SenseVoltsFor(16, 1.5F, settings), 1.2, 1e-6);
}

}  // namespace
}  // namespace krx
