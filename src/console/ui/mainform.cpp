// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/mainform.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QTabBar>
#include <QTabWidget>
#include <iostream>

#include "board/fantests.h"
#include "board/ui/glitchbar.h"
#include "console/pageparts.h"
#include "console/startup.h"
#include "console/ui/connectiontext.h"
#include "console/ui/framehooks.h"
#include "console/ui/mainmenu.h"
#include "console/ui/mainpage.h"
#include "console/ui/owedturn.h"
#include "console/ui/runend.h"
#include "console/ui/statusline.h"
#include "console/ui/undonepages.h"
#include "console/ui/visualcycle.h"
#include "console/ui/windowopener.h"
#include "console/ui/windowpicture.h"
#include "console/workbench.h"
#include "control/ui/controlpage.h"
#include "controls/ui/nowheel.h"
#include "controls/ui/screenfit.h"
#include "controls/ui/userdialogs.h"
#include "journal/ui/journaldock.h"
#include "monitor/ui/visualdisplaypage.h"
#include "panel/ui/readwritepage.h"

namespace krx {
using namespace Qt::StringLiterals;

MainForm::MainForm(Workbench& bench, ChipTurns& turns, UserDialogs& dialogs, BusJournal& journal,
                   const MainFormOptions& options)
    : bench_(bench),
      turns_(turns),
      dialogs_(dialogs),
      journal_(journal),
      options_(options),
      status_(new StatusLine),
      cycle_(new VisualCycle(bench, turns, *status_, this)),
      model_(&cycle_->Model()) {
  setObjectName(u"MainForm"_s);
  setWindowTitle(u"KRX5580 console - %1"_s.arg(options.Medium));
  MakeTabs();
  MakeBars();
  windows_ = new WindowOpener(bench, turns, dialogs, options.ReadOnly, options.FanSecondsPerSecond, this);
  owedTurn_ = std::make_unique<OwedTurn>(bench.Owed, turns, [this](bool setAnew) {
    ShowNotice(setAnew ? u"Pending restore dropped: the register was changed meanwhile"_s
                       : u"Pending restores completed"_s);
  });
  end_ = std::make_unique<RunEnd>(bench.Glitch, visual_->Saving());
  hooks_ = std::make_unique<FrameHooks>(bench, dialogs, turns, journal, *status_,
                                        FrameHooks::Targets{.SwitchesChanged =
                                                                [this] {
                                                                  control_->SwitchesChanged();
                                                                  windows_->SwitchesChanged();
                                                                },
                                                            .PinsChanged = [this] { control_->PinsChanged(); }});
  ConnectPages();
  resize(FittedToScreen(*this, {1280, 800}));
}

MainForm::~MainForm() = default;

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
  readWrite_ = new ReadWritePage(bench_.Registers, bench_.ChipLink, journal_, turns_, dialogs_, options_.ReadOnly);
  control_ = new ControlPage(ControlPartsOf(bench_), dialogs_, options_.ReadOnly);
  visual_ = new VisualDisplayPage(*model_, VisualPartsOf(bench_), dialogs_, options_.ReadOnly);
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
}

void MainForm::MakeBars() {
  journalDock_ = new JournalDock(bench_.ChipLink, journal_, dialogs_, options_.ReadOnly);
  addDockWidget(Qt::BottomDockWidgetArea, journalDock_);
  journalDock_->hide();
  glitch_ = new GlitchBar(bench_.Glitch, turns_, dialogs_);
  addToolBar(Qt::BottomToolBarArea, glitch_);
  menu_ = new MainMenu(*this, *tabs_, *journalDock_->toggleViewAction(), options_.ReadOnly);
  setStatusBar(status_);
}

