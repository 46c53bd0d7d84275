// SPDX-License-Identifier: GPL-3.0-or-later
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <string_view>

#include "app/command.h"

namespace {

volatile std::sig_atomic_t stopRequested = 0;

void RequestStop(int) {
  stopRequested = 1;
}

/// The first Ctrl-C requests a clean end, the second one kills the program even while a transfer hangs. A closed pipe
/// (`| head`) ends the program as usual.
void SetUpSignals() {
  struct sigaction stop {};
  stop.sa_handler = RequestStop;
  stop.sa_flags = static_cast<int>(SA_RESETHAND);
  sigaction(SIGINT, &stop, nullptr);
  sigaction(SIGTERM, &stop, nullptr);
  std::signal(SIGPIPE, SIG_DFL);
}

/// The running process.
class ProcessHost : public krx::CommandHost {
 public:
  std::ostream& Out() override { return std::cout; }
  std::ostream& Err() override { return std::cerr; }
  krx::Clock& ChipClock() override { return clock_; }
  krx::EventPump& Pump() override { return pump_; }
  std::chrono::system_clock::time_point Now() override { return std::chrono::system_clock::now(); }

  void Wait(double seconds) override {
    // In pieces: a signal that arrives just before the sleep would not interrupt it.
    constexpr double piece = 0.05;
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!StopRequested()) {
      const std::chrono::duration<double> left = end - std::chrono::steady_clock::now();
      if (left.count() <= 0) return;
      pump_.Pump(std::min(left.count(), piece), krx::PumpMode::Everything);
    }
  }

  bool StopRequested() override { return stopRequested != 0; }

  int ScreenLines() override {
    const char* terminal = std::getenv("TERM");
    if (isatty(STDOUT_FILENO) == 0 || terminal == nullptr || std::string_view(terminal) == "dumb") return 0;
    winsize size{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_row : 0;
  }

 private:
  krx::SystemClock clock_;
  krx::SleepingPump pump_;
};

}  // namespace

int main(int argc, char** argv) {
  SetUpSignals();
  ProcessHost host;
  return krx::RunCommand({argv + std::min(argc, 1), argv + argc}, host);
}
