// SPDX-License-Identifier: GPL-3.0-or-later
// A library for LD_PRELOAD, for tests only: a program that opens /dev/i2c-1, /dev/i2c-2 or /dev/parport0 gets a
// simulated computer with the chip at 2Eh on the SMBus and at 2Dh on the board. Writes are stored in the file named by
// KRX_SHIM_STATE ("parport0 W5C:E2", as in a trace) and repeated by the next process; the clock is fixed at one minute
// after the start, so that all processes read the same values. The program gets the descriptor of a file next to the
// state file, so that locks are held by the kernel.

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include "link/linux/fakeparport.h"
#include "support/testbench.h"

namespace krx {
namespace {

constexpr double settledSeconds = 60;
constexpr int firstFakeDescriptor = 1000;

/// The device of one node.
struct Computer {
  Computer(const std::string& node, const std::string& state) : Node(node), State(state) {
    std::ifstream file(State);
    for (std::string name, done; file >> name >> done;) {
      char what = 0;
      unsigned place = 0, data = 0;
      if (name == Node && std::sscanf(done.c_str(), "%c%x:%x", &what, &place, &data) >= 2)
        Repeat(what, static_cast<std::uint8_t>(place), static_cast<std::uint8_t>(data));
    }
    Time.Advance(settledSeconds);
    // State of the data register between two programs.
    Port.Heaters = static_cast<std::uint8_t>(Board.ReadStatusByte() & 0x30);
    Port.Data = static_cast<std::uint8_t>(0x0F | Port.Heaters);
    Port.OnHeaters = [this](std::uint8_t heaters) { Board.SetControlByte(heaters); };
    Simulated.Trace().Clear();
  }
  void Repeat(char what, std::uint8_t place, std::uint8_t data) {
    if (what == 'C') Board.SetControlByte(place);
    if (what == 'S') Board.SendByte(place, data);
    if (what != 'W') return;
    if (OnBoard()) return Board.WriteByteData(0x5A, place, data);
    Smbus.Chips->WriteByteData(0x2E, place, data);
  }
  /// Stores the writes since the last call.
  void Keep() {
    std::string lines;
    for (const Transfer& transfer : Simulated.Trace().Transfers()) {
      const std::string text = TransferText(transfer);
      if (std::string_view("WSC").find(text[0]) != text.npos && text != "ST" && !transfer.Failed)
        lines += Node + ' ' + text + '\n';
    }
    Simulated.Trace().Clear();
    if (!lines.empty()) std::ofstream(State, std::ios::app) << lines;
  }
  bool OnBoard() const { return Node == "parport0"; }
  std::unique_ptr<FakeFile> Open() {
    if (OnBoard()) return std::make_unique<FakeParportFile>(Port);
    return std::make_unique<FakeI2cFile>(Smbus);
  }

  std::string Node, State;
  ManualClock Time;
  Simulation Simulated{Time, {}};
  std::unique_ptr<CommsModule> Module = Simulated.MakeCommsModule();
  FakeI2cAdapter Smbus{Module->ObtainSmbusController()};
  FakeParport Port{Module->ObtainPrinterPortAdapter()->ObtainBusDevice(), [this] { return Time.Seconds(); }};
  BusDevice& Board = *Port.Device.Board;
};

struct Shim {
  struct File {
    Computer& Behind;
    std::unique_ptr<FakeFile> Node;
  };
  std::map<std::string, Computer> Computers;
  std::map<int, File> Files;

  /// One per process; never destroyed, since programs may close their descriptors at any time.
  static Shim& Get() {
    static Shim& shim = *new Shim;
    return shim;
  }
};

template <typename... Arguments>
int Call(long number, Arguments... arguments) {
  return static_cast<int>(::syscall(number, arguments...));
}

}  // namespace

// Replaced functions of the C library; their optional argument is passed like a named one. All other symbols are local,
// since the program itself contains a simulation, too.
#define REPLACES(name) __asm__(name) __attribute__((visibility("default")))
int Open(const char* path, int flags, mode_t mode) REPLACES("open");
int Open64(const char* path, int flags, mode_t mode) REPLACES("open64");
int Ioctl(int descriptor, unsigned long request, unsigned long argument) REPLACES("ioctl");
int Close(int descriptor) REPLACES("close");

int Open(const char* path, int flags, mode_t mode) {
  const std::string name = path;
  if (name != "/dev/i2c-1" && name != "/dev/i2c-2" && name != "/dev/parport0") {
    return Call(SYS_openat, AT_FDCWD, path, flags, mode);
  }
  const std::string node = name.substr(5), state = std::getenv("KRX_SHIM_STATE");
  const int file = Call(SYS_openat, AT_FDCWD, (state + "." + node).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  const int descriptor = Call(SYS_fcntl, file, F_DUPFD_CLOEXEC, firstFakeDescriptor);
  Call(SYS_close, file);
  Computer& behind = Shim::Get().Computers.try_emplace(node, node, state).first->second;
  Shim::Get().Files.emplace(descriptor, Shim::File{behind, behind.Open()});
  return descriptor;
}

int Open64(const char* path, int flags, mode_t mode) {
  return Open(path, flags, mode);
}

int Ioctl(int descriptor, unsigned long request, unsigned long argument) {
  if (descriptor < firstFakeDescriptor) return Call(SYS_ioctl, descriptor, request, argument);
  const Shim::File& file = Shim::Get().Files.at(descriptor);
  const int result = file.Node->Ioctl(request, argument);
  file.Behind.Keep();
  errno = result < 0 ? -result : errno;
  return result < 0 ? -1 : result;
}

int Close(int descriptor) {
  if (descriptor >= firstFakeDescriptor) Shim::Get().Files.erase(descriptor);
  return Call(SYS_close, descriptor);
}

}  // namespace krx
