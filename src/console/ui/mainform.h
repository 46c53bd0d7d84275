// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMainWindow>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "controls/ui/palette.h"

class QTabWidget;

namespace krx {

class BusJournal;
class ControlPage;
class ChipTurns;
class FrameHooks;
class GlitchBar;
class JournalDock;
class MainMenu;
class MainPage;
class OwedTurn;
class ReadWritePage;
class RunEnd;
class StatusLine;
class UserDialogs;
class VisualCycle;
class VisualDisplayPage;
class VisualModel;
class WaitBudget;
class WindowOpener;
struct Workbench;

/// How the run was asked for.
struct MainFormOptions {
  QString Medium;                  ///< as title and status bar name it
  bool ReadOnly = false;           ///< no write reaches chip or board; what would write is disabled
  double FanSecondsPerSecond = 1;  ///< how much faster than the clock the fans live; 1 on hardware
};

/// The main window: its tabs, its timers, and who hears whom.
class MainForm : public QMainWindow {
  Q_OBJECT
 public:
  /// Indices of `Main_Form_Tab`.
  enum Tab { Main, ReadWrite, VisualDisplay, Control };

  /// Touches neither chip nor board: that is left to Start. All are to outlive the window.
  MainForm(Workbench& bench, ChipTurns& turns, UserDialogs& dialogs, BusJournal& journal,
           const MainFormOptions& options);
  ~MainForm() override;

  /// The bus of the chosen chip, where the medium has several. Before Start.
  void SetMedium(const QString& medium) { options_.Medium = medium; }

  /// The link has its chip: names it, runs the start-up and shows the window, then says in one box what went wrong.
  void Start();

  /// Keeps redraws out of the waits before transfers. The budget is to outlive the window.
  void SetWaitBudget(WaitBudget* budget);
  void SelectTab(Tab tab);
  /// Ticks the theme in the menu.
  void SetTheme(Theme theme);
  /// A line in the status bar, for some seconds.
  void ShowNotice(const QString& text);
  /// The program ends unasked: says what that leaves behind and drops a saving that is under way. The display may be
  /// gone.
  void GiveUp(std::ostream& err);
  bool VisualTimerRunning() const;

 signals:
  void ThemeChosen(krx::Theme theme);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void MakeTabs();
  void MakeBars();
  void ConnectPages();
  void ShowProblems(const std::vector<std::string>& problems);
  void ShowReadings(bool old);
  void ShowSkipped();
  void TabChanged(int index);
  void Do(const std::function<void()>& action, const std::string& name = {});
  void ReReadChip();
  void EasySetup();
  void ResetRanges();

  Workbench& bench_;
  ChipTurns& turns_;
  UserDialogs& dialogs_;
  BusJournal& journal_;
  MainFormOptions options_;
  StatusLine* status_ = nullptr;
  VisualCycle* cycle_ = nullptr;
  VisualModel* model_ = nullptr;  ///< the cycle's
  QTabWidget* tabs_ = nullptr;
  MainPage* main_ = nullptr;
  ReadWritePage* readWrite_ = nullptr;
  VisualDisplayPage* visual_ = nullptr;
  ControlPage* control_ = nullptr;
  GlitchBar* glitch_ = nullptr;
  JournalDock* journalDock_ = nullptr;
  WindowOpener* windows_ = nullptr;
  MainMenu* menu_ = nullptr;
  std::unique_ptr<OwedTurn> owedTurn_;
  std::unique_ptr<RunEnd> end_;
  std::unique_ptr<FrameHooks> hooks_;
};

}  // namespace krx
