// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace krx {

/// Where device nodes and the kernel's own files are; a test puts directories of its own here.
struct KernelRoots {
  std::string Dev = "/dev";
  std::string Sys = "/sys";
  std::string Proc = "/proc";
};

/// Bytes of a device node that a process can take for itself. The node has no such bytes; they only stand for what is
/// behind it.
struct LockRange {
  off_t First = 0, Count = 0;
};

/// The system calls that reach a device. Each returns its result, or the negated error number.
class Kernel {
 public:
  virtual ~Kernel() = default;
  /// Opens for reading and writing; returns a descriptor.
  virtual int Open(const std::string& path) = 0;
  /// argument: a number or the address of a structure, as the request wants it.
  virtual int Ioctl(int descriptor, unsigned long request, unsigned long argument) = 0;
  virtual int Close(int descriptor) = 0;
  /// Takes the range for this process; -EAGAIN or -EACCES when another one has it. It is given back by the close, or by
  /// the kernel at the end of the process, whatever ends it.
  virtual int Lock(int descriptor, LockRange range) = 0;
  /// The other process that has the range; 0 when none has, negative when the kernel does not say which.
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

/// One device node: open from Open to Close or to the end of the object, whichever is first.
class DeviceNode {
 public:
  explicit DeviceNode(Kernel& kernel) : kernel_(kernel) {}
  ~DeviceNode() { Close(); }
  DeviceNode(const DeviceNode&) = delete;
  DeviceNode& operator=(const DeviceNode&) = delete;

  /// 0, or the negated error number. A node that was open is closed first.
  int Open(const std::string& path);
  void Close();
  bool IsOpen() const { return descriptor_ >= 0; }
  int Ioctl(unsigned long request, unsigned long argument = 0);
  /// Another process that has the range, if any; with `take`, the range is taken where none has it.
  std::optional<pid_t> OtherHolder(LockRange range, bool take);
  template <typename Data>
  int Ioctl(unsigned long request, Data* data) {
    return Ioctl(request, reinterpret_cast<unsigned long>(data));
  }

 private:
  Kernel& kernel_;
  int descriptor_ = -1;
};

/// While it lives, a system call of this thread that blocks longer than `seconds` ends with EINTR.
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

/// The first line of a file without its newline; nothing when it cannot be read.
std::optional<std::string> FirstLine(const std::string& path);

/// The numbers N of the entries prefixN in a directory, ascending; empty when there is no such directory.
std::vector<int> NumberedEntries(const std::string& directory, const std::string& prefix);

/// The symbol of an error number: "EIO". Its decimal text when it has none.
std::string ErrorSymbol(int number);

}  // namespace krx
