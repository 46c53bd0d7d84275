// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace krx {

class BusJournal;
class ChipTurns;
class StatusLine;
class UserDialogs;
struct Workbench;

/// What the headless objects tell the main window, for as long as it lives: link faults are counted in the status bar,
/// a user's handlers are named in the journal, and changed switches and pins are shown.
class FrameHooks {
 public:
  struct Targets {
    std::function<void()> SwitchesChanged;
    std::function<void()> PinsChanged;
  };
  FrameHooks(Workbench& bench, UserDialogs& dialogs, ChipTurns& turns, BusJournal& journal, StatusLine& status,
             const Targets& targets);
  ~FrameHooks();
  FrameHooks(const FrameHooks&) = delete;
  FrameHooks& operator=(const FrameHooks&) = delete;

 private:
  Workbench& bench_;
  UserDialogs& dialogs_;
  ChipTurns& turns_;
};

}  // namespace krx
