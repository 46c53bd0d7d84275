// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/endsignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <atomic>
#include <utility>

namespace krx {
namespace {

constexpr int retryMilliseconds = 10;

/// A signal handler gets no argument of ours, and writing to a pipe is about all that it may do.
std::atomic<int> pipeOfHandler{-1};
std::atomic<bool> askedByHandler{false};

void OnSignal(int) {
  askedByHandler = true;
  const char byte = 1;
  // A full pipe holds a request already.
  [[maybe_unused]] const auto written = write(pipeOfHandler, &byte, 1);
}

}  // namespace

EndSignals::EndSignals(std::function<bool()> busy, QObject* parent) : QObject(parent), busy_(std::move(busy)) {
  retry_.setSingleShot(true);
  retry_.setInterval(retryMilliseconds);
  connect(&retry_, &QTimer::timeout, this, &EndSignals::Ask);
  int ends[2];
  // Without a pipe the signals keep their plain effect.
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return;
  askedByHandler = false;
  readEnd_ = ends[0];
  writeEnd_ = ends[1];
  pipeOfHandler = writeEnd_;
  auto* const notifier = new QSocketNotifier(readEnd_, QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    char byte = 0;
    while (read(readEnd_, &byte, 1) > 0) {
    }
    Ask();
  });
  struct sigaction action {};
  action.sa_handler = OnSignal;
  action.sa_flags = SA_RESTART;
  for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) sigaction(signal, &action, &former_[signal]);
  action.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &action, &former_[SIGPIPE]);
}

EndSignals::~EndSignals() {
  for (const auto& [signal, action] : former_) sigaction(signal, &action, nullptr);
  pipeOfHandler = -1;
  if (readEnd_ >= 0) close(readEnd_);
  if (writeEnd_ >= 0) close(writeEnd_);
}

bool EndSignals::Asked() const {
  return askedByHandler;
}

void EndSignals::Ask() {
  // The notifier also runs inside the wait before a transfer, where user input is held back.
  if (busy_ && busy_()) return retry_.start();
  emit EndRequested();
}

}  // namespace krx
