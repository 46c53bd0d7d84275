// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/framehooks.h"

#include <string>

#include "console/ui/statusline.h"
#include "console/workbench.h"
#include "controls/ui/chiptimer.h"
#include "controls/ui/userdialogs.h"
#include "journal/busjournal.h"

namespace krx {

FrameHooks::FrameHooks(Workbench& bench, UserDialogs& dialogs, ChipTurns& turns, BusJournal& journal,
                       StatusLine& status, const Targets& targets)
    : bench_(bench), dialogs_(dialogs), turns_(turns) {
  bench.EvalBoard.SwitchesChanged = targets.SwitchesChanged;
  bench.Pins.Changed = targets.PinsChanged;
  bench.Start.Faulted = [&status](const std::string& step, const CommsError& error) {
    status.CountFault("start-up, " + step, error);
  };
  bench.Owed.MadeGood = [&status](const CommsError& error) { status.CountFault("user action", error); };
  dialogs.LinkFault = [&status](const CommsError& error) { status.CountFault("user action", error); };
  dialogs.Around = [&journal](const std::string& name, const std::function<void()>& action) {
    const BusJournal::ActionScope scope(journal, name);
    action();
  };
  turns.OnFailure([&status](const std::string& name, const CommsError& error) { status.CountFault(name, error); });
}

FrameHooks::~FrameHooks() {
  bench_.EvalBoard.SwitchesChanged = nullptr;
  bench_.Pins.Changed = nullptr;
  bench_.Start.Faulted = nullptr;
  bench_.Owed.MadeGood = nullptr;
  dialogs_.LinkFault = nullptr;
  dialogs_.Around = nullptr;
  turns_.OnFailure(nullptr);
}

}  // namespace krx
