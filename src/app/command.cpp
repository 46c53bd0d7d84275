// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/command.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <functional>

#include "app/chipconnection.h"
#include "app/media.h"
#include "app/optiontexts.h"
#include "app/registerargument.h"
#include "app/registercommands.h"
#include "app/watch.h"
#include "link/failuretext.h"

namespace krx {
namespace {

constexpr int exitDone = 0;
constexpr int exitFailure = 1;
constexpr int exitUsage = 2;

constexpr const char* registerHelp =
    "A register is given by its hexadecimal address (0x5C or 5Ch) or by its name as printed by krx5580 dump or stored "
    "in "
    "a register save file, in any case: \"company id\". Exit codes: 0 success, 1 bus or output failure, 2 usage error.";

/// The parsed command line. Numbers stay texts until the command runs, so that all of them are read by the same rules.
struct Words {
  MediaOptions Media;
  ChipChoice Chip;
  std::vector<std::string> Registers;
  std::string Register;
  std::string Value;
  std::string Interval;
  std::string Count;
  std::string Duration;
  std::string Pulses;
  bool Json = false;
  bool Start = false;
};

WatchOptions WatchOptionsOf(const Words& words) {
  constexpr long mostRows = 1'000'000'000;
  constexpr double longestDuration = 365.0 * 24 * 3600;
  WatchOptions options;
  if (!words.Interval.empty()) {
    options.Interval =
        NumberOf("--interval", words.Interval, WatchOptions::shortestInterval, WatchOptions::longestInterval);
  }
  if (!words.Count.empty()) options.Count = WholeNumberOf("--count", words.Count, 1, mostRows);
  if (!words.Duration.empty()) {
    options.Duration = NumberOf("--duration", words.Duration, WatchOptions::shortestInterval, longestDuration);
  }
  if (!words.Pulses.empty()) options.Pulses = static_cast<float>(WholeNumberOf("--pulses", words.Pulses, 1, 4));
  options.Json = words.Json;
  options.Start = words.Start;
  return options;
}

RegisterFormat FormatOf(const Words& words) {
  return words.Json ? RegisterFormat::Json : RegisterFormat::Table;
}

int RunWatch(const Words& words, CommandHost& host) {
  const WatchOptions options = WatchOptionsOf(words);
  ChipConnection connection(ChooseMedia(words.Media, host.ChipClock()), host);
  try {
    connection.Find(words.Chip);
  } catch (const Interrupted&) {  // watch ends normally, just early
    return exitDone;
  }
  if (words.Start) connection.TakeChip();
  return Watch(options, connection, host) ? exitDone : exitFailure;
}

int PrintAll(const std::vector<const RegisterEntry*>& entries, const Words& words, CommandHost& host) {
  ChipConnection connection(ChooseMedia(words.Media, host.ChipClock()), host);
  connection.Find(words.Chip);
  host.Err() << "krx5580: " << connection.Place() << '\n';
  const int failures = PrintRegisters(connection.ChipLink(), entries, FormatOf(words), connection.Place(), host);
  return failures == 0 ? exitDone : exitFailure;
}

int RunScan(const Words& words, CommandHost& host) {
  ChipConnection connection(ChooseMedia(words.Media, host.ChipClock()), host);
  const std::vector<ResultRow> rows = connection.Search(words.Chip);
  host.Err() << "krx5580: searched: " << connection.Searched() << '\n';
  for (const ResultRow& row : rows) {
    host.Out() << FoundChipLine(row, words.Json, connection.PlaceOf(row)) << '\n';
  }
  if (rows.empty()) throw connection.NotFound(words.Chip);
  // The list may be incomplete: a bus failed.
  return connection.SearchedAll() ? exitDone : exitFailure;
}

int RunRead(const Words& words, CommandHost& host) {
  std::vector<const RegisterEntry*> entries;
  for (const std::string& text : words.Registers) entries.push_back(&RegisterFromArgument(text));
  return PrintAll(entries, words, host);
}

int RunDump(const Words& words, CommandHost& host) {
  std::vector<const RegisterEntry*> entries;
  for (const RegisterEntry& entry : Registers()) entries.push_back(&entry);
  return PrintAll(entries, words, host);
}

int RunWrite(const Words& words, CommandHost& host) {
  const RegisterEntry& entry = RegisterFromArgument(words.Register);
  const std::uint8_t value = ByteFromArgument(words.Value);
  CheckWritable(entry);
  ChipConnection connection(ChooseMedia(words.Media, host.ChipClock()), host);
  connection.Find(words.Chip);
  host.Err() << "krx5580: " << connection.Place() << '\n';
  connection.TakeChip();
  WriteRegisterValue(connection.ChipLink(), entry, value, FormatOf(words), connection.Place(), host);
  return exitDone;
}

/// Naming a bus of one kind excludes the other kind: a user who names an SMBus does not want a printer probed.
void SearchOnlyTheNamedBus(Words& words) {
  if (words.Media.Smbus.has_value() == words.Media.PrinterPort.has_value()) return;
  const ChipBus named = words.Media.Smbus ? ChipBus::Smbus : ChipBus::PrinterPort;
  if (words.Chip.Bus.value_or(named) != named) {
    throw UsageError(words.Media.Smbus ? "--smbus cannot be combined with --bus printer-port"
                                       : "--printer-port cannot be combined with --bus smbus");
  }
  words.Chip.Bus = named;
}

using Action = std::function<int(const Words&, CommandHost&)>;

void DescribeWatch(CLI::App& watch, Words& words) {
  watch.add_option("--interval", words.Interval, "seconds between rows, 0.1 to 3600 (default 1)")->type_name("S");
  watch.add_option("--count", words.Count, "end after N rows")->type_name("N");
  watch.add_option("--duration", words.Duration, "end after S seconds")->type_name("S");
  watch.add_option("--pulses", words.Pulses, "actual pulses per revolution of the fans, 1 to 4 (default 1)")
      ->type_name("N");
  watch.add_flag("--start", words.Start,
                 "on hardware: start monitoring if it is off (bit 0 of 40h), switch the evaluation board's "
                 "heaters off and route its inputs; without this option nothing is written");
}

/// Parses and runs; throws on any error.
int Run(std::vector<std::string> arguments, CommandHost& host) {
  Words words;
  CLI::App app("Read, write and monitor the KRX5580 hardware monitor from the command line.", "krx5580");
  app.option_defaults()->take_last()->disable_flag_override();
  SetHelpFlags(app, std::string("krx5580 ") + KRX_VERSION);
  app.require_subcommand(1);
  app.footer(registerHelp);

  Action action;
  const auto addCommand = [&](const char* name, const char* description, Action run) {
    CLI::App* command = app.add_subcommand(name, description);
    command->callback([&action, run = std::move(run)] { action = run; });
    AddMediaOptions(*command, words.Media);
    AddChipOptions(*command, words.Chip);
    command->add_flag("--json", words.Json, "print JSON, one object per line");
    return command;
  };
  DescribeWatch(*addCommand("watch", "show all twelve channels, one row per interval", RunWatch), words);
  addCommand("scan", "search the buses for the chip", RunScan);
  addCommand("read", "read registers", RunRead)
      ->add_option("register", words.Registers, "address or name")
      ->type_name("REG...")
      ->required()
      ->take_all();
  addCommand("dump", "read all 90 registers", RunDump);
  CLI::App* write = addCommand("write", "write one register and read it back", RunWrite);
  write->add_option("register", words.Register, "address or name")->type_name("REG")->required();
  write->add_option("value", words.Value, "0x28, 28h, or one decimal digit")->type_name("VALUE")->required();

  // The parser would only report a missing command.
  const auto named = [&](const CLI::App* command) { return command->get_name() == arguments.front(); };
  if (!arguments.empty() && !arguments.front().starts_with('-') && app.get_subcommands(named).empty()) {
    throw UsageError(fmt::format("unknown command \"{}\"; see krx5580 --help", arguments.front()));
  }
  try {
    std::reverse(arguments.begin(), arguments.end());
    app.parse(arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) throw UsageError(UsageText(app, error));
    app.exit(error, host.Out(), host.Err());  // help and version
    return exitDone;
  }
  SearchOnlyTheNamedBus(words);
  return action(words, host);
}

}  // namespace

int RunCommand(std::vector<std::string> arguments, CommandHost& host) {
  int code = exitFailure;
  try {
    code = Run(std::move(arguments), host);
  } catch (const UsageError& error) {
    host.Err() << "krx5580: " << error.what() << '\n';
    code = exitUsage;
  } catch (const std::exception& error) {
    host.Err() << "krx5580: " << FailureText(error) << '\n';
  }
  if (!host.Out().flush()) {
    host.Err() << "krx5580: cannot write the output\n";
    if (code == exitDone) code = exitFailure;
  }
  return code;
}

}  // namespace krx
