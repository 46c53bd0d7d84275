// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/optiontexts.h"

#include <CLI/CLI.hpp>

#include "registers/numerics.h"

namespace krx {
namespace {

/// A rejected value becomes a parser error, so that both programs have one error path.
template <typename Work>
void AsParseError(Work work) {
  try {
    work();
  } catch (const UsageError& error) {
    throw CLI::ValidationError(error.what());
  }
}

std::string Commands(const CLI::App& app) {
  std::string names;
  const auto all = app.get_subcommands([](const CLI::App*) { return true; });
  for (const CLI::App* command : all) {
    if (!names.empty()) names += command == all.back() ? " or " : ", ";
    names += command->get_name();
  }
  return names;
}

/// What is missing: the command, or the first argument that it needs.
std::string MissingText(const CLI::App& app, const CLI::App& command) {
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_required() && option->count() == 0)
      return fmt::format("missing argument {}", option->get_type_name());
  }
  return fmt::format("missing command: {}", Commands(app));
}

std::string ExtraText(const CLI::App& app) {
  const std::vector<std::string> extras = app.remaining(true);
  if (extras.empty()) return "too many arguments";
  if (extras.front().starts_with('-')) return fmt::format("unknown option \"{}\"", extras.front());
  return fmt::format("unexpected argument \"{}\"", extras.front());
}

/// The parser's text starts with the option and a colon when a value is missing, and with the flag's name without
/// dashes when a flag was given a value.
std::string ValueText(const CLI::ParseError& error) {
  const std::string text = error.what();
  if (const auto flag = text.find(" was given"); flag != std::string::npos) {
    return fmt::format("--{} takes no value", text.substr(0, flag));
  }
  return text.substr(0, text.find(':')) + " needs a value";
}

}  // namespace

double NumberOf(const std::string& option, const std::string& text, double low, double high) {
  const double value = Val(text);
  if (IsNumber(text) && value >= low && value <= high) return value;
  throw UsageError(fmt::format("{} takes a number from {} to {}, not \"{}\"", option, low, high, text));
}

long WholeNumberOf(const std::string& option, const std::string& text, long low, long high) {
  const double value = Val(text);
  const bool inside = value >= static_cast<double>(low) && value <= static_cast<double>(high);
  if (IsNumber(text) && inside && value == Floor(value)) return static_cast<long>(value);
  throw UsageError(fmt::format("{} takes a whole number from {} to {}, not \"{}\"", option, low, high, text));
}

CLI::Option* AddTextOption(CLI::App& app, const std::string& name, const std::string& type,
                           const std::string& description, std::function<void(const std::string&)> take) {
  const auto taken = [take = std::move(take)](const std::string& text) { AsParseError([&] { take(text); }); };
  return app.add_option_function<std::string>(name, taken, description)->type_name(type)->take_last();
}

CLI::Option* AddTextsOption(CLI::App& app, const std::string& name, const std::string& type,
                            const std::string& description, std::function<void(const std::vector<std::string>&)> take) {
  const auto taken = [take = std::move(take)](const std::vector<std::string>& texts) {
    AsParseError([&] { take(texts); });
  };
  return app.add_option_function<std::vector<std::string>>(name, taken, description)
      ->type_name(type)
      ->take_all()
      ->allow_extra_args(false);
}

void AddFlag(CLI::App& app, const std::string& name, bool& given, const std::string& description) {
  app.add_flag(name, given, description);
}

void AddCheck(CLI::App& app, std::function<void()> check) {
  app.parse_complete_callback([check = std::move(check)] { AsParseError(check); });
}

void SetHelpFlags(CLI::App& app, const std::string& version) {
  app.set_help_flag("-h,--help", "print this help and exit");
  app.set_version_flag("--version", version, "print the version and exit");
}

std::string UsageText(const CLI::App& app, const CLI::ParseError& error) {
  const auto named = app.get_subcommands();
  const CLI::App& command = named.empty() ? app : *named.front();
  std::string text = error.what();
  if (dynamic_cast<const CLI::ValidationError*>(&error) != nullptr) return text;  // ours already
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) text = ExtraText(app);
  if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) text = MissingText(app, command);
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) text = ValueText(error);
  const std::string commandName = named.empty() ? "" : " " + command.get_name();
  return fmt::format("{}; see {}{} --help", text, app.get_name(), commandName);
}

std::string UsageLine(const CLI::App* app, const CLI::Error& error) {
  const auto* parsing = dynamic_cast<const CLI::ParseError*>(&error);
  return fmt::format("{}: {}\n", app->get_name(), parsing != nullptr ? UsageText(*app, *parsing) : error.what());
}

}  // namespace krx
