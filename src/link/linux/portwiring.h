// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace krx {

// Which pins of a printer port carry which line of the evaluation board: a table, so that another board or adapter
// needs another file and no other program.

enum class PortRegister : std::uint8_t { Data, Status, Control };

/// One bit of one port register; Inverted when a set bit means a low line.
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

/// Our own choice, to be checked against the drawing of the board at hand.
PortWiring DefaultWiring();

/// Reads a wiring:
///
///     # a comment
///     sda_out = data.7!        role = register.bit, "!" for inverted
///     ...
///     [bus mode 1]             optional: the lines of bus mode 1, all of them
///     sda_out = ...
///
/// Roles: sda_out, scl_out, sda_in (needed), scl_in, heater1_out, heater2_out, heater1_in, heater2_in. Registers:
/// data (bits 0..7), status (3..7), control (0..3). Without the second block bus mode 1 has the same lines but scl_in.
/// Throws CommsError (EINVAL) naming the line for whatever it does not understand, a pin in two roles, an output on
/// status, a needed role without a line.
PortWiring ParseWiring(const std::string& text);

/// ParseWiring of a file of at most 64 KiB; errors name the file, one that cannot be read has the system's error
/// number. What is quoted from the file is fit for a terminal.
PortWiring ReadWiringFile(const std::string& path);

}  // namespace krx
