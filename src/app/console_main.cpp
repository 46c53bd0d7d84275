// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>
#include <QTimer>
#include <memory>

#include <CLI/CLI.hpp>

#include "app/commandhost.h"
#include "app/media.h"
#include "app/optiontexts.h"
#include "console/ui/mainform.h"
#include "console/ui/originfilter.h"
#include "console/workbench.h"
#include "controls/ui/displayguard.h"
#include "controls/ui/endsignals.h"
#include "controls/ui/qteventpump.h"
#include "controls/ui/userdialogs.h"
#include "link/chipsearch.h"
#include "link/journalmodule.h"
#include "link/registeraccess.h"
#include "link/ui/initform.h"

using namespace krx;

namespace {

constexpr int closingMilliseconds = 5;  ///< often: between two ticks on the SMBus there are only some milliseconds

struct ConsoleOptions {
  MediaOptions Bus;
  std::string ThemeName = "system";
  bool ReadOnly = false;
  std::string Connect;  ///< "any", "printer-port" or "smbus": to the first chip found there, without the search wizard
};

/// Everything of one run, in order of dependency, and who hears whom.
class Console {
 public:
  Console(QApplication& application, const ConsoleOptions& options)
      : application_(application),
        options_(options),
        theme_(ThemeFromName(QString::fromStdString(options.ThemeName))),
        systemTheme_(&Palette::For(application.palette()) == &Palette::Dark() ? Theme::Dark : Theme::Light) {
    ApplyThemeChoice(theme_);
    link_.WritesHeldBack = options.ReadOnly;
    turns_.Around(
        [this](const std::string& name, const std::function<void()>& tick) { RunTick(journal_, name, tick); });
    closing_.setInterval(closingMilliseconds);
    QObject::connect(&closing_, &QTimer::timeout, &application_, [this] { CloseWindows(); });
    QObject::connect(&endSignals_, &EndSignals::EndRequested, &closing_, qOverload<>(&QTimer::start));
  }

  int Run() {
    if (!options_.Connect.empty()) {
      ConnectFirstChip();
      ShowMainForm();
    } else {
      ShowWizard();
    }
    return QApplication::exec();
  }

 private:
  CommsRoot::Factory Journaled(const Media& media) {
    return [this, factory = media.Factory] { return MakeJournalModule(factory(), journal_, options_.ReadOnly); };
  }

  bool IsSimulated() const { return media_.Kind == MediumKind::Simulated; }

  QString MediumNote() const {
    QString note = QObject::tr("Buses: %1.").arg(QString::fromStdString(media_.Name));
    if (!media_.Reason.empty()) note += QLatin1Char(' ') + QString::fromStdString(media_.Reason) + QLatin1Char('.');
    if (IsSimulated()) {
      note += QObject::tr(" The chip with heaters and switches is at its printer port, another one on its SMBus.");
    }
    return note;
  }

  void ShowWizard() {
    initForm_ = std::make_unique<InitForm>(wizard_, dialogs_, MediumNote(), !IsSimulated());
    QObject::connect(initForm_.get(), &InitForm::MainWindowWanted, &application_, [this] { MakeMainForm(); });
    QObject::connect(initForm_.get(), &InitForm::Finished, &application_, [this] { ShowMainForm(); });
    QObject::connect(initForm_.get(), &InitForm::ReadOnlyWanted, &application_, [this] { GoReadOnly(); });
    QObject::connect(initForm_.get(), &InitForm::SimulatedBoardWanted, &application_, [this] { UseSimulatedBoard(); });
    initForm_->show();
    initForm_->Load();
  }

  void UseSimulatedBoard() {
    mainForm_.reset();
    MediaOptions simulated;
    simulated.Simulator = options_.Bus.Simulator;
    RunUserAction(dialogs_, [&] {
      media_ = ChooseMedia(simulated, clock_);
      root_.Change(Journaled(media_));
    });
    initForm_->Restart(MediumNote(), false);
  }

  /// Takes the first chip that answers, the printer port before the SMBus.
  void ConnectFirstChip() {
    search_.Load();
    const SearchMedia media{.PrinterPort = options_.Connect != "smbus", .Smbus = options_.Connect != "printer-port"};
    const auto holder = search_.ConnectFirst(media);
    if (!holder) return;
    GoReadOnly();
    search_.Finish(search_.Rows().front());
    dialogs_.Exclamation(QObject::tr("The chip is used by %1. This console starts read-only: no write reaches chip or "
                                     "board.")
                             .arg(QString::fromStdString(*holder)),
                         wizardtext::title);
  }

