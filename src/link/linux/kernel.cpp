// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/kernel.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>

namespace krx {

namespace {

int ResultOrError(int result) {
  return result < 0 ? -errno : result;
}

// A process-associated lock, not one of an open file description: only for this kind does the kernel report the holder,
// to every user who may open the node. It is released by the first close of the node in this process, so each node is
// opened only once and the lock is on the descriptor used for the transfers.
struct flock WriteLock(LockRange range) {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = range.First;
  lock.l_len = range.Count;
  return lock;
}

}  // namespace

int RealKernel::Open(const std::string& path) {
  return ResultOrError(::open(path.c_str(), O_RDWR | O_CLOEXEC));
}

int RealKernel::Ioctl(int descriptor, unsigned long request, unsigned long argument) {
  return ResultOrError(::ioctl(descriptor, request, argument));
}

int RealKernel::Close(int descriptor) {
  return ResultOrError(::close(descriptor));
}

int RealKernel::Lock(int descriptor, LockRange range) {
  struct flock lock = WriteLock(range);
  return ResultOrError(::fcntl(descriptor, F_SETLK, &lock));
}

pid_t RealKernel::LockHolder(int descriptor, LockRange range) {
  struct flock lock = WriteLock(range);
  if (::fcntl(descriptor, F_GETLK, &lock) < 0 || lock.l_type == F_UNLCK) return 0;
  // A process in another PID namespace has no number here.
  return lock.l_pid > 0 ? lock.l_pid : -1;
}

int DeviceNode::Open(const std::string& path) {
  Close();
  const int result = kernel_.Open(path);
  if (result < 0) return result;
  descriptor_ = result;
  return 0;
}

void DeviceNode::Close() {
  if (IsOpen()) kernel_.Close(descriptor_);
  descriptor_ = -1;
}

int DeviceNode::Ioctl(unsigned long request, unsigned long argument) {
  return IsOpen() ? kernel_.Ioctl(descriptor_, request, argument) : -EBADF;
}

std::optional<pid_t> DeviceNode::OtherHolder(LockRange range, bool take) {
  if (!IsOpen()) return std::nullopt;
  if (take) {
    const int result = kernel_.Lock(descriptor_, range);
    // A node that does not support locks is used without one; no kernel is known to have such a node.
    if (result != -EAGAIN && result != -EACCES) return std::nullopt;
  }
  const pid_t holder = kernel_.LockHolder(descriptor_, range);
  if (holder == 0 && !take) return std::nullopt;
  return holder;
}

struct InterruptTimer::State {
  timer_t Timer{};
  struct sigaction OldAction {};
  sigset_t OldMask{};
};

namespace {

int InterruptSignal() {
  return SIGRTMIN + 5;
}

void OnInterrupt(int) {}

}  // namespace

InterruptTimer::InterruptTimer(double seconds) : state_(std::make_unique<State>()) {
  // Without SA_RESTART, so that the blocked call returns.
  struct sigaction action {};
  action.sa_handler = OnInterrupt;
  sigaction(InterruptSignal(), &action, &state_->OldAction);
  sigset_t wanted;
  sigemptyset(&wanted);
  sigaddset(&wanted, InterruptSignal());
  pthread_sigmask(SIG_UNBLOCK, &wanted, &state_->OldMask);

  sigevent event{};
  event.sigev_notify = SIGEV_THREAD_ID;
  event.sigev_signo = InterruptSignal();
  event._sigev_un._tid = gettid();
  timer_create(CLOCK_MONOTONIC, &event, &state_->Timer);
  const auto whole = static_cast<time_t>(seconds);
  // Periodic, since the first signal could arrive just before the call blocks.
  itimerspec times{};
  times.it_value = {whole, static_cast<long>((seconds - static_cast<double>(whole)) * 1e9) + 1};
  times.it_interval = {0, 20'000'000};
  timer_settime(state_->Timer, 0, &times, nullptr);
}

InterruptTimer::~InterruptTimer() {
  timer_delete(state_->Timer);
  pthread_sigmask(SIG_SETMASK, &state_->OldMask, nullptr);
  sigaction(InterruptSignal(), &state_->OldAction, nullptr);
}

std::optional<std::string> FirstLine(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  if (!std::getline(file, line)) return std::nullopt;
  return line;
}

std::vector<int> NumberedEntries(const std::string& directory, const std::string& prefix) {
  std::vector<int> numbers;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
    const std::string name = entry.path().filename().string();
    if (!name.starts_with(prefix)) continue;
    int number = 0;
    const char* end = name.data() + name.size();
    const auto parsed = std::from_chars(name.data() + prefix.size(), end, number);
    if (parsed.ec == std::errc{} && parsed.ptr == end && number >= 0) numbers.push_back(number);
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

std::string ErrorSymbol(int number) {
  const char* name = strerrorname_np(number);
  return name != nullptr ? name : std::to_string(number);
}

}  // namespace krx
