// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "link/commserror.h"
#include "link/commsmodule.h"
#include "link/linux/kernel.h"

namespace krx {

/// Behaviour of an open descriptor of a fake device. Its destructor is the close.
class FakeFile {
 public:
  virtual ~FakeFile() = default;
  virtual int Ioctl(unsigned long request, unsigned long argument) = 0;
};

/// A kernel with device nodes defined by a test.
class FakeKernel : public Kernel {
 public:
  std::map<std::string, std::function<std::unique_ptr<FakeFile>()>> Nodes;
  std::map<std::string, int> OpenErrors;  ///< by path: error of opening it
  std::map<std::pair<std::string, off_t>, pid_t>
      HeldByOthers;                                ///< by path and first byte: the process that has locked it
  std::set<std::pair<std::string, off_t>> Locked;  ///< by us
  int Opened = 0;
  std::size_t OpenNow() const { return files_.size(); }

  int Open(const std::string& path) override {
    if (const auto error = OpenErrors.find(path); error != OpenErrors.end()) return -error->second;
    if (!Nodes.contains(path)) return -ENOENT;
    files_[Opened] = {path, Nodes[path]()};
    return Opened++;
  }
  int Ioctl(int descriptor, unsigned long request, unsigned long argument) override {
    return files_.at(descriptor).second->Ioctl(request, argument);
  }
  int Close(int descriptor) override {
    std::erase_if(Locked, [&](const auto& lock) { return lock.first == files_.at(descriptor).first; });
    return files_.erase(descriptor) == 1 ? 0 : -EBADF;
  }
  int Lock(int descriptor, LockRange range) override {
    if (LockHolder(descriptor, range) != 0) return -EAGAIN;
    Locked.emplace(files_.at(descriptor).first, range.First);
    return 0;
  }
  pid_t LockHolder(int descriptor, LockRange range) override {
    const auto held = HeldByOthers.find({files_.at(descriptor).first, range.First});
    return held == HeldByOthers.end() ? 0 : held->second;
  }

 private:
  std::map<int, std::pair<std::string, std::unique_ptr<FakeFile>>> files_;
};

/// "kind number text" of what the work throws; empty when it does not.
template <typename Work>
std::string ErrorOf(Work work) {
  try {
    work();
    return "";
  } catch (const CommsError& error) {
    const bool silent = dynamic_cast<const NoAcknowledge*>(&error) != nullptr;
    return (silent ? "silent " : "failed ") + ErrorSymbol(error.Number()) + " " + error.what();
  }
}

/// Directories replacing /dev, /sys and /proc, initially empty.
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

  /// An adapter below its parent device, with the kernel's link to it.
  void Adapter(int number, const std::string& name, const std::string& vendor = "", const std::string& device = "") {
    const std::string bus = "i2c-" + std::to_string(number);
    const std::string parent = Roots.Sys + "/devices/parent" + std::to_string(number);
    File(parent + "/" + bus + "/name", name);
    if (!vendor.empty()) File(parent + "/vendor", vendor);
    if (!device.empty()) File(parent + "/device", device);
    std::filesystem::create_directories(Roots.Sys + "/bus/i2c/devices");
    std::filesystem::create_directory_symlink(parent + "/" + bus, Roots.Sys + "/bus/i2c/devices/" + bus);
  }

  /// The holder of printer port 0.
  void Active(const std::string& driver) { File(Roots.Proc + "/sys/dev/parport/parport0/devices/active", driver); }

  const std::string Base = std::filesystem::temp_directory_path() / ("krx_" + std::to_string(getpid()));
  const KernelRoots Roots{Base + "/dev", Base + "/sys", Base + "/proc"};
};

/// An SMBus adapter as presented by the kernel, with the devices of `Chips` on it.
struct FakeI2cAdapter {
  std::unique_ptr<SmbusController> Chips;
  unsigned long Functions = I2C_FUNC_SMBUS_BYTE_DATA | I2C_FUNC_SMBUS_QUICK | I2C_FUNC_SMBUS_BYTE;
  int FunctionsError = 0;
  std::set<unsigned long> BusyAddresses = {};  ///< in use by a kernel driver
  int TransferError = 0;                       ///< error of every transfer; 0: as returned by the devices
  int Transfers = 0;
};

class FakeI2cFile : public FakeFile {
 public:
  explicit FakeI2cFile(FakeI2cAdapter& adapter) : adapter_(adapter) {}

  int Ioctl(unsigned long request, unsigned long argument) override {
    switch (request) {
      case I2C_FUNCS:
        if (adapter_.FunctionsError != 0) return -adapter_.FunctionsError;
        *reinterpret_cast<unsigned long*>(argument) = adapter_.Functions;
        return 0;
      case I2C_SLAVE:
      case I2C_SLAVE_FORCE:
        if (argument > 0x7F) return -EINVAL;
        if (request == I2C_SLAVE && adapter_.BusyAddresses.contains(argument)) return -EBUSY;
        address_ = static_cast<std::uint8_t>(argument);
        return 0;
      case I2C_SMBUS:
        return Transfer(*reinterpret_cast<i2c_smbus_ioctl_data*>(argument));
      default:
        return -ENOTTY;
    }
  }

 private:
  int Transfer(const i2c_smbus_ioctl_data& request) {
    ++adapter_.Transfers;
    if (adapter_.TransferError != 0) return -adapter_.TransferError;
    // The first two are used to probe addresses.
    const bool asks = request.size == I2C_SMBUS_QUICK || request.size == I2C_SMBUS_BYTE;
    if (!asks && request.size != I2C_SMBUS_BYTE_DATA) return -EOPNOTSUPP;
    const auto reg = request.command;
    try {
      if (asks) return adapter_.Chips->ReadByteData(address_, 0x3E), 0;
      if (request.read_write == I2C_SMBUS_READ)
        return request.data->byte = adapter_.Chips->ReadByteData(address_, reg), 0;
      return adapter_.Chips->WriteByteData(address_, reg, request.data->byte), 0;
    } catch (const NoAcknowledge&) {
      return -ENXIO;
    } catch (const CommsError&) {
      return -EIO;
    }
  }

  FakeI2cAdapter& adapter_;
  std::uint8_t address_ = 0;
};

}  // namespace krx
