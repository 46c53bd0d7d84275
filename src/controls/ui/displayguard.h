// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace krx {

/// Guards the construction of the QApplication, which aborts the process without a display: the program then reports
/// it, refers to the command line, and ends with 1. The toolkit's own messages are printed only with QT_DEBUG_PLUGINS
/// set.
class DisplayGuard {
 public:
  DisplayGuard();
  ~DisplayGuard();
  DisplayGuard(const DisplayGuard&) = delete;
  DisplayGuard& operator=(const DisplayGuard&) = delete;

  /// After the construction. A platform without a screen ends the program, too.
  void Release();
};

}  // namespace krx
