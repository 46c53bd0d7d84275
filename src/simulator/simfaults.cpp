// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simfaults.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <type_traits>
#include <utility>

#include "link/commserror.h"

namespace krx {
namespace {

template <typename T>
std::optional<T> Number(std::string_view text, T low, T high, int base = 10) {
  T value{};
  const char* const end = text.data() + text.size();
  std::from_chars_result result{};
  if constexpr (std::is_floating_point_v<T>) {
    result = std::from_chars(text.data(), end, value);
  } else {
    result = std::from_chars(text.data(), end, value, base);
  }
  if (result.ec != std::errc() || result.ptr != end || !(value >= low && value <= high)) return std::nullopt;
  return value;
}

std::optional<std::uint8_t> HexByte(std::string_view text) {
  const auto value = Number<int>(text, 0, 255, 16);
  if (!value) return std::nullopt;
  return static_cast<std::uint8_t>(*value);
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

/// Splits "word=value"; a word without "=" has an empty value.
std::pair<std::string_view, std::string_view> WordAndValue(std::string_view text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return {text, {}};
  return {text.substr(0, equals), text.substr(equals + 1)};
}

bool ApplyFailWord(Fault& fault, std::string_view text) {
  const auto [word, value] = WordAndValue(text);
  if (text == "noack") {
    fault.NoAck = true;
    return true;
  }
  if (word == "reg") {
    fault.Register = HexByte(value);
    return fault.Register.has_value();
  }
  if (word == "number") {
    const auto number = Number<int>(value, 1, 65535);
    fault.Number = number.value_or(0);
    return number.has_value();
  }
  if (word != "op") return false;
  for (const auto& [name, op] : operationWords) {
    if (name == value) fault.Op = op;
  }
  return fault.Op.has_value();
}

std::optional<Fault> ParseFail(std::string_view count, std::string_view words) {
  Fault fault;
  if (count.ends_with('+')) {
    fault.Onward = true;
    count.remove_suffix(1);
  }
  const auto nth = Number<int>(count, 1, 1'000'000'000);
  if (!nth) return std::nullopt;
  fault.Nth = *nth;
  while (!words.empty()) {
    words.remove_prefix(1);
    const std::size_t comma = std::min(words.find(','), words.size());
    if (!ApplyFailWord(fault, words.substr(0, comma))) return std::nullopt;
    words.remove_prefix(comma);
  }
  return fault;
}

std::optional<Fault> WithSeconds(Fault::Kind kind, std::string_view value) {
  const auto seconds = Number<double>(value, 0, 1e6);
  if (!seconds) return std::nullopt;
  Fault fault;
  fault.What = kind;
  fault.Seconds = *seconds;
  return fault;
}

std::optional<Fault> WithIndex(Fault::Kind kind, std::string_view value, int highest) {
  const auto index = Number<int>(value, 1, highest);
  if (!index) return std::nullopt;
  Fault fault;
  fault.What = kind;
  fault.Index = *index;
  return fault;
}

}  // namespace

std::optional<Fault> ParseFault(std::string_view text) {
  const auto [word, rest] = WordAndValue(text);
  if (word == "fail") {
    const std::size_t comma = std::min(rest.find(','), rest.size());
    return ParseFail(rest.substr(0, comma), rest.substr(comma));
  }
  if (word == "slow") return WithSeconds(Fault::Kind::ExtraTime, rest);
  if (word == "absent") return WithSeconds(Fault::Kind::ChipAbsent, rest);
  if (word == "stall") return WithIndex(Fault::Kind::StalledFan, rest, 4);
  if (word == "runaway") return WithIndex(Fault::Kind::RunawayFan, rest, 4);
  if (word == "diode") return WithIndex(Fault::Kind::OpenDiode, rest, 2);
  if (word == "company") {
    const auto value = HexByte(rest);
    if (!value) return std::nullopt;
    Fault fault;
    fault.What = Fault::Kind::WrongCompanyId;
    fault.Value = *value;
    return fault;
  }
  return std::nullopt;
}

void FaultPlan::Add(const Fault& fault) {
  countdowns_.push_back({fault, fault.Nth});
}

void FaultPlan::Clear() {
  countdowns_.clear();
  fired_ = 0;
}

void FaultPlan::Check(Operation op, std::uint8_t reg) {
  const Fault* failing = nullptr;
  for (Countdown& countdown : countdowns_) {
    const Fault& plan = countdown.Plan;
    if (plan.Op ? *plan.Op != op : !IsBusTransfer(op)) continue;
    const bool hasRegister = op == Operation::ReadByteData || op == Operation::WriteByteData;
    if (plan.Register && !(hasRegister && *plan.Register == reg)) continue;
    if (countdown.Left > 0) --countdown.Left;
    if (countdown.Left == 0) {
      failing = &plan;
      if (!plan.Onward) countdown.Left = -1;
    }
  }
  if (failing == nullptr) return;
  ++fired_;
  if (failing->NoAck) throw NoAcknowledge(failing->Number, failing->Text);
  throw CommsError(failing->Number, failing->Text);
}

}  // namespace krx
