// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/exitwork.h"

#include <cstdlib>
#include <utility>

namespace krx {
namespace {

/// Neither handler gets an argument, and an atexit handler cannot be removed: this pointer tells them whether there is
/// still work to do.
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
  // Cleared first: a failure in the work may call exit or terminate again.
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
