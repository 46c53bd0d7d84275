// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace krx {

class GlitchBar;
class ReadWritePage;
class UserDialogs;
class VisualCycle;
class VisualDisplayPage;
class WindowOpener;
struct UndoResult;
struct Workbench;

/// What shows the registers that an undo has written.
struct UndonePages {
  Workbench& Bench;
  UserDialogs& Dialogs;
  VisualCycle& Cycle;
  GlitchBar& Glitch;
  ReadWritePage& ReadWrite;
  VisualDisplayPage& Visual;
  WindowOpener& Windows;
};

/// Ends a test whose outputs were undone, renews what was derived from the registers, and shows it on every page.
void ShowUndone(const UndonePages& pages, const UndoResult& undone);

}  // namespace krx
