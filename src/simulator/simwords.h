// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "simulator/simfaults.h"
#include "simulator/simoptions.h"

namespace krx {

/// Reads a fault as the command line takes it; nullopt for anything else, and `why` then says what would do, with the
/// range of the number. A word, "=", a number, then for "fail" any of the further words, separated by commas:
///
///   fail=N      the Nth bus transfer fails, "fail=N+" all from the Nth on
///     ,op=NAME    counts read, write, send, receive, control, status, complete, mode, port or report instead
///     ,reg=HH     counts transfers of the register HH (hexadecimal)
///     ,noack      as "no acknowledge"
///     ,number=E   with the error number E
///   slow=S      every transfer takes S seconds longer
///   absent=S    no chip answers from S seconds after the start
///   stall=F     fan F stands still; runaway=F: fan F never stops; hunt=F: fan F turns unsteadily (1..4)
///   diode=D     remote diode D is open (1, 2)
///   company=HH  the company id reads HH (hexadecimal)
///   stuck=RR    no write changes the register RR (hexadecimal); stuck=RR:MM: not the bits MM of it
std::optional<Fault> ParseFault(std::string_view text, std::string* why = nullptr);

/// `options` as a list of words changes them, or nullopt, and `why` then says what would do. Separated by commas:
///
///   vid        VID bits 4..0 follow the switches U3A to U3E
///   pulses=N   pulses a revolution that the fans really give; pulses=N:N:N:N: one number a fan
///   ports=N    printer ports, each with a board; the chip is at the first
///   load=W     peak of the processor's load in W
///   noise=X    scales the noise of all measurements
std::optional<SimOptions> ParseBoard(SimOptions options, std::string_view text, std::string* why = nullptr);

}  // namespace krx
