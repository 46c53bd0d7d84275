// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/exitwork.h"

#include <cstdlib>
#include <utility>

namespace krx {
namespace {

/// Neither handler gets an argument, and one that is registered with atexit stays for good: this says whether and where
/// there is still something to do.
ExitWork*& Registered() {
  static ExitWork* registered = nullptr;
  return registered;
}

}  // namespace

ExitWork::ExitWork(std::function<void()> work) : work_(std::move(work)), former_(std::set_terminate(AtTerminate)) {
  Registered() = this;
  std::atexit(AtExit);
}

ExitWork::~ExitWork() {
  Registered() = nullptr;
  std::set_terminate(former_);
}

void ExitWork::AtExit() {
  // Taken off first: what fails in here may end the program once more.
  if (ExitWork* const self = std::exchange(Registered(), nullptr)) self->work_();
}

void ExitWork::AtTerminate() {
  ExitWork* const self = Registered();
  const std::terminate_handler former = self == nullptr ? nullptr : self->former_;
  AtExit();
  if (former != nullptr) former();
  std::abort();
}

}  // namespace krx
