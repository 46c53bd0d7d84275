// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/undonepages.h"

#include <algorithm>

#include "board/ui/glitchbar.h"
#include "console/ui/visualcycle.h"
#include "console/ui/windowopener.h"
#include "console/undorenewal.h"
#include "console/workbench.h"
#include "controls/ui/userdialogs.h"
#include "journal/undo.h"
#include "monitor/ui/visualdisplaypage.h"
#include "panel/ui/readwritepage.h"
#include "registers/chip.h"

namespace krx {

void ShowUndone(const UndonePages& pages, const UndoResult& undone) {
  const auto drives = [](const UndoStep& step) { return GlitchTest::Drives(step.Register); };
  if (std::ranges::any_of(undone.Written, drives)) pages.Glitch.Stop();
  RunUserAction(
      pages.Dialogs, [&] { RenewAfterUndo(pages.Bench, undone.Written); }, undoOrigin);
  VisualModel& model = pages.Cycle.Model();
  for (const UndoStep& step : undone.Written) {
    pages.ReadWrite.ShowWrittenElsewhere(step.Register, step.Value);
    if (step.Register == chip::Configuration1 && pages.Visual.isVisible()) model.ConfigurationWritten(step.Value);
  }
  model.Relabel();
  model.ShowReadings();
  pages.Visual.ShowAll();
  pages.Windows.RenewFanConfig();
}

}  // namespace krx
