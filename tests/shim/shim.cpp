// SPDX-License-Identifier: GPL-3.0-or-later
//
// A library for LD_PRELOAD, for tests only: any program that opens /dev/i2c-1 or /dev/parport0 finds the simulated
// board there. The chip on the SMBus is at 2Eh, the one on the board at 2Dh; /dev/i2c-2 is a second adapter with a chip
// at 2Eh, too. Locks of a node are those of a file beside KRX_SHIM_STATE. Each process makes its own simulation, so
// what was written is kept in the file that KRX_SHIM_STATE names and done again by the next process; the clock always
// stands a minute after the start, so that everybody reads the same values.

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include "link/linux/fakei2c.h"
#include "link/linux/fakeparport.h"
#include "support/testbench.h"

namespace krx {
namespace {

constexpr const char* i2cPath = "/dev/i2c-1";
constexpr const char* secondI2cPath = "/dev/i2c-2";
constexpr const char* parportPath = "/dev/parport0";
constexpr double settledSeconds = 60;

/// What was done so far, a line an operation: "smbus 2e 4e 55".
class State {
 public:
  void Note(const char* what, int first, int second, int third) {
    if (const char* path = std::getenv("KRX_SHIM_STATE")) {
      std::ofstream(path, std::ios::app) << what << std::hex << ' ' << first << ' ' << second << ' ' << third << '\n';
    }
  }
  template <typename Action>
  void Repeat(Action action) {
    const char* path = std::getenv("KRX_SHIM_STATE");
    std::ifstream file(path != nullptr ? path : "");
    std::string what;
    int first = 0, second = 0, third = 0;
    while (file >> what >> std::hex >> first >> second >> third) {
      action(what, static_cast<std::uint8_t>(first), static_cast<std::uint8_t>(second),
             static_cast<std::uint8_t>(third));
    }
  }
};

class NotedChips : public SmbusController {
 public:
  NotedChips(std::unique_ptr<SmbusController> inner, State& state, const char* name)
      : inner_(std::move(inner)), state_(state), name_(name) {}
  std::string ChipsetReport() override { return inner_->ChipsetReport(); }
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) override {
    inner_->WriteByteData(address, reg, data);
    state_.Note(name_, address, reg, data);
  }
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) override {
    return inner_->ReadByteData(address, reg);
  }
  void SetTargetAddress(std::uint8_t address) override { inner_->SetTargetAddress(address); }

 private:
  std::unique_ptr<SmbusController> inner_;
  State& state_;
  const char* name_;
};

/// The board's device notes what a transaction did when it stops.
class NotedBoard : public BoardDevice {
 public:
  NotedBoard(std::unique_ptr<BusDevice> board, State& state) : BoardDevice(std::move(board)), state_(state) {}

  bool Address(std::uint8_t byte) override {
    const bool acknowledged = BoardDevice::Address(byte);
    address_ = byte;
    count_ = 0;
    return acknowledged;
  }
  bool Write(std::uint8_t byte) override {
    if (count_ < 2) bytes_[count_] = byte;
    ++count_;
    return BoardDevice::Write(byte);
  }
  void Stop() override {
    BoardDevice::Stop();
    if (count_ == 1) state_.Note("send", address_, bytes_[0], 0);
    if (count_ == 2) state_.Note("board", address_, bytes_[0], bytes_[1]);
    count_ = 0;
  }

 private:
  State& state_;
  std::uint8_t address_ = 0;
  std::uint8_t bytes_[2] = {};
  std::size_t count_ = 0;
};

struct Shim {
  Shim() {
    const auto smbus = Module->ObtainSmbusController();
    const auto other = SecondModule->ObtainSmbusController();
    BusDevice& device = *Board.Board;
    Known.Repeat([&](const std::string& what, std::uint8_t first, std::uint8_t second, std::uint8_t third) {
      if (what == "smbus") smbus->WriteByteData(first, second, third);
      if (what == "second") other->WriteByteData(first, second, third);
      if (what == "board") device.WriteByteData(first, second, third);
      if (what == "send") device.SendByte(first, second);
      if (what == "control") device.SetControlByte(first);
    });
    Time.Advance(settledSeconds);
    // What the data register keeps between two programs.
    Port.Heaters = static_cast<std::uint8_t>(device.ReadStatusByte() & 0x30);
    Port.Data = static_cast<std::uint8_t>(0x0F | Port.Heaters);
    Port.OnHeaters = [this](std::uint8_t heaters) {
      Board.Board->SetControlByte(heaters);
      Known.Note("control", heaters, 0, 0);
    };
    Smbus.Chips = std::make_unique<NotedChips>(Module->ObtainSmbusController(), Known, "smbus");
    SecondSmbus.Chips = std::make_unique<NotedChips>(SecondModule->ObtainSmbusController(), Known, "second");
    Fake.Nodes[i2cPath] = [this] { return std::make_unique<FakeI2cFile>(Smbus); };
    Fake.Nodes[secondI2cPath] = [this] { return std::make_unique<FakeI2cFile>(SecondSmbus); };
    Fake.Nodes[parportPath] = [this] { return std::make_unique<FakeParportFile>(Port); };
  }

