// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QMainWindow>
#include <QTimer>
#include <functional>

#include "console/visualmodel.h"
#include "controls/ui/chiptimer.h"
#include "controls/ui/palette.h"

class QActionGroup;
class QTabWidget;

namespace krx {

class ControlPage;
class MainPage;
class ReadWritePage;
class StatusLine;
class UserDialogs;
class VisualDisplayPage;
class WaitBudget;
struct Workbench;

/// "Simulated board · printer port 5Ah": the medium and the chip's address in the form of its bus.
QString ConnectionText(const QString& medium, const Link& link);

/// The main window: its tabs, its timers, and what the menu offers.
class MainForm : public QMainWindow, private MainTimers {
  Q_OBJECT
 public:
  /// Indices of `Main_Form_Tab`.
  enum Tab { Main, ReadWrite, VisualDisplay, Control };

  /// medium: as the title and the status bar name it. All are to outlive the window.
  MainForm(Workbench& bench, ChipTurns& turns, UserDialogs& dialogs, const QString& medium);
  ~MainForm() override;

  /// Keeps redraws out of the waits before transfers. The budget is to outlive the window.
  void SetWaitBudget(WaitBudget* budget);
  void SelectTab(Tab tab);
  /// Ticks the theme in the menu.
  void SetTheme(Theme theme);
  /// A line in the status bar, for some seconds.
  void ShowNotice(const QString& text);
  bool VisualTimerRunning() const { return visualTimer_.IsActive(); }

 signals:
  void ThemeChosen(krx::Theme theme);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void StartVisualTimer() override;
  void StopVisualTimer() override;
  void StopContinuousReading() override {}

  void MakeMenus();
  void MakeTabs(const QString& connection);
  void TabChanged(int index);
  void Do(const std::function<void()>& action);
  void ReReadChip();
  void EasySetup();
  void ShowSetupLog();
  void ShowAbout();
  void VisualTick();
  void ShowDue();
  void ShowCycle();

  Workbench& bench_;
  UserDialogs& dialogs_;
  VisualModel model_;
  QTabWidget* tabs_ = nullptr;
  VisualDisplayPage* visual_ = nullptr;
  StatusLine* status_ = nullptr;
  QActionGroup* themes_ = nullptr;
  ChipTimer visualTimer_;
  QTimer cycleReport_;
  QElapsedTimer sinceShown_;
  QElapsedTimer sinceReport_;
  QElapsedTimer sinceGoodTick_;
  int ticks_ = 0;                ///< since the last report
  std::uint64_t transfers_ = 0;  ///< made by those ticks
};

}  // namespace krx
