// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/mainform.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <algorithm>

#include "board/fantests.h"
#include "board/ui/frmswitchaccess.h"
#include "console/startup.h"
#include "console/ui/aboutbox.h"
#include "console/ui/controlpage.h"
#include "console/ui/glitchbar.h"
#include "console/ui/journaldock.h"
#include "console/ui/mainpage.h"
#include "console/ui/owedturn.h"
#include "console/ui/readwritepage.h"
#include "console/ui/setuplog.h"
#include "console/ui/statusline.h"
#include "console/ui/textdialog.h"
#include "console/ui/visualdisplaypage.h"
#include "console/undorenewal.h"
#include "console/workbench.h"
#include "controls/ui/nowheel.h"
#include "controls/ui/userdialogs.h"
#include "fans/applypreview.h"
#include "fans/manualcontrol.h"
#include "fans/ui/frmautodetect.h"
#include "fans/ui/frmfanconfig.h"

namespace krx {
namespace {

constexpr int showMilliseconds = 50;  ///< a reader sees no more than 20 values a second
constexpr int reportMilliseconds = 1000;
constexpr int freshMilliseconds = 1500;  ///< without a whole tick for so long the values are old

}  // namespace

QString ConnectionText(const QString& medium, const Link& link) {
  const bool onPort = link.CommsMedium == 1;
  const QString bus = onPort ? QObject::tr("printer port") : QObject::tr("SMBus");
  const int chip = onPort ? link.ChipAddress / 2 : link.ChipAddress;
  const QString address = QStringLiteral("%1").arg(chip, 2, 16, QLatin1Char('0')).toUpper();
  return QStringLiteral("%1 · %2%3h").arg(medium, medium.contains(bus) ? QString() : bus + QLatin1Char(' '), address);
}

MainForm::MainForm(Workbench& bench, ChipTurns& turns, UserDialogs& dialogs, BusJournal& journal,
                   const MainFormOptions& options)
    : bench_(bench),
      turns_(turns),
      dialogs_(dialogs),
      journal_(journal),
      options_(options),
      model_(bench, *this),
      visualTimer_(turns, "visual_timer", tickMilliseconds, [this] { VisualTick(); }) {
  setObjectName(QStringLiteral("MainForm"));
  setWindowTitle(tr("KRX5580 console - %1").arg(options.Medium));
  MakeTabs();
  journalDock_ = new JournalDock(bench.ChipLink, journal, dialogs, options.ReadOnly);
  addDockWidget(Qt::BottomDockWidgetArea, journalDock_);
  journalDock_->hide();
  connect(journalDock_, &JournalDock::Notice, this, &MainForm::ShowNotice);
  connect(journalDock_, &JournalDock::Undone, this, &MainForm::AfterUndo);
  glitch_ = new GlitchBar(bench.Glitch, turns, dialogs);
  addToolBar(Qt::BottomToolBarArea, glitch_);
  connect(glitch_, &GlitchBar::Notice, this, &MainForm::ShowNotice);
  owedTurn_ =
      std::make_unique<OwedTurn>(bench.Owed, turns, [this] { ShowNotice(tr("What was owed has been put back")); });
  MakeMenus();
  status_ = new StatusLine;
  setStatusBar(status_);
  bench.EvalBoard.SwitchesChanged = [this] { SwitchesChanged(); };
  bench.Pins.Changed = [this] { control_->PinsChanged(); };
  dialogs.LinkFault = [this](const CommsError& error) { status_->CountFault("user action", error); };
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
  sinceReport_.start();
  sinceShown_.start();
  // The room for what the window manager puts around it, which nobody tells before the window is shown.
  const int border = style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
  const QSize frame(2 * border, 2 * border + style()->pixelMetric(QStyle::PM_TitleBarHeight));
  resize(QSize(1280, 800).boundedTo(screen()->availableSize() - frame));
}

MainForm::~MainForm() {
  dialogs_.LinkFault = nullptr;
  bench_.Start.Faulted = nullptr;
  dialogs_.Around = nullptr;
  bench_.EvalBoard.SwitchesChanged = nullptr;
  bench_.Pins.Changed = nullptr;
}

void MainForm::Start() {
  const QString connection = ConnectionText(options_.Medium, bench_.ChipLink);
  setWindowTitle(tr("KRX5580 console - %1").arg(connection));
  main_->ShowConnection(connection);
  visual_->SetSource(tr("KRX5580 · %1").arg(connection));
  status_->ShowConnection(options_.ReadOnly ? connection + tr(" · read-only") : connection);
  StepProblems problems;
  {
    const BusJournal::OriginScope origin(journal_, "Start-up");
    problems = StartUp(bench_);
  }
  show();
  ShowProblems(problems);
}

void MainForm::ShowProblems(const std::vector<std::string>& problems) {
  if (problems.empty()) return;
  QStringList lines;
  for (const std::string& problem : problems) lines << QString::fromStdString(problem);
  dialogs_.Critical(lines.join(QLatin1Char('\n')));
}

void MainForm::MakeTabs() {
  main_ = new MainPage;
  readWrite_ = new ReadWritePage(bench_.Registers, turns_, dialogs_, options_.ReadOnly);
  control_ = new ControlPage(bench_, dialogs_, options_.ReadOnly);
  visual_ = new VisualDisplayPage(model_, bench_, dialogs_, options_.ReadOnly);
  tabs_ = new QTabWidget;
  tabs_->setObjectName(QStringLiteral("Main_Form_Tab"));
  tabs_->setDocumentMode(true);
  // Changing the tab starts and stops the cycle and routes switches; that is not for a wheel.
  IgnoreWheel(*tabs_->tabBar());
  tabs_->addTab(main_, tr("Main"));
  tabs_->addTab(readWrite_, tr("Read/Write"));
  tabs_->addTab(visual_, tr("Visual Display"));
  tabs_->addTab(control_, tr("Control "));
  setCentralWidget(tabs_);
  connect(tabs_, &QTabWidget::currentChanged, this, &MainForm::TabChanged);
  connect(main_, &MainPage::AboutRequested, this, &MainForm::ShowAbout);
  connect(visual_, &VisualDisplayPage::EasySetupRequested, this, &MainForm::EasySetup);
  connect(visual_, &VisualDisplayPage::SetupLogRequested, this, &MainForm::ShowSetupLog);
  connect(visual_, &VisualDisplayPage::LimitRejected, this, &MainForm::ShowNotice);
  connect(visual_, &VisualDisplayPage::Notice, this, &MainForm::ShowNotice);
  connect(visual_, &VisualDisplayPage::FanTestRequested, this, &MainForm::FanTest);
  connect(visual_, &VisualDisplayPage::GlitchTestRequested, this, [this] { glitch_->Start(); });
  connect(visual_, &VisualDisplayPage::ReReadRequested, this, &MainForm::ReReadChip);
  connect(control_, &ControlPage::SwitchAccessWanted, this, &MainForm::OpenSwitchAccess);
  connect(control_, &ControlPage::FanConfigWanted, this, &MainForm::OpenFanConfig);
}

void MainForm::MakeMenus() {
  QMenu* file = menuBar()->addMenu(tr("&File"));
  file->addAction(tr("E&xit"), QKeySequence(Qt::CTRL | Qt::Key_Q), this, &QWidget::close);

  QMenu* chip = menuBar()->addMenu(tr("&Chip"));
  chip->addAction(tr("&Re-read Chip"), QKeySequence(Qt::Key_F5), this, &MainForm::ReReadChip)
      ->setObjectName(QStringLiteral("actReReadChip"));
  chip->addAction(tr("&Easy Setup"), QKeySequence(Qt::CTRL | Qt::Key_E), this,
                  [this] {
                    tabs_->setCurrentIndex(VisualDisplay);
                    EasySetup();
                  })
      ->setObjectName(QStringLiteral("actEasySetup"));
  findChild<QAction*>(QStringLiteral("actEasySetup"))->setEnabled(!options_.ReadOnly);

  chip->addSeparator();
  chip->addAction(tr("Reset Minima and &Maxima"), this, &MainForm::ResetRanges)
      ->setObjectName(QStringLiteral("actResetRanges"));

  QMenu* view = menuBar()->addMenu(tr("&View"));
  for (int tab = 0; tab < tabs_->count(); ++tab) {
    view->addAction(tr("Show \"%1\"").arg(tabs_->tabText(tab).trimmed()), QKeySequence(Qt::CTRL | (Qt::Key_1 + tab)),
                    this, [this, tab] { tabs_->setCurrentIndex(tab); });
  }
  view->addSeparator();
  QAction* journal = journalDock_->toggleViewAction();
  journal->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_J));
  view->addAction(journal);
  view->addSeparator();
  themes_ = new QActionGroup(this);
  const std::pair<QString, Theme> choices[] = {
      {tr("Theme of the &System"), Theme::System}, {tr("&Light"), Theme::Light}, {tr("&Dark"), Theme::Dark}};
  for (const auto& [text, theme] : choices) {
    QAction* action = view->addAction(text, this, [this, theme = theme] { emit ThemeChosen(theme); });
    action->setCheckable(true);
    action->setData(static_cast<int>(theme));
    themes_->addAction(action);
  }

  menuBar()->addMenu(tr("&Help"))->addAction(tr("&About"), this, &MainForm::ShowAbout);
}

