// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>

#include <CLI/CLI.hpp>

#include "app/media.h"
#include "console/startup.h"
#include "console/ui/mainform.h"
#include "console/workbench.h"
#include "controls/ui/endsignals.h"
#include "controls/ui/qteventpump.h"
#include "controls/ui/userdialogs.h"
#include "link/chipsearch.h"
#include "link/registeraccess.h"

using namespace krx;

namespace {

struct ConsoleOptions {
  MediaOptions Media;
  std::string Bus;
  std::string ThemeName = "system";
};

/// Takes the first chip that answers, the printer port before the SMBus. bus: "printer-port", "smbus", or empty for
/// both.
void ConnectFirstChip(Link& link, const std::string& bus) {
  ChipSearch search(link);
  search.Load();
  search.Search({.PrinterPort = bus != "smbus", .Smbus = bus != "printer-port"}, 0, nullptr);
  const auto rows = search.Rows();
  if (rows.empty()) throw CommsError(5, "No chip was found");
  search.Finish(rows.front());
}

/// A simulated chip comes up without monitoring, as a real one does, and a first look would show nothing move. Only
/// there is it started unasked: hardware is left as it was found.
void StartSimulatedMonitoring(Link& link, MainForm& window) {
  constexpr std::uint8_t configuration1 = 0x40;
  constexpr std::uint8_t start = 0x01;
  UpdateBits(link, configuration1, start, start);
  window.ShowNotice(QObject::tr("Monitoring was started on the simulated chip"));
}

int Run(QApplication& application, const ConsoleOptions& options) {
  const bool systemIsDark = &Palette::For(application.palette()) == &Palette::Dark();
  const auto applyTheme = [&application, systemIsDark](Theme chosen) {
    const Theme system = systemIsDark ? Theme::Dark : Theme::Light;
    ApplyTheme(application, chosen == Theme::System ? system : chosen);
  };
  const Theme theme = ThemeFromName(QString::fromStdString(options.ThemeName));
  applyTheme(theme);

  QtUserDialogs dialogs;
  SystemClock clock;
  QtEventPump pump;
  int result = 1;
  RunUserAction(dialogs, [&] {
    const Media media = ChooseMedia(options.Media, clock);
    CommsRoot root(media.Factory);
    Link link(root, clock, pump);
    ConnectFirstChip(link, options.Bus);
    ChipTurns turns(link);
    Workbench bench(link);
    const StepProblems problems = StartUp(bench);
    MainForm window(bench, turns, dialogs, QString::fromStdString(media.Name));
    window.SetWaitBudget(&pump);
    window.SetTheme(theme);
    QObject::connect(&window, &MainForm::ThemeChosen, &application, applyTheme);
    if (media.Kind == MediumKind::Simulated) StartSimulatedMonitoring(link, window);
    window.show();
    window.SelectTab(MainForm::VisualDisplay);
    for (const std::string& problem : problems) dialogs.Exclamation(QString::fromStdString(problem));
    const EndSignals endSignals([&link] { return link.TransferInProgress(); });
    QObject::connect(&endSignals, &EndSignals::EndRequested, &application, [] {
      QApplication::closeAllWindows();
      QApplication::quit();
    });
    result = QApplication::exec();
  });
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Evaluation and monitoring console for the KRX5580", "krx5580-console"};
  app.set_version_flag("--version", std::string(KRX_VERSION));
  ConsoleOptions options;
  AddMediaOptions(app, options.Media);
  app.add_option("--bus", options.Bus, "take the chip on this bus: printer-port or smbus")
      ->check(CLI::IsMember({"printer-port", "smbus"}))
      ->type_name("NAME");
  app.add_option("--theme", options.ThemeName, "light, dark, or system: as the desktop has it")
      ->check(CLI::IsMember({"system", "light", "dark"}))
      ->type_name("NAME");
  // The toolkit takes its own options out of the arguments, and only then is the rest ours. But a question that needs
  // no window must not fail for want of a display, so those are answered first.
  app.allow_extras();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("krx5580-console"));
  QApplication::setApplicationDisplayName(QStringLiteral("KRX5580 console"));
  QApplication::setApplicationVersion(QStringLiteral(KRX_VERSION));
  app.clear();
  app.allow_extras(false);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  return Run(application, options);
}
