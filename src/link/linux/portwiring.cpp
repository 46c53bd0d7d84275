// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/portwiring.h"

#include <fmt/format.h>

#include <cerrno>
#include <fstream>
#include <map>
#include <sstream>
#include <string_view>

#include "link/commserror.h"
#include "link/failuretext.h"
#include "link/printable.h"

namespace krx {

namespace {

// A wiring file has about ten lines; a longer one is a different file or an endless device.
constexpr std::size_t mostBytes = std::size_t{64} * 1024;

struct RegisterPins {
  const char* Name;
  PortRegister Register;
  int FirstBit, LastBit;
};

// The bits that are connector pins; the others are internal to the port.
constexpr std::array registerPins{
    RegisterPins{"data", PortRegister::Data, 0, 7},
    RegisterPins{"status", PortRegister::Status, 3, 7},
    RegisterPins{"control", PortRegister::Control, 0, 3},
};

struct Role {
  const char* Name;
  bool Output, Needed;
};

constexpr std::array roles{
    Role{"sda_out", true, true},      Role{"scl_out", true, true},      Role{"sda_in", false, true},
    Role{"scl_in", false, false},     Role{"heater1_out", true, false}, Role{"heater2_out", true, false},
    Role{"heater1_in", false, false}, Role{"heater2_in", false, false},
};

using Table = std::map<std::string, PortLine, std::less<>>;

[[noreturn]] void Refuse(int line, const std::string& why) {
  throw CommsError(EINVAL, fmt::format("line {}: {}", line, why));
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

PortLine ParseLine(std::string_view text, int lineNumber) {
  const auto malformed = [&] {
    Refuse(lineNumber,
           fmt::format("\"{}\" is not a pin; use register.bit, such as data.7 or status.7!", Excerpt(text)));
  };
  PortLine line;
  std::string_view pin = text;
  if (pin.ends_with('!')) {
    line.Inverted = true;
    pin.remove_suffix(1);
  }
  const auto point = pin.find('.');
  if (point == std::string_view::npos || pin.size() != point + 2) malformed();
  const int bit = pin.back() - '0';
  for (const RegisterPins& pins : registerPins) {
    if (pin.substr(0, point) != pins.Name) continue;
    if (bit < pins.FirstBit || bit > pins.LastBit) {
      Refuse(lineNumber, fmt::format("{} has bits {} to {} only", pins.Name, pins.FirstBit, pins.LastBit));
    }
    line.Register = pins.Register;
    line.Bit = static_cast<std::uint8_t>(bit);
    return line;
  }
  malformed();
  return line;
}

void ParseAssignment(std::string_view text, int lineNumber, Table& table) {
  const auto equals = text.find('=');
  if (equals == std::string_view::npos)
    Refuse(lineNumber, fmt::format("\"{}\" does not have the form \"role = register.bit\"", Excerpt(text)));
  const std::string name(Trimmed(text.substr(0, equals)));
  const PortLine line = ParseLine(Trimmed(text.substr(equals + 1)), lineNumber);
  const Role* role = nullptr;
  for (const Role& candidate : roles) {
    if (name == candidate.Name) role = &candidate;
  }
  if (role == nullptr) Refuse(lineNumber, fmt::format("unknown role \"{}\"", Excerpt(name)));
  if (role->Output && line.Register == PortRegister::Status) {
    Refuse(lineNumber, fmt::format("{} cannot be on status: these pins are inputs", name));
  }
  for (const auto& [other, taken] : table) {
    if (other == name) Refuse(lineNumber, fmt::format("{} is assigned twice", name));
    if (taken.Register == line.Register && taken.Bit == line.Bit) {
      Refuse(lineNumber, fmt::format("{} and {} are on the same pin", other, name));
    }
  }
  table[name] = line;
}

PortLines FromTable(const Table& table, int mode) {
  for (const Role& role : roles) {
    if (role.Needed && !table.contains(role.Name)) {
      throw CommsError(EINVAL, fmt::format("bus mode {}: {} is missing", mode, role.Name));
    }
  }
  const auto optionalLine = [&](const char* name) {
    const auto found = table.find(name);
    return found == table.end() ? std::nullopt : std::optional(found->second);
  };
  return {table.at("sda_out"),        table.at("scl_out"),         table.at("sda_in"),
          optionalLine("scl_in"),     optionalLine("heater1_out"), optionalLine("heater2_out"),
          optionalLine("heater1_in"), optionalLine("heater2_in")};
}

PortWiring WithoutClockReadBack(const PortLines& lines) {
  PortWiring wiring{{lines, lines}};
  wiring.Modes[1].SclIn.reset();
  return wiring;
}

}  // namespace

PortWiring DefaultWiring() {
  using enum PortRegister;
  return WithoutClockReadBack({.SdaOut = {Data, 7, true},
                               .SclOut = {Data, 6, true},
                               .SdaIn = {Status, 7, true},
                               .SclIn = PortLine{Status, 6, false},
                               .Heater1Out = PortLine{Data, 4, false},
                               .Heater2Out = PortLine{Data, 5, false},
                               .Heater1In = PortLine{Status, 4, false},
                               .Heater2In = PortLine{Status, 5, false}});
}

PortWiring ParseWiring(const std::string& text) {
  std::array<Table, 2> tables;
  int mode = 0;
  std::istringstream input(text);
  std::string raw;
  for (int lineNumber = 1; std::getline(input, raw); ++lineNumber) {
    const std::string_view line = Trimmed(std::string_view(raw).substr(0, raw.find('#')));
    if (line.empty()) continue;
    if (line.front() != '[') {
      ParseAssignment(line, lineNumber, tables[static_cast<std::size_t>(mode)]);
    } else if (line == "[bus mode 1]" && mode == 0) {
      mode = 1;
    } else {
      Refuse(lineNumber, fmt::format("unknown section \"{}\"; only [bus mode 1] is allowed, once", Excerpt(line)));
    }
  }
  PortWiring wiring = WithoutClockReadBack(FromTable(tables[0], 0));
  if (mode == 1) wiring.Modes[1] = FromTable(tables[1], 1);
  return wiring;
}

PortWiring ReadWiringFile(const std::string& path) {
  const std::string name = Printable(path);
  errno = 0;
  std::ifstream file(path);
  std::string text(mostBytes + 1, '\0');
  try {
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
  } catch (const std::ios_base::failure&) {  // a directory can be opened, but not read
    file.setstate(std::ios::badbit);
  }
  if (!file.is_open() || file.bad()) {
    const int number = errno != 0 ? errno : EIO;
    throw CommsError(number, fmt::format("cannot read the wiring file {}: {}", name, SystemErrorText(number)));
  }
  text.resize(static_cast<std::size_t>(file.gcount()));
  if (text.size() > mostBytes) throw CommsError(EFBIG, fmt::format("wiring file {}: larger than 64 KiB", name));
  try {
    return ParseWiring(text);
  } catch (const CommsError& error) {
    throw CommsError(error.Number(), fmt::format("wiring file {}: {}", name, error.what()));
  }
}

}  // namespace krx