void MainForm::SetWaitBudget(WaitBudget* budget) {
  visual_->SetWaitBudget(budget);
}

void MainForm::SelectTab(Tab tab) {
  if (tabs_->currentIndex() == tab) {
    TabChanged(tab);
  } else {
    tabs_->setCurrentIndex(tab);
  }
}

void MainForm::SetTheme(Theme theme) {
  for (QAction* action : themes_->actions()) action->setChecked(action->data().toInt() == static_cast<int>(theme));
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

void MainForm::SwitchesChanged() {
  control_->SwitchesChanged();
  if (switchAccess_) switchAccess_->ShowLamps();
}

void MainForm::FanTest() {
  RunUserAction(
      dialogs_, [this] { FanTestSetup(bench_.ChipLink); }, "Fan Test Setup");
}

void MainForm::OpenSwitchAccess() {
  if (!switchAccess_) switchAccess_ = new FrmSwitchAccess(bench_.EvalBoard, dialogs_, options_.ReadOnly, this);
  switchAccess_->Open();
  switchAccess_->raise();
}

QStringList MainForm::PreviewFanWrites(const AllFanFields& fields) {
  const ApplyPreview preview = PreviewApply(bench_.ChipLink, bench_.Fans, fields);
  QStringList lines;
  if (preview.Refusal) lines << QString::fromStdString(preview.Refusal->Message);
  for (const PlannedWrite& write : preview.Writes) lines << QString::fromStdString(PlannedWriteText(write));
  return lines;
}

void MainForm::OpenFanConfig() {
  if (fanConfig_) {
    fanConfig_->raise();
    fanConfig_->activateWindow();
    return;
  }
  const FrmFanConfig::Services services{[this](std::size_t index) {
                                          FrmAutoDetect detection(bench_.ChipLink, bench_.Owed, bench_.Fans, turns_,
                                                                  options_.FanSecondsPerSecond, fanConfig_);
                                          return detection.Run(index);
                                        },
                                        [this] { return MonitoringWarning(bench_.ChipLink); },
                                        [this](std::size_t index) {
                                          bench_.Owed.PutBackOverdue();
                                          return NotRestoredText(bench_.ChipLink, bench_.Owed, index);
                                        },
                                        [this](const AllFanFields& fields) { return PreviewFanWrites(fields); }};
  fanConfig_ = new FrmFanConfig(bench_.FanSettings, bench_.Fans, dialogs_, services, this);
  fanConfig_->SetReadOnly(options_.ReadOnly);
  connect(fanConfig_, &FrmFanConfig::Applied, this, [this] {
    model_.Relabel();
    visual_->ShowAll();
  });
  connect(fanConfig_, &FrmFanConfig::Notice, this, &MainForm::ShowNotice);
  connect(fanConfig_, &FrmFanConfig::Closed, fanConfig_, &QObject::deleteLater);
  if (!fanConfig_->Open()) delete fanConfig_;
}

void MainForm::ReReadChip() {
  const BusJournal::ActionScope scope(journal_, "Re-read Chip");
  const StepProblems problems = model_.ReReadChip();
  visual_->ShowAll();
  ShowProblems(problems);
  if (problems.empty()) ShowNotice(tr("The chip was read again"));
}

void MainForm::EasySetup() {
  Do([this] { model_.EasySetup(); }, "Easy Setup");
}

void MainForm::AfterUndo(const UndoResult& undone) {
  const auto drives = [](const UndoStep& step) { return GlitchTest::Drives(step.Register); };
  if (std::ranges::any_of(undone.Written, drives)) glitch_->Stop();
  RunUserAction(
      dialogs_, [&] { RenewAfterUndo(bench_, undone.Written); }, undoOrigin);
  constexpr std::uint8_t configuration1 = 0x40;
  for (const UndoStep& step : undone.Written) {
    readWrite_->ShowWrittenElsewhere(step.Register, step.Value);
    if (step.Register == configuration1 && tabs_->currentIndex() == VisualDisplay) {
      model_.ConfigurationWritten(step.Value);
    }
  }
  model_.Relabel();
  model_.ShowReadings();
  visual_->ShowAll();
  control_->PinsChanged();
  if (fanConfig_) fanConfig_->Renew();
}

void MainForm::StartVisualTimer() {
  visualTimer_.SetInterval(tickMilliseconds);
  visualTimer_.Start();
  sinceGoodTick_.start();
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
  transfers_ += bench_.ChipLink.TransferCount() - before;
  ++ticks_;
  sinceGoodTick_.start();
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
  ShowNotice(tr("Minimum, maximum and mean of all channels begin anew"));
}

void MainForm::ShowCycle() {
  const bool fresh = visualTimer_.IsActive() && sinceGoodTick_.elapsed() < freshMilliseconds;
  // A rate takes its time, that the cycle stands still does not.
  if (!fresh || sinceReport_.elapsed() >= reportMilliseconds / 2) {
    const double seconds = static_cast<double>(std::max<qint64>(sinceReport_.restart(), 1)) / 1000;
    status_->ShowCycle({.Running = fresh,
                        .NotMonitoring = bench_.First.Monitoring() == false,
                        .ReadsPerTick = ticks_ > 0 ? static_cast<double>(transfers_) / ticks_ : 0,
                        .TicksPerSecond = ticks_ / seconds,
                        .PauseSeconds = visualTimer_.IsActive() ? visualTimer_.PauseMilliseconds() / 1000.0 : 0});
    ticks_ = 0;
    transfers_ = 0;
  }
  if (!fresh) {
    model_.ShowSeen();  // without a tick: what a dialog wrote, say
    visual_->ShowReadings(true);
    status_->ShowAlarms(model_.ReportAlarms(), true);
  }
  if (options_.ReadOnly) ShowSkipped();
}

void MainForm::ShowSkipped() {
  status_->ShowConnection(tr("%1 · read-only, %2 writes not made")
                              .arg(ConnectionText(options_.Medium, bench_.ChipLink))
                              .arg(journal_.SkippedCount()));
}

void MainForm::ShowSetupLog() {
  TextDialog::Open(this, QStringLiteral("frmSetupLog"), tr("Setup Log"), SetupLogText());
}

void MainForm::ShowAbout() {
  AboutBox box(this);
  box.exec();
}

void MainForm::closeEvent(QCloseEvent* event) {
  // A detection gives up first and puts its output back; the window is closed once more after that.
  if (QApplication::activeModalWidget() != nullptr) {
    QApplication::activeModalWidget()->close();
    event->ignore();
    return;
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
