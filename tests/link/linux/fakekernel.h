// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cerrno>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "link/commserror.h"
#include "link/linux/kernel.h"

namespace krx {

/// What an open descriptor of a fake device does. Its destructor is the close.
class FakeFile {
 public:
  virtual ~FakeFile() = default;
  virtual int Ioctl(unsigned long request, unsigned long argument) = 0;
};

/// A kernel whose device nodes a test makes up.
class FakeKernel : public Kernel {
 public:
  std::map<std::string, std::function<std::unique_ptr<FakeFile>()>> Nodes;
  std::map<std::string, int> OpenErrors;                        ///< by path: what opening it answers
  std::map<std::pair<std::string, off_t>, pid_t> HeldByOthers;  ///< by path and first byte: who has locked it
  std::set<std::pair<std::string, off_t>> Locked;               ///< by us
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
  } catch (const NoAcknowledge& error) {
    return "silent " + ErrorSymbol(error.Number()) + " " + error.what();
  } catch (const CommsError& error) {
    return "failed " + ErrorSymbol(error.Number()) + " " + error.what();
  }
}

}  // namespace krx
