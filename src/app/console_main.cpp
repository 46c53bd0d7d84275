// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>

#include <CLI/CLI.hpp>

#include "app/commandhost.h"
#include "app/media.h"
#include "app/optiontexts.h"
#include "console/ui/consolerun.h"
#include "controls/ui/displayguard.h"

using namespace krx;

namespace {

struct ConsoleOptions {
  MediaOptions Bus;
  std::string ThemeName = "system";
  bool ReadOnly = false;
  std::string Connect;  ///< "any", "printer-port" or "smbus": to the first chip found there, without the search wizard
};

ConsoleMedium MediumOf(const MediaOptions& options, Clock& clock) {
  const Media media = ChooseMedia(options, clock);
  const bool simulated = media.Kind == MediumKind::Simulated;
  return {.Factory = media.Factory,
          .Name = QString::fromStdString(media.Name),
          .Reason = QString::fromStdString(media.Reason),
          .Simulated = simulated,
          .FanSecondsPerSecond = simulated ? options.Simulator.Speed : 1.0};
}

ConsoleRunOptions RunOptionsOf(const ConsoleOptions& options, Clock& clock) {
  MediaOptions simulated;
  simulated.Simulator = options.Bus.Simulator;
  ConsoleRunOptions run{.Colours = ThemeFromName(QString::fromStdString(options.ThemeName)),
                        .ReadOnly = options.ReadOnly,
                        .Connect = {},
                        .SimulatedBoard = [simulated, &clock] { return MediumOf(simulated, clock); }};
  if (!options.Connect.empty()) {
    run.Connect = SearchMedia{.PrinterPort = options.Connect != "smbus", .Smbus = options.Connect != "printer-port"};
  }
  return run;
}

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
  SystemClock clock;
  QtUserDialogs dialogs;
  RunUserAction(dialogs, [&] {
    try {
      ConsoleRun run(application, clock, dialogs, MediumOf(options.Bus, clock), RunOptionsOf(options, clock));
      result = run.Run();
    } catch (const UsageError&) {
      result = 2;
      throw;
    }
  });
  return result;
}
