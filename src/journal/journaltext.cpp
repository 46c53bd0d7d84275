// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/journaltext.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>

#include "registers/boarddevices.h"
#include "registers/fields.h"
#include "registers/registermap.h"

namespace krx {
namespace {

std::string Hex(std::uint8_t byte) {
  return fmt::format("{:02X}h", byte);
}

bool OfRegister(const JournalEntry& entry) {
  return entry.Operation == BusOperation::ReadRegister || entry.Operation == BusOperation::WriteRegister;
}

std::string Transfer(BusOperation operation) {
  switch (operation) {
    case BusOperation::ReadRegister:
      return "read";
    case BusOperation::WriteRegister:
      return "write";
    case BusOperation::SendByte:
      return "send byte";
    case BusOperation::ReceiveByte:
      return "receive byte";
    case BusOperation::ControlByte:
      return "set control byte";
    case BusOperation::StatusByte:
      return "read status byte";
  }
  return {};
}

std::string Device(const JournalEntry& entry) {
  if (entry.Operation == BusOperation::ControlByte || entry.Operation == BusOperation::StatusByte) return "Board port";
  if (!entry.PrinterPort) return "SMBus " + Hex(entry.Address);
  // The chip's address is shown in the 7-bit form everywhere; a switch device by its designator.
  if (OfRegister(entry)) return "Board " + Hex(static_cast<std::uint8_t>(entry.Address >> 1));
  const auto name = SwitchDeviceName(entry.Address);
  return "Board " + (name ? std::string(*name) : Hex(entry.Address));
}

std::string Register(const JournalEntry& entry) {
  if (!OfRegister(entry)) return {};
  const RegisterEntry* const known = LookupAddress(entry.Register);
  return known == nullptr ? Hex(entry.Register) : fmt::format("{} {}", Hex(entry.Register), known->PanelName);
}

/// The changes made by a write, by field.
std::string Change(const JournalEntry& entry) {
  if (entry.Operation != BusOperation::WriteRegister) return {};
  return ChangeText(entry.Register, entry.OldValue, entry.Value);
}

std::string Result(const JournalEntry& entry) {
  if (entry.Skipped) return "suppressed (read-only)";
  return entry.Failure.empty() ? "ok" : entry.Failure;
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return lower;
}

}  // namespace

std::array<std::string, journalColumnCount> JournalColumns(const JournalEntry& entry) {
  const bool noValue = !entry.Failure.empty() && !IsWrite(entry);
  return {fmt::format("{:.3f}", entry.Seconds),
          Device(entry),
          Transfer(entry.Operation),
          Register(entry),
          entry.OldValue ? Hex(*entry.OldValue) : std::string(),
          noValue ? std::string() : Hex(entry.Value),
          Change(entry),
          entry.Origin,
          Result(entry)};
}

std::string JournalLine(const JournalEntry& entry) {
  const auto columns = JournalColumns(entry);
  return fmt::format("{}", fmt::join(columns, "\t"));
}

bool JournalMatches(const JournalEntry& entry, const JournalFilter& filter) {
  if (filter.WritesOnly && !IsWrite(entry)) return false;
  if (filter.Text.empty()) return true;
  const std::string wanted = Lower(filter.Text);
  const auto columns = JournalColumns(entry);
  return std::any_of(columns.begin(), columns.end(),
                     [&](const std::string& column) { return Lower(column).find(wanted) != std::string::npos; });
}

}  // namespace krx
