// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

#include "console/ui/mainform.h"
#include "console/workbench.h"
#include "controls/ui/chiptimer.h"
#include "controls/ui/copymenu.h"
#include "controls/ui/endsignals.h"
#include "controls/ui/gateddialogs.h"
#include "controls/ui/palette.h"
#include "controls/ui/qteventpump.h"
#include "journal/busjournal.h"
#include "journal/ui/originfilter.h"
#include "link/chipsearch.h"
#include "link/commsroot.h"
#include "link/exitwork.h"
#include "link/searchwizard.h"

class QApplication;

namespace krx {

class InitForm;

/// The bus of a run, as the windows name it.
struct ConsoleMedium {
  CommsRoot::Factory Factory;
  QString Name;                    ///< "Simulated board"
  QString Reason;                  ///< why it was taken; empty when it was asked for by name
  bool Simulated = false;          ///< the chip may be started unasked
  double FanSecondsPerSecond = 1;  ///< how much faster than the clock the fans live; 1 on hardware
};

struct ConsoleRunOptions {
  Theme Colours = Theme::System;
  bool ReadOnly = false;                          ///< no write reaches chip or board
  std::optional<SearchMedia> Connect;             ///< to the first chip found there; none: the search wizard asks
  std::function<ConsoleMedium()> SimulatedBoard;  ///< what the wizard offers when nothing was found; may throw
};

/// Everything of one run of the console, in order of dependency, and who hears whom.
class ConsoleRun {
 public:
  /// dialogs: what opens the boxes, behind the run's gate. All are to outlive the run; the clock is also that of the
  /// medium.
  ConsoleRun(QApplication& application, Clock& clock, UserDialogs& dialogs, ConsoleMedium medium,
             ConsoleRunOptions options);
  ~ConsoleRun();
  ConsoleRun(const ConsoleRun&) = delete;
  ConsoleRun& operator=(const ConsoleRun&) = delete;

  /// Opens the first window and returns with the program's exit code when the last one is closed. Throws CommsError
  /// when it is to connect and finds no chip.
  int Run();

 private:
  CommsRoot::Factory Journaled();
  QString MediumNote() const;
  void ShowWizard();
  void UseSimulatedBoard();
  void ConnectFirstChip();
  void GoReadOnly();
  void OpenFirstWindow();
  void MakeMainForm();
  void ShowMainForm();
  void StartSimulatedMonitoring();
  void CloseWindows();
  void PutBackAtExit();
  void ApplyThemeChoice(Theme chosen);

  QApplication& application_;
  Clock& clock_;
  ConsoleMedium medium_;
  ConsoleRunOptions options_;
  Theme systemTheme_;
  QtEventPump pump_;
  BusJournal journal_{clock_};
  OriginFilter origins_{journal_};
  CopyMenu copyMenu_;
  CommsRoot root_{Journaled()};
  Link link_{root_, clock_, pump_};
  ChipTurns turns_{link_};
  GatedDialogs dialogs_;
  EndSignals endSignals_{[this] { return link_.TransferInProgress(); }};  // outlives the bench, which ends the heaters
  Workbench bench_{link_};
  ExitWork exitWork_{[this] { PutBackAtExit(); }};
  ChipSearch search_{link_};
  SearchWizard wizard_{search_};
  QTimer closing_;
  std::unique_ptr<InitForm> initForm_;
  std::unique_ptr<MainForm> mainForm_;
};

}  // namespace krx
