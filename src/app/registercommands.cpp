// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/registercommands.h"

#include <fmt/format.h>

#include <optional>
#include <string>

#include "app/jsontext.h"
#include "link/commserror.h"
#include "link/registeraccess.h"

namespace krx {
namespace {

// A bus that hangs costs up to a second a transfer, so a list of registers is not read to its end on one.
constexpr int failuresInARow = 3;

std::string RegisterLine(const RegisterEntry& entry, std::optional<std::uint8_t> value, RegisterFormat format,
                         const std::string& source) {
  if (format == RegisterFormat::Json) {
    return fmt::format(R"({{"address":"0x{:02X}","name":{},"value":{},"source":{}}})", entry.Address,
                       JsonText(entry.PanelName), value ? std::to_string(*value) : "null", JsonText(source));
  }
  if (!value) return fmt::format("0x{:02X}  ----  --------  {}", entry.Address, entry.PanelName);
  return fmt::format("0x{:02X}  0x{:02X}  {:08b}  {}", entry.Address, *value, *value, entry.PanelName);
}

}  // namespace

int PrintRegisters(Link& link, const std::vector<const RegisterEntry*>& entries, RegisterFormat format,
                   const std::string& source, CommandHost& host) {
  int failures = 0;
  int inARow = 0;
  for (const RegisterEntry* entry : entries) {
    if (host.StopRequested()) throw CommandFailure("interrupted");
    std::optional<std::uint8_t> value;
    try {
      value = ReadByte(link, entry->Address);
      inARow = 0;
    } catch (const CommsError& error) {
      ++failures;
      ++inARow;
      host.Err() << fmt::format("krx5580: {:02X}h: {}\n", entry->Address, error.BoxText());
    }
    host.Out() << RegisterLine(*entry, value, format, source) << '\n';
    if (inARow == failuresInARow && entry != entries.back()) {
      host.Err() << fmt::format("krx5580: {} failures in a row, the rest is left unread\n", inARow);
      break;
    }
  }
  return failures;
}

void CheckWritable(const RegisterEntry& entry) {
  if (entry.Access != Access::ReadOnly) return;
  throw UsageError(fmt::format("{:02X}h \"{}\" is only read", entry.Address, entry.PanelName));
}

void WriteRegisterValue(Link& link, const RegisterEntry& entry, std::uint8_t value, RegisterFormat format,
                        const std::string& source, CommandHost& host) {
  WriteByte(link, entry.Address, value);
  std::uint8_t now = 0;
  try {
    now = ReadByte(link, entry.Address);
  } catch (const CommsError& error) {
    host.Out() << RegisterLine(entry, std::nullopt, format, source) << '\n';
    throw CommandFailure(fmt::format("{:02X}h was written 0x{:02X}, but it could not be read back: {}", entry.Address,
                                     value, error.BoxText()));
  }
  host.Out() << RegisterLine(entry, now, format, source) << '\n';
  if (now != value) {
    host.Err() << fmt::format("krx5580: {:02X}h was written 0x{:02X} and reads 0x{:02X}\n", entry.Address, value, now);
  }
}

}  // namespace krx
