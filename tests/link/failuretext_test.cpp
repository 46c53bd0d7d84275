// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/failuretext.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>
#include <vector>

#include "link/commserror.h"

namespace krx {
namespace {

template <typename Work>
std::string TextOf(Work work) {
  try {
    work();
  } catch (const std::exception& error) {
    return FailureText(error);
  }
  return "";
}

TEST(FailureText, NeverShowsTheTextOfALibrary) {
  EXPECT_EQ(TextOf([] { throw CommsError(57, "Device I/O error"); }), "Error: 57, Device I/O error");
  EXPECT_EQ(TextOf([] { throw Failure("ours"); }), "ours");
  EXPECT_EQ(TextOf([] { throw std::bad_alloc(); }), "not enough memory");
  EXPECT_EQ(TextOf([] { std::ignore = std::filesystem::file_size("/nowhere"); }), "no such file or directory (ENOENT)");
  EXPECT_EQ(TextOf([] { std::vector<int>().at(1) = 0; }), "internal error");
  EXPECT_EQ(SystemErrorText(ENOSPC), "no space left on the device (ENOSPC)");
  EXPECT_EQ(SystemErrorText(EXDEV), "system error (EXDEV)");
}

}  // namespace
}  // namespace krx
