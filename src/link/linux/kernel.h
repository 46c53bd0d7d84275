// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace krx {

/// Root directories of device nodes and kernel files; tests substitute their own directories.
struct KernelRoots {
  std::string Dev = "/dev";
  std::string Sys = "/sys";
  std::string Proc = "/proc";
};

/// Range of byte offsets of a device node that a process can lock. The node has no such bytes; the offsets only
/// represent the devices behind it.
struct LockRange {
  off_t First = 0, Count = 0;
};

/// The system calls used to access a device. Each returns its result, or the negated error number.
class Kernel {
 public:
  virtual ~Kernel() = default;
  /// Opens for reading and writing; returns a descriptor.
  virtual int Open(const std::string& path) = 0;
  /// argument: a number or the address of a structure, depending on the request.
  virtual int Ioctl(int descriptor, unsigned long request, unsigned long argument) = 0;
  virtual int Close(int descriptor) = 0;
  /// Locks the range for this process; -EAGAIN or -EACCES when another process holds it. Released by the close, or by
  /// the kernel when the process ends for any reason.
  virtual int Lock(int descriptor, LockRange range) = 0;
  /// The other process that holds the range; 0 when none does, negative when the kernel does not report which.
  virtual pid_t LockHolder(int descriptor, LockRange range) = 0;
};

class RealKernel : public Kernel {
 public:
  int Open(const std::string& path) override;
  int Ioctl(int descriptor, unsigned long request, unsigned long argument) override;
  int Close(int descriptor) override;
  int Lock(int descriptor, LockRange range) override;
  pid_t LockHolder(int descriptor, LockRange range) override;
};

/// One device node, open from Open to Close or to the destructor, whichever comes first.
class DeviceNode {
 public:
  explicit DeviceNode(Kernel& kernel) : kernel_(kernel) {}
  ~DeviceNode() { Close(); }
  DeviceNode(const DeviceNode&) = delete;
  DeviceNode& operator=(const DeviceNode&) = delete;

  /// Returns 0 or the negated error number. An open node is closed first.
  int Open(const std::string& path);
  void Close();
  bool IsOpen() const { return descriptor_ >= 0; }
  int Ioctl(unsigned long request, unsigned long argument = 0);
  /// Another process that holds the range, if any; with `take`, the range is locked if it is free.
  std::optional<pid_t> OtherHolder(LockRange range, bool take);
  template <typename Data>
  int Ioctl(unsigned long request, Data* data) {
    return Ioctl(request, reinterpret_cast<unsigned long>(data));
  }

 private:
  Kernel& kernel_;
  int descriptor_ = -1;
};

/// While alive, a system call of this thread that blocks for longer than `seconds` ends with EINTR.
class InterruptTimer {
 public:
  explicit InterruptTimer(double seconds);
  ~InterruptTimer();
  InterruptTimer(const InterruptTimer&) = delete;
  InterruptTimer& operator=(const InterruptTimer&) = delete;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// The first line of a file without its newline; empty when the file cannot be read.
std::optional<std::string> FirstLine(const std::string& path);

/// The numbers N of the directory entries named prefixN, ascending; empty when the directory does not exist.
std::vector<int> NumberedEntries(const std::string& directory, const std::string& prefix);

/// The symbol of an error number: "EIO"; the number itself when it has none.
std::string ErrorSymbol(int number);

}  // namespace krx