  /// One for the process; never destroyed, since programs close their descriptors at any time.
  static Shim& Get() {
    static Shim& shim = *new Shim;
    return shim;
  }

  State Known;
  ManualClock Time;
  Simulation Simulated{Time, {}};
  std::unique_ptr<CommsModule> Module = Simulated.MakeCommsModule();
  Simulation SecondSimulated{Time, {}};
  std::unique_ptr<CommsModule> SecondModule = SecondSimulated.MakeCommsModule();
  FakeI2cAdapter Smbus, SecondSmbus;
  std::map<int, int> LockFiles;  ///< by fake descriptor
  NotedBoard Board{Module->ObtainPrinterPortAdapter()->ObtainBusDevice(), Known};
  BitSlave Slave{Board, [this] { return Time.Seconds(); }};
  FakeParport Port{Slave};
  FakeKernel Fake;
};

constexpr int firstFakeDescriptor = 1000;

int ResultOf(int result) {
  if (result >= 0) return result;
  errno = -result;
  return -1;
}

int Open(const char* path, int flags, mode_t mode) {
  const std::string name = path;
  if (name != i2cPath && name != secondI2cPath && name != parportPath) {
    return static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
  }
  Shim& shim = Shim::Get();
  const int descriptor = shim.Fake.Open(name);
  if (const char* state = std::getenv("KRX_SHIM_STATE"); state != nullptr && descriptor >= 0) {
    const std::string file = state + ("." + name.substr(name.rfind('/') + 1));
    shim.LockFiles[descriptor] =
        static_cast<int>(::syscall(SYS_openat, AT_FDCWD, file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  }
  return ResultOf(descriptor);
}

int Control(int descriptor, int request, unsigned long argument) {
  if (descriptor >= firstFakeDescriptor) {
    const auto& files = Shim::Get().LockFiles;
    const auto file = files.find(descriptor);
    if (file == files.end()) return ResultOf(-EBADF);
    descriptor = file->second;
  }
  return static_cast<int>(::syscall(SYS_fcntl, descriptor, request, argument));
}

mode_t ModeOf(int flags, va_list arguments) {
  return (flags & (O_CREAT | O_TMPFILE)) != 0 ? static_cast<mode_t>(va_arg(arguments, int)) : 0;
}

}  // namespace
}  // namespace krx

// The rest of this library stays its own: the program it is loaded into has a simulation, too.
#pragma GCC visibility push(default)
extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = krx::ModeOf(flags, arguments);
  va_end(arguments);
  return krx::Open(path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = krx::ModeOf(flags, arguments);
  va_end(arguments);
  return krx::Open(path, flags | O_LARGEFILE, mode);
}

int ioctl(int descriptor, unsigned long request, ...) {
  va_list arguments;
  va_start(arguments, request);
  const auto argument = va_arg(arguments, unsigned long);
  va_end(arguments);
  if (descriptor >= krx::firstFakeDescriptor) {
    return krx::ResultOf(krx::Shim::Get().Fake.Ioctl(descriptor, request, argument));
  }
  return static_cast<int>(::syscall(SYS_ioctl, descriptor, request, argument));
}

int fcntl(int descriptor, int request, ...) {
  va_list arguments;
  va_start(arguments, request);
  const auto argument = va_arg(arguments, unsigned long);
  va_end(arguments);
  return krx::Control(descriptor, request, argument);
}

int fcntl64(int descriptor, int request, ...) {
  va_list arguments;
  va_start(arguments, request);
  const auto argument = va_arg(arguments, unsigned long);
  va_end(arguments);
  return krx::Control(descriptor, request, argument);
}

int close(int descriptor) {
  if (descriptor >= krx::firstFakeDescriptor) {
    auto& files = krx::Shim::Get().LockFiles;
    if (const auto file = files.find(descriptor); file != files.end()) {
      ::syscall(SYS_close, file->second);
      files.erase(file);
    }
  }
  if (descriptor >= krx::firstFakeDescriptor) return krx::ResultOf(krx::Shim::Get().Fake.Close(descriptor));
  return static_cast<int>(::syscall(SYS_close, descriptor));
}
}
#pragma GCC visibility pop
