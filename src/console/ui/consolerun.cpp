// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/consolerun.h"

#include <QApplication>
#include <iostream>
#include <optional>
#include <string>
#include <utility>

#include "controls/ui/accessibility.h"
#include "controls/ui/texts.h"
#include "journal/journalmodule.h"
#include "link/commserror.h"
#include "link/registeraccess.h"
#include "link/ui/initform.h"
#include "registers/chip.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr int closingMilliseconds = 5;  ///< often: between two ticks on the SMBus there are only some milliseconds

}  // namespace

ConsoleRun::ConsoleRun(QApplication& application, Clock& clock, UserDialogs& dialogs, ConsoleMedium medium,
                       ConsoleRunOptions options)
    : application_(application),
      clock_(clock),
      medium_(std::move(medium)),
      options_(std::move(options)),
      systemTheme_(&Palette::For(application.palette()) == &Palette::Dark() ? Theme::Dark : Theme::Light),
      dialogs_(dialogs, pump_, [this] { return link_.TransferInProgress() || turns_.TurnRunning(); }) {
  ApplyThemeChoice(options_.Colours);
  InstallAccessibility();
  application.installEventFilter(&copyMenu_);
  link_.EndAsked = [this] { return endSignals_.Asked(); };
  link_.WritesHeldBack = options_.ReadOnly;
  turns_.Around([this](const std::string& name, const std::function<void()>& tick) { RunTick(journal_, name, tick); });
  closing_.setInterval(closingMilliseconds);
  QObject::connect(&closing_, &QTimer::timeout, &application_, [this] { CloseWindows(); });
  QObject::connect(&endSignals_, &EndSignals::EndRequested, &closing_, [this] {
    bench_.Owed.BeginEnding();
    closing_.start();
  });
}

ConsoleRun::~ConsoleRun() = default;

int ConsoleRun::Run() {
  OpenFirstWindow();
  return QApplication::exec();
}

void ConsoleRun::OpenFirstWindow() {
  // Before the main loop runs nothing could end a box that is open.
  const GatedDialogs::Together boxes(dialogs_);
  if (options_.Connect) {
    ConnectFirstChip();
    ShowMainForm();
  } else {
    ShowWizard();
  }
}

CommsRoot::Factory ConsoleRun::Journaled() {
  return [this, factory = medium_.Factory] { return MakeJournalModule(factory(), journal_, options_.ReadOnly); };
}

QString ConsoleRun::MediumNote() const {
  QString note = u"Buses: %1."_s.arg(medium_.Name);
  if (!medium_.Reason.isEmpty()) note += u' ' + medium_.Reason + u'.';
  if (medium_.Simulated) {
    note += u" The chip with heaters and switches is on the printer port, another chip on the SMBus."_s;
  }
  return note;
}

void ConsoleRun::ShowWizard() {
  initForm_ = std::make_unique<InitForm>(wizard_, dialogs_, MediumNote(), !medium_.Simulated);
  QObject::connect(initForm_.get(), &InitForm::MainWindowRequested, &application_, [this] { MakeMainForm(); });
  QObject::connect(initForm_.get(), &InitForm::Finished, &application_, [this] { ShowMainForm(); });
  QObject::connect(initForm_.get(), &InitForm::ReadOnlyRequested, &application_, [this] { GoReadOnly(); });
  QObject::connect(initForm_.get(), &InitForm::SimulatedBoardRequested, &application_, [this] { UseSimulatedBoard(); });
  initForm_->show();
  initForm_->Load();
}

void ConsoleRun::UseSimulatedBoard() {
  mainForm_.reset();
  RunUserAction(dialogs_, [&] {
    medium_ = options_.SimulatedBoard();
    root_.Change(Journaled());
  });
  initForm_->Restart(MediumNote(), false);
}

/// Takes the first chip that answers, the printer port before the SMBus.
void ConsoleRun::ConnectFirstChip() {
  search_.Load();
  std::optional<std::string> holder;
  try {
    holder = search_.ConnectFirst(*options_.Connect);
  } catch (const GivenUp&) {  // the main loop then ends the program as it ends every other run
  }
  if (!holder) return;
  GoReadOnly();
  search_.Finish(search_.Rows().front());
  dialogs_.Exclamation(
      u"The chip is in use by %1. This console starts read-only: nothing is written to the chip or the board."_s.arg(
          QString::fromStdString(*holder)),
      QtText(wizardtext::title));
}

/// Another program writes to the chip: the same bus anew, for reading only. The chip is then chosen once more.
void ConsoleRun::GoReadOnly() {
  options_.ReadOnly = link_.WritesHeldBack = true;
  root_.Change(Journaled());
  mainForm_.reset();
}

void ConsoleRun::MakeMainForm() {
  if (mainForm_) return;
  const MainFormOptions options{medium_.Name, options_.ReadOnly, medium_.FanSecondsPerSecond};
  mainForm_ = std::make_unique<MainForm>(bench_, turns_, dialogs_, journal_, options);
  mainForm_->SetWaitBudget(&pump_);
  mainForm_->SetTheme(options_.Colours);
  QObject::connect(mainForm_.get(), &MainForm::ThemeChosen, &application_,
                   [this](Theme chosen) { ApplyThemeChoice(chosen); });
}

void ConsoleRun::ShowMainForm() {
  // A bus that fails here fails in every step, which is one box; and it comes when the wizard has closed.
  const GatedDialogs::Together boxes(dialogs_);
  if (endSignals_.Asked()) return;  // on a bus that hangs the search alone takes seconds
  const BusJournal::OriginScope origin(journal_, "Start-up");
  MakeMainForm();
  if (!medium_.Simulated) mainForm_->SetMedium(QString::fromStdString(search_.ChosenBus()));
  mainForm_->Start();
  if (medium_.Simulated && !options_.ReadOnly) RunUserAction(dialogs_, [this] { StartSimulatedMonitoring(); });
  mainForm_->SelectTab(MainForm::VisualDisplay);
}

/// A simulated chip comes up without monitoring, as a real one does, and a first look would show nothing move. Only
/// there is it started unasked: hardware is left as it was found.
void ConsoleRun::StartSimulatedMonitoring() {
  const Link::MayGiveUp unlessEnding(link_);
  UpdateBits(link_, chip::Configuration1, chip::Start, chip::Start);
  mainForm_->ShowNotice(u"Monitoring was started on the simulated chip"_s);
}

/// A window that is busy (a detection, say) first puts back what it has to and refuses; it is asked again.
void ConsoleRun::CloseWindows() {
  if (link_.TransferInProgress()) return;
  QApplication::closeAllWindows();
  for (const QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->isVisible()) return;
  }
  QApplication::quit();
}

/// The program ends without the destructors of this object, out of the event loop or a transfer's wait, and its windows
/// may have no display any more.
void ConsoleRun::PutBackAtExit() {
  link_.LeaveWindowsAlone();
  if (mainForm_) mainForm_->GiveUp(std::cerr);
  bench_.Owed.PutBackAtEnd(std::cerr);
}

void ConsoleRun::ApplyThemeChoice(Theme chosen) {
  ApplyTheme(application_, chosen == Theme::System ? systemTheme_ : chosen);
}

}  // namespace krx
