// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/mainform.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDir>
#include <QScreen>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <iostream>

#include "board/fantests.h"
#include "board/ui/glitchbar.h"
#include "console/pageparts.h"
#include "console/startup.h"
#include "console/ui/connectiontext.h"
#include "console/ui/mainmenu.h"
#include "console/ui/mainpage.h"
#include "console/ui/owedturn.h"
#include "console/ui/statusline.h"
#include "console/ui/windowopener.h"
#include "console/undorenewal.h"
#include "console/workbench.h"
#include "control/ui/controlpage.h"
#include "controls/ui/nowheel.h"
#include "controls/ui/savingbar.h"
#include "controls/ui/userdialogs.h"
#include "journal/ui/journaldock.h"
#include "monitor/ui/visualdisplaypage.h"
#include "panel/ui/readwritepage.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr int showMilliseconds = 50;  ///< a reader sees no more than 20 values a second
constexpr int reportMilliseconds = 1000;

}  // namespace

MainForm::MainForm(Workbench& bench, ChipTurns& turns, UserDialogs& dialogs, BusJournal& journal,
                   const MainFormOptions& options)
    : bench_(bench),
      turns_(turns),
      dialogs_(dialogs),
      journal_(journal),
      options_(options),
      model_(VisualPartsOf(bench), *this),
      visualTimer_(turns, "visual_timer", tickMilliseconds, [this] { VisualTick(); }) {
  setObjectName(u"MainForm"_s);
  setWindowTitle(u"KRX5580 console - %1"_s.arg(options.Medium));
  windows_ = new WindowOpener(bench, turns, dialogs, options.ReadOnly, options.FanSecondsPerSecond, this);
  connect(windows_, &WindowOpener::Notice, this, &MainForm::ShowNotice);
  connect(windows_, &WindowOpener::FansApplied, this, [this] {
    model_.Relabel();
    visual_->ShowAll();
  });
  MakeTabs();
  journalDock_ = new JournalDock(bench.ChipLink, journal, dialogs, options.ReadOnly);
  addDockWidget(Qt::BottomDockWidgetArea, journalDock_);
  journalDock_->hide();
  connect(journalDock_, &JournalDock::Notice, this, &MainForm::ShowNotice);
  connect(journalDock_, &JournalDock::Undone, this, &MainForm::AfterUndo);
  glitch_ = new GlitchBar(bench.Glitch, turns, dialogs);
  addToolBar(Qt::BottomToolBarArea, glitch_);
  connect(glitch_, &GlitchBar::Notice, this, &MainForm::ShowNotice);
  owedTurn_ = std::make_unique<OwedTurn>(bench.Owed, turns, [this](bool setAnew) {
    ShowNotice(setAnew ? u"Nothing is owed any more: it was set anew"_s : u"What was owed has been put back"_s);
  });
  menu_ = new MainMenu(*this, *tabs_, *journalDock_->toggleViewAction(), options.ReadOnly);
  connect(menu_, &MainMenu::ReReadRequested, this, &MainForm::ReReadChip);
  connect(menu_, &MainMenu::EasySetupRequested, this, &MainForm::EasySetup);
  connect(menu_, &MainMenu::ResetRangesRequested, this, &MainForm::ResetRanges);
  connect(menu_, &MainMenu::AboutRequested, windows_, &WindowOpener::ShowAbout);
  connect(menu_, &MainMenu::ThemeChosen, this, &MainForm::ThemeChosen);
  status_ = new StatusLine;
  setStatusBar(status_);
  bench.EvalBoard.SwitchesChanged = [this] { SwitchesChanged(); };
  bench.Pins.Changed = [this] { control_->PinsChanged(); };
  dialogs.LinkFault = [this](const CommsError& error) { status_->CountFault("user action", error); };
  bench.Owed.MadeGood = [this](const CommsError& error) { status_->CountFault("user action", error); };
  dialogs.Around = [this](const std::string& name, const std::function<void()>& action) {
    const BusJournal::ActionScope scope(journal_, name);
    action();
  };
  turns.OnFailure([this](const std::string& name, const CommsError& error) { status_->CountFault(name, error); });
  bench.Start.Faulted = [this](const std::string& step, const CommsError& error) {
    status_->CountFault("start-up, " + step, error);
  };
  connect(&cycleReport_, &QTimer::timeout, this, &MainForm::ShowCycle);
  cycleReport_.start(reportMilliseconds);
  sinceShown_.start();
  // The room for what the window manager puts around it, which nobody tells before the window is shown.
  const int border = style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
  const QSize frame(2 * border, 2 * border + style()->pixelMetric(QStyle::PM_TitleBarHeight));
  resize(QSize(1280, 800).boundedTo(screen()->availableSize() - frame));
}

