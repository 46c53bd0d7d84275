// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/mainform.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QMenuBar>
#include <QTabBar>
#include <QTabWidget>

#include "console/ui/aboutbox.h"
#include "console/ui/controlpage.h"
#include "console/ui/mainpage.h"
#include "console/ui/readwritepage.h"
#include "console/ui/setuplog.h"
#include "console/ui/statusline.h"
#include "console/ui/textdialog.h"
#include "console/ui/visualdisplaypage.h"
#include "console/workbench.h"
#include "controls/ui/userdialogs.h"

namespace krx {
namespace {

constexpr int showMilliseconds = 50;  ///< a reader sees no more than 20 values a second
constexpr int reportMilliseconds = 1000;
constexpr int freshMilliseconds = 1500;  ///< without a whole tick for so long the values are old

}  // namespace

QString ConnectionText(const QString& medium, const Link& link) {
  const QString bus = link.CommsMedium == 1 ? QObject::tr("printer port") : QObject::tr("SMBus");
  const QString address = QStringLiteral("%1").arg(link.ChipAddress, 2, 16, QLatin1Char('0')).toUpper();
  return QStringLiteral("%1 · %2 %3h").arg(medium, bus, address);
}

MainForm::MainForm(Workbench& bench, ChipTurns& turns, UserDialogs& dialogs, const QString& medium)
    : bench_(bench),
      dialogs_(dialogs),
      model_(bench, *this),
      visualTimer_(turns, "visual_timer", tickMilliseconds, [this] { VisualTick(); }) {
  setObjectName(QStringLiteral("MainForm"));
  setWindowTitle(tr("KRX5580 console - %1").arg(medium));
  const QString connection = ConnectionText(medium, bench.ChipLink);
  MakeTabs(connection);
  MakeMenus();
  status_ = new StatusLine;
  status_->ShowConnection(connection);
  setStatusBar(status_);
  turns.OnFailure([this](const std::string& name, const CommsError& error) { status_->CountFault(name, error); });
  connect(&cycleReport_, &QTimer::timeout, this, &MainForm::ShowCycle);
  cycleReport_.start(reportMilliseconds);
  sinceReport_.start();
  sinceShown_.start();
  resize(1280, 800);
}

MainForm::~MainForm() = default;

void MainForm::MakeTabs(const QString& connection) {
  auto* main = new MainPage(connection);
  visual_ = new VisualDisplayPage(model_, bench_, dialogs_);
  tabs_ = new QTabWidget;
  tabs_->setObjectName(QStringLiteral("Main_Form_Tab"));
  tabs_->setDocumentMode(true);
  tabs_->addTab(main, tr("Main"));
  tabs_->addTab(new ReadWritePage, tr("Read/Write"));
  tabs_->addTab(visual_, tr("Visual Display"));
  tabs_->addTab(new ControlPage, tr("Control "));
  setCentralWidget(tabs_);
  connect(tabs_, &QTabWidget::currentChanged, this, &MainForm::TabChanged);
  connect(main, &MainPage::AboutRequested, this, &MainForm::ShowAbout);
  connect(visual_, &VisualDisplayPage::EasySetupRequested, this, &MainForm::EasySetup);
  connect(visual_, &VisualDisplayPage::SetupLogRequested, this, &MainForm::ShowSetupLog);
  connect(visual_, &VisualDisplayPage::LimitRejected, this, &MainForm::ShowNotice);
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

  QMenu* view = menuBar()->addMenu(tr("&View"));
  for (int tab = 0; tab < tabs_->count(); ++tab) {
    view->addAction(tr("Show \"%1\"").arg(tabs_->tabText(tab).trimmed()), QKeySequence(Qt::CTRL | (Qt::Key_1 + tab)),
                    this, [this, tab] { tabs_->setCurrentIndex(tab); });
  }
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

void MainForm::Do(const std::function<void()>& action) {
  RunUserAction(dialogs_, action);
  visual_->ShowAll();
  ShowCycle();
}

void MainForm::TabChanged(int index) {
  if (index == VisualDisplay) Do([this] { model_.EnterVisualDisplay(); });
  if (index == ReadWrite) Do([this] { model_.EnterReadWrite(); });
}

void MainForm::ReReadChip() {
  const StepProblems problems = model_.ReReadChip();
  if (!problems.empty()) {
    QStringList lines;
    for (const std::string& problem : problems) lines << QString::fromStdString(problem);
    dialogs_.Critical(lines.join(QLatin1Char('\n')));
  }
  visual_->ShowAll();
  if (problems.empty()) ShowNotice(tr("The chip was read again"));
}

void MainForm::EasySetup() {
  Do([this] { model_.EasySetup(); });
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
  model_.Tick();
  transfers_ += bench_.ChipLink.TransferCount() - before;
  ++ticks_;
  sinceGoodTick_.start();
  visual_->Posted();
  ShowDue();
}

void MainForm::ShowDue() {
  if (sinceShown_.elapsed() < showMilliseconds || !visual_->isVisible()) return;
  sinceShown_.start();
  visual_->ShowReadings(false);
}

void MainForm::ShowCycle() {
  const bool fresh = visualTimer_.IsActive() && sinceGoodTick_.elapsed() < freshMilliseconds;
  if (sinceReport_.elapsed() >= reportMilliseconds / 2) {
    const double seconds = static_cast<double>(sinceReport_.restart()) / 1000;
    status_->ShowCycle({fresh, ticks_ > 0 ? static_cast<double>(transfers_) / ticks_ : 0, ticks_ / seconds});
    ticks_ = 0;
    transfers_ = 0;
  }
  if (!fresh) visual_->ShowReadings(true);
}

void MainForm::ShowSetupLog() {
  TextDialog::Open(this, QStringLiteral("frmSetupLog"), tr("Setup Log"), SetupLogText());
}

void MainForm::ShowAbout() {
  AboutBox box(this);
  box.exec();
}

void MainForm::closeEvent(QCloseEvent* event) {
  // First what reads the chip, then the windows that show it.
  StopVisualTimer();
  cycleReport_.stop();
  for (QDialog* dialog : findChildren<QDialog*>()) dialog->close();
  QMainWindow::closeEvent(event);
}

}  // namespace krx
