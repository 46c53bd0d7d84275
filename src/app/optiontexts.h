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

// What stands behind an option, read by our own rules for all options alike: the parser's would take "nan" for a number
// and 1 for a name. They throw UsageError, which names the option and what it takes.

double NumberOf(const std::string& option, const std::string& text, double low, double high);
long WholeNumberOf(const std::string& option, const std::string& text, long low, long high);

/// A name and what it stands for.
template <typename Value>
using Named = std::pair<std::string_view, Value>;

/// The value of a name, whatever its case.
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

/// Adds an option whose text goes to `take`, the last one where it is given more than once. A UsageError from there
/// ends the parsing.
CLI::Option* AddTextOption(CLI::App& app, const std::string& name, const std::string& type,
                           const std::string& description, std::function<void(const std::string&)> take);
/// The same for an option that may be repeated: all its texts at once.
CLI::Option* AddTextsOption(CLI::App& app, const std::string& name, const std::string& type,
                            const std::string& description, std::function<void(const std::vector<std::string>&)> take);
/// Adds an option without a text, which sets `given`.
void AddFlag(CLI::App& app, const std::string& name, bool& given, const std::string& description);
/// Runs when all options of `app` have been taken. A UsageError from there ends the parsing, too.
void AddCheck(CLI::App& app, std::function<void()> check);

/// Why the arguments were refused, in our words.
std::string UsageText(const CLI::App& app, const CLI::ParseError& error);
/// The same as the line that a program prints; for CLI::App::failure_message.
std::string UsageLine(const CLI::App* app, const CLI::Error& error);

}  // namespace krx