MainForm::~MainForm() {
  dialogs_.LinkFault = nullptr;
  bench_.Start.Faulted = nullptr;
  bench_.Owed.MadeGood = nullptr;
  dialogs_.Around = nullptr;
  bench_.EvalBoard.SwitchesChanged = nullptr;
  bench_.Pins.Changed = nullptr;
}

void MainForm::Start() {
  const QString connection = ConnectionText(options_.Medium, bench_.ChipLink);
  setWindowTitle(u"KRX5580 console - %1"_s.arg(connection));
  main_->ShowConnection(connection);
  visual_->SetSource(u"KRX5580 · %1"_s.arg(connection));
  status_->ShowConnection(options_.ReadOnly ? connection + u" · read-only"_s : connection);
  StepProblems problems;
  {
    const BusJournal::OriginScope origin(journal_, "Start-up");
    problems = StartUp(bench_);
  }
  show();
  ShowProblems(problems);
}

void MainForm::ShowProblems(const std::vector<std::string>& problems) {
  if (!problems.empty()) dialogs_.Critical(QString::fromStdString(ProblemText(problems)));
}

void MainForm::MakeTabs() {
  main_ = new MainPage;
  readWrite_ = new ReadWritePage(bench_.Registers, turns_, dialogs_, options_.ReadOnly);
  control_ = new ControlPage(ControlPartsOf(bench_), dialogs_, options_.ReadOnly);
  visual_ = new VisualDisplayPage(model_, VisualPartsOf(bench_), dialogs_, options_.ReadOnly);
  tabs_ = new QTabWidget;
  tabs_->setObjectName(u"Main_Form_Tab"_s);
  tabs_->setDocumentMode(true);
  // Changing the tab starts and stops the cycle and routes switches; that is not for a wheel.
  IgnoreWheel(*tabs_->tabBar());
  tabs_->addTab(main_, u"Main"_s);
  tabs_->addTab(readWrite_, u"Read/Write"_s);
  tabs_->addTab(visual_, u"Visual Display"_s);
  tabs_->addTab(control_, u"Control "_s);
  setCentralWidget(tabs_);
  connect(tabs_, &QTabWidget::currentChanged, this, &MainForm::TabChanged);
  connect(main_, &MainPage::AboutRequested, windows_, &WindowOpener::ShowAbout);
  connect(visual_, &VisualDisplayPage::EasySetupRequested, this, &MainForm::EasySetup);
  connect(visual_, &VisualDisplayPage::SetupLogRequested, windows_, &WindowOpener::OpenSetupLog);
  connect(visual_, &VisualDisplayPage::LimitRejected, this, &MainForm::ShowNotice);
  connect(visual_, &VisualDisplayPage::Notice, this, &MainForm::ShowNotice);
  connect(visual_, &VisualDisplayPage::FanTestRequested, this, [this] {
    RunUserAction(
        dialogs_, [this] { FanTestSetup(bench_.ChipLink); }, "Fan Test Setup");
  });
  connect(visual_, &VisualDisplayPage::GlitchTestRequested, this, [this] { glitch_->Start(); });
  connect(visual_, &VisualDisplayPage::ReReadRequested, this, &MainForm::ReReadChip);
  connect(control_, &ControlPage::SwitchAccessWanted, windows_, &WindowOpener::OpenSwitchAccess);
  connect(control_, &ControlPage::FanConfigWanted, windows_, &WindowOpener::OpenFanConfig);
}

void MainForm::SetWaitBudget(WaitBudget* budget) {
  visual_->SetWaitBudget(budget);
}

void MainForm::SelectTab(Tab tab) {
  if (tabs_->currentIndex() == tab) return TabChanged(tab);
  tabs_->setCurrentIndex(tab);
}

void MainForm::SetTheme(Theme theme) {
  menu_->SetTheme(theme);
}

void MainForm::ShowNotice(const QString& text) {
  status_->ShowNotice(text);
}

void MainForm::Do(const std::function<void()>& action, const std::string& name) {
  RunUserAction(dialogs_, action, name);
  visual_->ShowAll();
  ShowCycle();
}

void MainForm::TabChanged(int index) {
  const BusJournal::ActionScope scope(journal_, "Tab \"" + tabs_->tabText(index).trimmed().toStdString() + "\"");
  if (index == VisualDisplay) Do([this] { model_.EnterVisualDisplay(); });
  if (index == ReadWrite) {
    model_.EnterReadWrite();
    readWrite_->Enter();
  }
  if (index == Control) control_->Enter();
  ShowCycle();
}

void MainForm::StopContinuousReading() {
  readWrite_->StopContinuousReading();
}

bool MainForm::OwesStartUp() const {
  return !bench_.Start.Owed.empty();
}

void MainForm::RetryStartUp() {
  RetryOwed(bench_);
}

void MainForm::SwitchesChanged() {
  control_->SwitchesChanged();
  windows_->SwitchesChanged();
}