  /// Another program writes to the chip: the same bus anew, for reading only. The chip is then chosen once more.
  void GoReadOnly() {
    options_.ReadOnly = link_.WritesHeldBack = true;
    root_.Change(Journaled(media_));
    mainForm_.reset();
  }

  void MakeMainForm() {
    if (mainForm_) return;
    const MainFormOptions options{QString::fromStdString(media_.Name), options_.ReadOnly,
                                  IsSimulated() ? options_.Bus.Simulator.Speed : 1.0};
    mainForm_ = std::make_unique<MainForm>(bench_, turns_, dialogs_, journal_, options);
    mainForm_->SetWaitBudget(&pump_);
    mainForm_->SetTheme(theme_);
    QObject::connect(mainForm_.get(), &MainForm::ThemeChosen, &application_,
                     [this](Theme chosen) { ApplyThemeChoice(chosen); });
  }

  void ShowMainForm() {
    const BusJournal::OriginScope origin(journal_, "Start-up");
    MakeMainForm();
    if (!IsSimulated()) mainForm_->SetMedium(QString::fromStdString(search_.ChosenBus()));
    mainForm_->Start();
    if (IsSimulated() && !options_.ReadOnly) RunUserAction(dialogs_, [this] { StartSimulatedMonitoring(); });
    mainForm_->SelectTab(MainForm::VisualDisplay);
  }

  /// A simulated chip comes up without monitoring, as a real one does, and a first look would show nothing move. Only
  /// there is it started unasked: hardware is left as it was found.
  void StartSimulatedMonitoring() {
    constexpr std::uint8_t configuration1 = 0x40;
    constexpr std::uint8_t start = 0x01;
    UpdateBits(link_, configuration1, start, start);
    mainForm_->ShowNotice(QObject::tr("Monitoring was started on the simulated chip"));
  }

  /// A window that is busy (a detection, say) first puts back what it has to and refuses; it is asked again.
  void CloseWindows() {
    if (link_.TransferInProgress()) return;
    QApplication::closeAllWindows();
    for (const QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->isVisible()) return;
    }
    QApplication::quit();
  }

  void ApplyThemeChoice(Theme chosen) { ApplyTheme(application_, chosen == Theme::System ? systemTheme_ : chosen); }

  QApplication& application_;
  ConsoleOptions options_;
  Theme theme_;
  Theme systemTheme_;
  QtUserDialogs dialogs_;
  SystemClock clock_;
  QtEventPump pump_;
  BusJournal journal_{clock_};
  OriginFilter origins_{journal_};
  Media media_ = ChooseMedia(options_.Bus, clock_);
  CommsRoot root_{Journaled(media_)};
  Link link_{root_, clock_, pump_};
  ChipTurns turns_{link_};
  EndSignals endSignals_{[this] { return link_.TransferInProgress(); }};  // outlives the bench, which ends the heaters
  Workbench bench_{link_};
  ChipSearch search_{link_};
  SearchWizard wizard_{search_};
  QTimer closing_;
  std::unique_ptr<InitForm> initForm_;
  std::unique_ptr<MainForm> mainForm_;
};

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Evaluation and monitoring console for the KRX5580", "krx5580-console"};
  app.set_version_flag("--version", std::string(KRX_VERSION));
  app.failure_message(UsageLine);
  ConsoleOptions options;
  AddMediaOptions(app, options.Bus);
  app.add_option("--theme", options.ThemeName, "light, dark, or system: as the desktop has it")
      ->check(CLI::IsMember({"system", "light", "dark"}))
      ->type_name("NAME");
  app.add_flag("--read-only", options.ReadOnly, "no write reaches chip or board");
  app.add_option("--connect", options.Connect, "take the first chip found, without the search wizard")
      ->check(CLI::IsMember({"any", "printer-port", "smbus"}))
      ->type_name("BUS");
  // The toolkit takes its own options out of the arguments, and only then is the rest ours. But a question that needs
  // no window must not fail for want of a display, so those are answered first.
  app.allow_extras();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  DisplayGuard display;
  QApplication application(argc, argv);
  display.Release();
  // Not as the display name, which the toolkit appends to the title of every window.
  QApplication::setApplicationName(QStringLiteral("KRX5580 console"));
  QApplication::setApplicationVersion(QStringLiteral(KRX_VERSION));
  app.clear();
  app.allow_extras(false);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  int result = 1;
  QtUserDialogs dialogs;
  RunUserAction(dialogs, [&] {
    try {
      result = Console(application, options).Run();
    } catch (const UsageError&) {
      result = 2;
      throw;
    }
  });
  return result;
}