void MainForm::ConnectPages() {
  connect(tabs_, &QTabWidget::currentChanged, this, &MainForm::TabChanged);
  windows_->Serve(*main_, *visual_, *control_, *menu_);
  connect(windows_, &WindowOpener::Notice, this, &MainForm::ShowNotice);
  connect(windows_, &WindowOpener::FansApplied, this, [this] {
    model_->Relabel();
    visual_->ShowAll();
  });
  connect(journalDock_, &JournalDock::Notice, this, &MainForm::ShowNotice);
  connect(journalDock_, &JournalDock::Undone, this, [this](const UndoResult& undone) {
    ShowUndone({bench_, dialogs_, *cycle_, *glitch_, *readWrite_, *visual_, *windows_}, undone);
  });
  connect(glitch_, &GlitchBar::Notice, this, &MainForm::ShowNotice);
  connect(menu_, &MainMenu::ReReadRequested, this, &MainForm::ReReadChip);
  connect(menu_, &MainMenu::EasySetupRequested, this, &MainForm::EasySetup);
  connect(menu_, &MainMenu::ResetRangesRequested, this, &MainForm::ResetRanges);
  connect(menu_, &MainMenu::PictureRequested, this, [this] { ShowNotice(SaveWindowPicture(*this, dialogs_)); });
  connect(menu_, &MainMenu::ThemeChosen, this, &MainForm::ThemeChosen);
  connect(cycle_, &VisualCycle::Posted, visual_, &VisualDisplayPage::Posted);
  connect(cycle_, &VisualCycle::GapPosted, visual_, &VisualDisplayPage::GapPosted);
  connect(cycle_, &VisualCycle::ContinuousReadingStopRequested, readWrite_, &ReadWritePage::StopContinuousReading);
  connect(&cycle_->Report(), &CycleReport::ReadingsDue, this, &MainForm::ShowReadings);
  connect(&cycle_->Report(), &CycleReport::Shown, this, &MainForm::ShowSkipped);
  connect(readWrite_, &ReadWritePage::UndoRequested, journalDock_, &JournalDock::UndoLast);
  connect(visual_, &VisualDisplayPage::EasySetupRequested, this, &MainForm::EasySetup);
  connect(visual_, &VisualDisplayPage::LimitRejected, this, &MainForm::ShowNotice);
  connect(visual_, &VisualDisplayPage::Notice, this, &MainForm::ShowNotice);
  connect(visual_, &VisualDisplayPage::FanTestRequested, this, [this] {
    RunUserAction(
        dialogs_, [this] { FanTestSetup(bench_.ChipLink); }, "Fan Test Setup");
  });
  connect(visual_, &VisualDisplayPage::GlitchTestRequested, this, [this] { glitch_->Start(); });
  connect(visual_, &VisualDisplayPage::ReReadRequested, this, &MainForm::ReReadChip);
}

void MainForm::SetWaitBudget(WaitBudget* budget) {
  visual_->SetWaitBudget(budget);
}

void MainForm::SelectTab(Tab tab) {
  if (tabs_->currentIndex() == tab) return TabChanged(tab);
  tabs_->setCurrentIndex(tab);
}

bool MainForm::VisualTimerRunning() const {
  return cycle_->IsRunning();
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
  cycle_->Report().Show();
}

void MainForm::TabChanged(int index) {
  const BusJournal::ActionScope scope(journal_, "Tab \"" + tabs_->tabText(index).trimmed().toStdString() + "\"");
  if (index == VisualDisplay) Do([this] { model_->EnterVisualDisplay(); });
  if (index == ReadWrite) {
    model_->EnterReadWrite();
    readWrite_->Enter();
  }
  if (index == Control) control_->Enter();
  cycle_->Report().Show();
}

void MainForm::ReReadChip() {
  const BusJournal::ActionScope scope(journal_, "Re-read Chip");
  StepProblems problems;
  model_->ReRead([&] { problems = krx::ReReadChip(bench_); });
  visual_->ShowAll();
  ShowProblems(problems);
  if (problems.empty()) ShowNotice(u"Chip re-read"_s);
}

void MainForm::EasySetup() {
  tabs_->setCurrentIndex(VisualDisplay);
  Do([this] { model_->EasySetup(); }, "Easy Setup");
}

void MainForm::ShowReadings(bool old) {
  if (old || visual_->isVisible()) visual_->ShowReadings(old);
  if (old || control_->isVisible()) control_->ShowReadings(old);
  windows_->ShowReadings(old);
}

void MainForm::ResetRanges() {
  bench_.Ranges.ResetAll();
  visual_->ShowAll();
  ShowNotice(u"Minimum, maximum and mean of all channels reset"_s);
}

void MainForm::ShowSkipped() {
  if (!options_.ReadOnly) return;
  status_->ShowConnection(
      u"%1 · read-only, %2 writes suppressed"_s.arg(ConnectionText(options_.Medium, bench_.ChipLink))
          .arg(journal_.SkippedCount()));
}

void MainForm::GiveUp(std::ostream& err) {
  end_->GiveUp(err);
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
  } else if (!end_->MayClose(dialogs_)) {
    return event->ignore();
  }
  // First what reads the chip, then the windows that show it.
  cycle_->End();
  readWrite_->StopContinuousReading();
  glitch_->Stop();
  owedTurn_.reset();
  for (QDialog* dialog : findChildren<QDialog*>()) dialog->close();
  QMainWindow::closeEvent(event);
}

}  // namespace krx
