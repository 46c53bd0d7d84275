// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <exception>
#include <functional>

namespace krx {

/// While alive, runs its work also when the program ends without calling the destructor: by exit(), which the toolkit
/// calls when the display connection is lost, and by std::terminate. Runs once. Only one instance at a time.
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
