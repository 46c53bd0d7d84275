// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simwords.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>
#include <vector>

namespace krx {
namespace {

/// Why a text is rejected.
struct Refused {
  std::string Why;
};

double Number(std::string_view word, std::string_view text, double low, double high, bool integer = false) {
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  const bool whole = result.ec == std::errc() && result.ptr == end;
  if (!whole || !(value >= low && value <= high) || (integer && value != std::floor(value))) {
    throw Refused{fmt::format("{}= takes a {}number from {} to {}", word, integer ? "whole " : "", low, high)};
  }
  return value;
}

int WholeNumber(std::string_view word, std::string_view text, int low, int high) {
  return static_cast<int>(Number(word, text, low, high, true));
}

std::uint8_t HexByte(std::string_view what, std::string_view text, int low = 0) {
  int value = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value, 16);
  if (result.ec != std::errc() || result.ptr != end || value < low || value > 0xFF) {
    throw Refused{fmt::format("{} takes a hexadecimal number from {:02X} to FF", what, low)};
  }
  return static_cast<std::uint8_t>(value);
}

constexpr std::array<std::pair<std::string_view, Operation>, 10> operationWords{{
    {"read", Operation::ReadByteData},
    {"write", Operation::WriteByteData},
    {"send", Operation::SendByte},
    {"receive", Operation::ReceiveByte},
    {"control", Operation::SetControlByte},
    {"status", Operation::ReadStatusByte},
    {"complete", Operation::Complete},
    {"mode", Operation::SetBusMode},
    {"port", Operation::SelectPort},
    {"report", Operation::ChipsetReport},
}};

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const std::size_t at = std::min(text.find(separator), text.size());
    parts.push_back(text.substr(0, at));
    if (at == text.size()) return parts;
    text.remove_prefix(at + 1);
  }
}

/// Splits "word=value"; a word without "=" has an empty value.
std::pair<std::string_view, std::string_view> WordAndValue(std::string_view text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return {text, {}};
  return {text.substr(0, equals), text.substr(equals + 1)};
}

Operation OperationOf(std::string_view name) {
  std::vector<std::string_view> names;
  for (const auto& [word, op] : operationWords) {
    if (word == name) return op;
    names.push_back(word);
  }
  throw Refused{fmt::format("op= takes one of {}", fmt::join(names, ", "))};
}

Fault FailOf(std::string_view text) {
  Fault fault;
  const std::vector<std::string_view> parts = Split(text, ',');
  std::string_view count = parts.front();
  if (count.ends_with('+')) {
    fault.Onward = true;
    count.remove_suffix(1);
  }
  fault.Nth = WholeNumber("fail", count, 1, 1'000'000'000);
  for (std::size_t i = 1; i < parts.size(); ++i) {
    const auto [word, value] = WordAndValue(parts[i]);
    if (parts[i] == "noack") {
      fault.NoAck = true;
    } else if (word == "reg") {
      fault.Register = HexByte("reg=", value);
    } else if (word == "number") {
      fault.Number = WholeNumber(word, value, 1, 65535);
    } else if (word == "op") {
      fault.Op = OperationOf(value);
    } else {
      throw Refused{"fail= accepts only op=, reg=, number= and noack"};
    }
  }
  return fault;
}

Fault StuckOf(std::string_view text) {
  Fault fault;
  fault.What = Fault::Kind::StuckBits;
  const std::size_t colon = text.find(':');
  fault.Register = HexByte("stuck=", text.substr(0, colon));
  fault.Value = colon == std::string_view::npos ? std::uint8_t{0xFF} : HexByte("stuck=RR:", text.substr(colon + 1), 1);
  return fault;
}

/// The faults with one numeric argument.
struct NumberFault {
  std::string_view Word;
  Fault::Kind Kind;
  int Highest;  ///< of an index, which starts at 1, or of seconds, which start at 0
  bool Seconds;
};
constexpr std::array<NumberFault, 6> numberFaults{{
    {"slow", Fault::Kind::ExtraTime, 10, true},
    {"absent", Fault::Kind::ChipAbsent, 1'000'000, true},
    {"stall", Fault::Kind::StalledFan, 4, false},
    {"runaway", Fault::Kind::RunawayFan, 4, false},
    {"hunt", Fault::Kind::HuntingFan, 4, false},
    {"diode", Fault::Kind::OpenDiode, 2, false},
}};

Fault FaultOf(std::string_view text) {
  const auto [word, value] = WordAndValue(text);
  if (word == "fail") return FailOf(value);
  if (word == "stuck") return StuckOf(value);
  Fault fault;
  if (word == "company") {
    fault.What = Fault::Kind::WrongCompanyId;
    fault.Value = HexByte("company=", value);
    return fault;
  }
  for (const NumberFault& row : numberFaults) {
    if (row.Word != word) continue;
    fault.What = row.Kind;
    if (row.Seconds) {
      fault.Seconds = Number(word, value, 0, row.Highest);
    } else {
      fault.Index = WholeNumber(word, value, 1, row.Highest);
    }
    return fault;
  }
  throw Refused{"unknown fault; use fail=, slow=, absent=, stall=, runaway=, hunt=, diode=, company= or stuck="};
}

void TakePulses(SimOptions& options, std::string_view value) {
  const std::vector<std::string_view> parts = Split(value, ':');
  if (parts.size() != 1 && parts.size() != options.RealPulses.size()) {
    throw Refused{"pulses= takes one number, or four separated by colons"};
  }
  for (std::size_t fan = 0; fan < options.RealPulses.size(); ++fan) {
    options.RealPulses[fan] = WholeNumber("pulses", parts[std::min(fan, parts.size() - 1)], 1, 4);
  }
}

void TakeBoardWord(SimOptions& options, std::string_view text) {
  const auto [word, value] = WordAndValue(text);
  if (text == "vid") {
    options.VidFollowsU3 = true;
  } else if (word == "pulses") {
    TakePulses(options, value);
  } else if (word == "ports") {
    options.Ports = static_cast<std::uint8_t>(WholeNumber(word, value, 0, 8));
  } else if (word == "load") {
    options.Load = Number(word, value, 0, 10);
  } else if (word == "noise") {
    options.Noise = Number(word, value, 0, 10);
  } else {
    throw Refused{"unknown option; use vid, pulses=, ports=, load= or noise="};
  }
}

}  // namespace

std::optional<Fault> ParseFault(std::string_view text, std::string* why) {
  try {
    return FaultOf(text);
  } catch (const Refused& refused) {
    if (why != nullptr) *why = refused.Why;
    return std::nullopt;
  }
}

std::optional<SimOptions> ParseBoard(SimOptions options, std::string_view text, std::string* why) {
  try {
    for (const std::string_view word : Split(text, ',')) TakeBoardWord(options, word);
    return options;
  } catch (const Refused& refused) {
    if (why != nullptr) *why = refused.Why;
    return std::nullopt;
  }
}

}  // namespace krx
