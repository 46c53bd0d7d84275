// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "link/linux/kernel.h"

namespace krx {

/// Directories that stand for /dev, /sys and /proc, empty at first.
struct TestRoots {
  TestRoots() {
    std::filesystem::remove_all(Base);
    std::filesystem::create_directories(Roots.Dev);
  }
  ~TestRoots() { std::filesystem::remove_all(Base); }

  void File(const std::string& path, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << text << '\n';
  }

  /// An adapter below its parent device, with the link that the kernel makes to it.
  void Adapter(int number, const std::string& name, const std::string& vendor = "", const std::string& device = "") {
    const std::string bus = "i2c-" + std::to_string(number);
    const std::string parent = Roots.Sys + "/devices/parent" + std::to_string(number);
    File(parent + "/" + bus + "/name", name);
    if (!vendor.empty()) File(parent + "/vendor", vendor);
    if (!device.empty()) File(parent + "/device", device);
    std::filesystem::create_directories(Roots.Sys + "/bus/i2c/devices");
    std::filesystem::create_directory_symlink(parent + "/" + bus, Roots.Sys + "/bus/i2c/devices/" + bus);
  }

  /// Who holds printer port 0.
  void Active(const std::string& driver) { File(Roots.Proc + "/sys/dev/parport/parport0/devices/active", driver); }

  const std::string Base = testing::TempDir() + "krx_" + testing::UnitTest::GetInstance()->current_test_info()->name() +
                           std::to_string(getpid());
  const KernelRoots Roots{Base + "/dev", Base + "/sys", Base + "/proc"};
};

}  // namespace krx
