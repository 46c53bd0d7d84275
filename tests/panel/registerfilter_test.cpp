// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/registerfilter.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "support/testbench.h"

namespace krx {
namespace {

TEST(RegisterFilter, FindsByPartOfANameAndByTheFirstDigitsOfAnAddress) {
  const std::pair<const char*, const char*> rows[] = {
      {"op POINT", "33 34 35"},
      {"5c", "5C"},
      {"0x5C", "5C"},
      {" 5Ch ", "5C"},
      {"5h", ""},
      {"0x3", "30 31 32 33 34 35 36 37 3D 3E 3F"},
      {"0x", ""},
      {"5Chh", ""},
      {"revision", "3F"},
      {"tmin reg2", "37"},
      {"per rev", "7B"},
      {"remote 2 trange", "61"},
  };
  for (const auto& [typed, found] : rows) {
    std::string text;
    for (const RegisterEntry& entry : Registers()) {
      if (IsFound(entry, typed)) text += fmt::format("{}{:02X}", text.empty() ? "" : " ", entry.Address);
    }
    EXPECT_EQ(text, found) << typed;
  }
}

TEST(RegisterMap, TheDefaultsAreWhatTheChipHoldsAfterPowerOn) {
  TestBench bench;
  for (const RegisterEntry& entry : Registers()) {
    EXPECT_EQ(entry.Default.has_value(), !entry.SaveLabel.empty()) << entry.PanelName;
    if (entry.SaveLabel.empty()) continue;
    EXPECT_EQ(bench.Peek(entry.Address), entry.Default) << entry.PanelName;
  }
}

}  // namespace
}  // namespace krx