void MainForm::ReReadChip() {
  const BusJournal::ActionScope scope(journal_, "Re-read Chip");
  StepProblems problems;
  model_.ReRead([&] { problems = krx::ReReadChip(bench_); });
  visual_->ShowAll();
  ShowProblems(problems);
  if (problems.empty()) ShowNotice(u"The chip was read again"_s);
}

void MainForm::EasySetup() {
  tabs_->setCurrentIndex(VisualDisplay);
  Do([this] { model_.EasySetup(); }, "Easy Setup");
}

void MainForm::AfterUndo(const UndoResult& undone) {
  const auto drives = [](const UndoStep& step) { return GlitchTest::Drives(step.Register); };
  if (std::ranges::any_of(undone.Written, drives)) glitch_->Stop();
  RunUserAction(
      dialogs_, [&] { RenewAfterUndo(bench_, undone.Written); }, undoOrigin);
  for (const UndoStep& step : undone.Written) {
    readWrite_->ShowWrittenElsewhere(step.Register, step.Value);
    if (step.Register == chip::Configuration1 && tabs_->currentIndex() == VisualDisplay) {
      model_.ConfigurationWritten(step.Value);
    }
  }
  model_.Relabel();
  model_.ShowReadings();
  visual_->ShowAll();
  windows_->RenewFanConfig();
}

void MainForm::StartVisualTimer() {
  visualTimer_.SetInterval(tickMilliseconds);
  visualTimer_.Start();
  meter_.Started();
}

void MainForm::StopVisualTimer() {
  visualTimer_.Stop();
}

void MainForm::VisualTick() {
  const std::uint64_t before = bench_.ChipLink.TransferCount();
  try {
    model_.Tick();
  } catch (...) {
    visual_->GapPosted();
    throw;
  }
  meter_.Ticked(bench_.ChipLink.TransferCount() - before);
  visual_->Posted();
  ShowDue();
}

void MainForm::ShowDue() {
  if (sinceShown_.elapsed() < showMilliseconds) return;
  sinceShown_.start();
  status_->ShowAlarms(model_.ReportAlarms(), false);
  if (visual_->isVisible()) visual_->ShowReadings(false);
}

void MainForm::ResetRanges() {
  bench_.Ranges.ResetAll();
  visual_->ShowAll();
  ShowNotice(u"Minimum, maximum and mean of all channels begin anew"_s);
}

void MainForm::ShowCycle() {
  const bool fresh = visualTimer_.IsActive() && meter_.IsFresh();
  // A rate takes its time, that the cycle stands still does not.
  if (!fresh || meter_.IsRateDue()) {
    const double pause = visualTimer_.IsActive() ? visualTimer_.PauseMilliseconds() / 1000.0 : 0;
    status_->ShowCycle(meter_.Report(fresh, bench_.First.Monitoring() == false, pause));
  }
  if (!fresh) {
    model_.ShowSeen();  // without a tick: what a dialog wrote, say
    visual_->ShowReadings(true);
    status_->ShowAlarms(model_.ReportAlarms(), true);
  }
  if (options_.ReadOnly) ShowSkipped();
}

void MainForm::ShowSkipped() {
  status_->ShowConnection(u"%1 · read-only, %2 writes not made"_s.arg(ConnectionText(options_.Medium, bench_.ChipLink))
                              .arg(journal_.SkippedCount()));
}

QStringList MainForm::LeftByEnding() const {
  QStringList lines;
  if (bench_.Glitch.Running()) lines << u"Glitch test stopped: "_s + QString::fromStdString(bench_.Glitch.Leaves());
  const QString file = visual_->Saving().Unsaved();
  if (!file.isEmpty()) lines << u"Not saved: "_s + QDir::toNativeSeparators(file);
  return lines;
}

void MainForm::GiveUp(std::ostream& err) {
  for (const QString& line : LeftByEnding()) err << line.toStdString() << '\n';
  visual_->Saving().GiveUp();
}

void MainForm::closeEvent(QCloseEvent* event) {
  // A detection gives up first and puts its output back; the window is closed once more after that.
  if (QApplication::activeModalWidget() != nullptr) {
    QApplication::activeModalWidget()->close();
    event->ignore();
    return;
  }
  if (bench_.ChipLink.EndAsked && bench_.ChipLink.EndAsked()) {
    GiveUp(std::cerr);
  } else if (const QStringList left = LeftByEnding(); !left.isEmpty()) {
    if (!dialogs_.Ask(u"To end now means:\n\n"_s + left.join(u'\n'), u"End"_s)) return event->ignore();
  }
  // First what reads the chip, then the windows that show it.
  StopVisualTimer();
  StopContinuousReading();
  glitch_->Stop();
  owedTurn_.reset();
  cycleReport_.stop();
  for (QDialog* dialog : findChildren<QDialog*>()) dialog->close();
  QMainWindow::closeEvent(event);
}

}  // namespace krx
