// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/commandhost.h"

namespace CLI {
class App;
class Error;
class Option;
class ParseError;
}  // namespace CLI

namespace krx {

// Option values are parsed by our own rules, the same for all options: the parser's would accept "nan" as a number and
// 1 as a name. They throw UsageError, which names the option and the values it takes.

double NumberOf(const std::string& option, const std::string& text, double low, double high);
long WholeNumberOf(const std::string& option, const std::string& text, long low, long high);

/// A name and its value.
template <typename Value>
using Named = std::pair<std::string_view, Value>;

/// The value of a name, ignoring case.
template <typename Value>
Value ValueOf(const std::string& option, const std::string& text, std::span<const Named<Value>> names) {
  const auto same = [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; };
  std::string all;
  for (const auto& [name, value] : names) {
    if (std::equal(text.begin(), text.end(), name.begin(), name.end(), same)) return value;
    all += all.empty() ? "" : &name == &names.back().first ? " or " : ", ";
    all += name;
  }
  throw UsageError(fmt::format("{} takes {}, not \"{}\"", option, all, text));
}

/// Adds an option whose text goes to `take`; the last one counts if it is given more than once. A UsageError thrown by
/// `take` ends the parsing.
CLI::Option* AddTextOption(CLI::App& app, const std::string& name, const std::string& type,
                           const std::string& description, std::function<void(const std::string&)> take);
/// The same for an option that may be repeated: `take` gets all texts at once.
CLI::Option* AddTextsOption(CLI::App& app, const std::string& name, const std::string& type,
                            const std::string& description, std::function<void(const std::vector<std::string>&)> take);
/// Adds an option without a value, which sets `given`.
void AddFlag(CLI::App& app, const std::string& name, bool& given, const std::string& description);
/// `check` runs when all options of `app` have been parsed. A UsageError thrown by it ends the parsing, too.
void AddCheck(CLI::App& app, std::function<void()> check);

/// Adds --help, which commands added later inherit, and --version.
void SetHelpFlags(CLI::App& app, const std::string& version);

/// Why the arguments were rejected. Never the parser's own text.
std::string UsageText(const CLI::App& app, const CLI::ParseError& error);
/// The same as a complete line of output; for CLI::App::failure_message.
std::string UsageLine(const CLI::App* app, const CLI::Error& error);

}  // namespace krx
