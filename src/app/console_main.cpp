// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/commandhost.h"
#include "app/media.h"
#include "app/optiontexts.h"
#include "console/ui/consolerun.h"
#include "controls/ui/displayguard.h"
#include "controls/ui/texts.h"

using namespace krx;
using namespace Qt::StringLiterals;

namespace {

struct ConsoleOptions {
  MediaOptions Bus;
  Theme Colours = Theme::System;
  bool ReadOnly = false;
  std::optional<SearchMedia> Connect;  ///< to the first chip found there, without the search wizard
};

constexpr std::array<Named<Theme>, 3> themeNames{
    {{"system", Theme::System}, {"light", Theme::Light}, {"dark", Theme::Dark}}};
constexpr std::array<Named<SearchMedia>, 3> connectNames{{{"any", {.PrinterPort = true, .Smbus = true}},
                                                          {"printer-port", {.PrinterPort = true}},
                                                          {"smbus", {.Smbus = true}}}};

void AddConsoleOptions(CLI::App& app, ConsoleOptions& options) {
  // Before the options, which inherit it.
  app.option_defaults()->disable_flag_override();
  AddMediaOptions(app, options.Bus);
  AddTextOption(app, "--theme", "NAME", "light, dark, or system (follow the desktop)",
                [&](const std::string& text) { options.Colours = ValueOf<Theme>("--theme", text, themeNames); });
  app.add_flag("--read-only", options.ReadOnly, "do not write to the chip or the board");
  AddTextOption(
      app, "--connect", "BUS", "use the first chip found on: any, printer-port or smbus; skips the search wizard",
      [&](const std::string& text) { options.Connect = ValueOf<SearchMedia>("--connect", text, connectNames); });
}

// The toolkit removes these from the arguments itself, with one dash or two.
constexpr std::array<std::string_view, 14> toolkitValues{
    "platform",    "platformpluginpath", "platformtheme", "plugin", "qwindowgeometry",
    "qwindowicon", "qwindowtitle",       "geometry",      "icon",   "title",
    "style",       "stylesheet",         "session",       "display"};
constexpr std::array<std::string_view, 4> toolkitFlags{"reverse", "widgetcount", "nograb", "dograb"};

bool Holds(std::span<const std::string_view> names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// The arguments left for us, in reverse order as the parser expects them.
std::vector<std::string> OurArguments(const std::vector<std::string>& all) {
  const auto isFlag = [](std::string_view name) {
    return Holds(toolkitFlags, name) || name.starts_with("style=") || name.starts_with("stylesheet=");
  };
  std::vector<std::string> ours;
  for (std::size_t i = 0; i < all.size(); ++i) {
    std::string_view name = all[i];
    for (int dash = 0; dash < 2 && name.starts_with('-'); ++dash) name.remove_prefix(1);
    const bool dashed = name.size() < all[i].size();
    if (dashed && Holds(toolkitValues, name)) {
      ++i;
    } else if (!dashed || !isFlag(name)) {
      ours.insert(ours.begin(), all[i]);
    }
  }
  return ours;
}

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
  return {.Colours = options.Colours,
          .ReadOnly = options.ReadOnly,
          .Connect = options.Connect,
          .SimulatedBoard = [simulated, &clock] { return MediumOf(simulated, clock); }};
}

}  // namespace

// What nobody catches ends in std::terminate, which puts back what is owed.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  CLI::App app{"Evaluation and monitoring console for the KRX5580", "krx5580-console"};
  SetHelpFlags(app, KRX_VERSION);
  app.failure_message(UsageLine);
  ConsoleOptions options;
  AddConsoleOptions(app, options);
  // Before the toolkit, so that argument errors are reported without a display, too.
  try {
    app.parse(OurArguments({argv + std::min(argc, 1), argv + argc}));
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  DisplayGuard display;
  QApplication application(argc, argv);
  display.Release();
  // Not the application display name, which the toolkit appends to every window title.
  QApplication::setApplicationName(u"KRX5580 console"_s);
  QApplication::setApplicationVersion(QtText(KRX_VERSION));
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
