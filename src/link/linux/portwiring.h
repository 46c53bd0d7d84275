// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace krx {

// Pin assignment between the printer port and the evaluation board. A table, so that another board or adapter needs
// only another file.

enum class PortRegister : std::uint8_t { Data, Status, Control };

/// One bit of a port register; Inverted when a set bit means a low line.
struct PortLine {
  PortRegister Register = PortRegister::Data;
  std::uint8_t Bit = 0;
  bool Inverted = false;
  bool operator==(const PortLine&) const = default;
};

/// The lines of one bus mode. A line without an entry is not wired: without SclIn the clock cannot be read back.
struct PortLines {
  PortLine SdaOut, SclOut, SdaIn;
  std::optional<PortLine> SclIn, Heater1Out, Heater2Out, Heater1In, Heater2In;
  bool operator==(const PortLines&) const = default;
};

/// The two tables, by bus mode.
struct PortWiring {
  std::array<PortLines, 2> Modes;
  bool operator==(const PortWiring&) const = default;
};

/// The built-in assignment; to be checked against the schematic of the board in use.
PortWiring DefaultWiring();

/// Parses a wiring file:
///
///     # a comment
///     sda_out = data.7!        role = register.bit, "!" for inverted
///     ...
///     [bus mode 1]             optional: all lines of bus mode 1
///     sda_out = ...
///
/// Roles: sda_out, scl_out, sda_in (required), scl_in, heater1_out, heater2_out, heater1_in, heater2_in. Registers:
/// data (bits 0..7), status (3..7), control (0..3). Without the second section bus mode 1 has the same lines except
/// scl_in. Throws CommsError (EINVAL) naming the line for a syntax error, a pin with two roles or an output on status,
/// and one for a required role that is missing.
PortWiring ParseWiring(const std::string& text);

/// ParseWiring of a file of at most 64 KiB; errors name the file, and a read error carries the system's error number.
/// Text quoted from the file is made safe for a terminal.
PortWiring ReadWiringFile(const std::string& path);

}  // namespace krx
