// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <iosfwd>

namespace krx {

class GlitchTest;
class SavingBar;
class UserDialogs;

/// What the end of the run leaves half done: a running glitch test, a file that is being saved.
class RunEnd {
 public:
  /// saving: of the charts' values. All are to outlive this object.
  RunEnd(const GlitchTest& glitch, SavingBar& saving) : glitch_(glitch), saving_(saving) {}

  /// The user closes the window: asks where something would be left half done.
  bool MayClose(UserDialogs& dialogs) const;
  /// The program ends without asking: says what that leaves behind and drops a saving that is under way. The display
  /// may be gone.
  void GiveUp(std::ostream& err);

 private:
  QStringList Leaves() const;

  const GlitchTest& glitch_;
  SavingBar& saving_;
};

}  // namespace krx
