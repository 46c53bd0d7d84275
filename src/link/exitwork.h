// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <exception>
#include <functional>

namespace krx {

/// While it lives, its work is also done when the program ends past its destructor: by exit(), which the toolkit calls
/// when the display goes away, and by std::terminate. Done once. One at a time.
class ExitWork {
 public:
  explicit ExitWork(std::function<void()> work);
  ~ExitWork();
  ExitWork(const ExitWork&) = delete;
  ExitWork& operator=(const ExitWork&) = delete;

 private:
  static void AtExit();
  [[noreturn]] static void AtTerminate();

  std::function<void()> work_;
  std::terminate_handler former_;
};

}  // namespace krx
