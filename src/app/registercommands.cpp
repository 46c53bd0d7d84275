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

// On a hung bus a transfer takes up to a second, so the rest of a long list is skipped.
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
      host.Err() << fmt::format("krx5580: {} consecutive failures, remaining registers skipped\n", inARow);
      break;
    }
  }
  return failures;
}

void CheckWritable(const RegisterEntry& entry) {
  if (entry.Access != Access::ReadOnly) return;
  throw UsageError(fmt::format("{:02X}h \"{}\" is read-only", entry.Address, entry.PanelName));
}

void WriteRegisterValue(Link& link, const RegisterEntry& entry, std::uint8_t value, RegisterFormat format,
                        const std::string& source, CommandHost& host) {
  WriteByte(link, entry.Address, value);
  std::uint8_t now = 0;
  try {
    now = ReadByte(link, entry.Address);
  } catch (const CommsError& error) {
    host.Out() << RegisterLine(entry, std::nullopt, format, source) << '\n';
    throw CommandFailure(fmt::format("wrote 0x{:02X} to {:02X}h, but reading it back failed: {}", value, entry.Address,
                                     error.BoxText()));
  }
  host.Out() << RegisterLine(entry, now, format, source) << '\n';
  if (now != value) {
    host.Err() << fmt::format("krx5580: wrote 0x{:02X} to {:02X}h, but it reads 0x{:02X}\n", value, entry.Address, now);
  }
}

}  // namespace krx
