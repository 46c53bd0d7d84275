// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace krx {

/// Around the making of the QApplication: where no window can open, the toolkit aborts the process. With this the
/// program says so, names the command line, and ends with 1, whichever platform was asked for.
class DisplayGuard {
 public:
  DisplayGuard();
  ~DisplayGuard();
  DisplayGuard(const DisplayGuard&) = delete;
  DisplayGuard& operator=(const DisplayGuard&) = delete;

  /// The application is made. A platform without a screen ends the program, too.
  void Release();
};

}  // namespace krx
