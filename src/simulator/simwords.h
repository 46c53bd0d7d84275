// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "simulator/simfaults.h"
#include "simulator/simoptions.h"

namespace krx {

/// Parses a fault of the command line; nullopt for anything else, and `why` then says what is allowed, with the range
/// of the number. A word, "=", a number, then for "fail" any of the further words, separated by commas:
///
///   fail=N      the Nth bus transfer fails, "fail=N+" all from the Nth on
///     ,op=NAME    count only read, write, send, receive, control, status, complete, mode, port or report
///     ,reg=HH     count only transfers of register HH (hexadecimal)
///     ,noack      fail with "no acknowledge"
///     ,number=E   fail with error number E
///   slow=S      every transfer takes S seconds longer
///   absent=S    no chip answers from S seconds after the start
///   stall=F     fan F is stalled; runaway=F: fan F never stops; hunt=F: fan F runs unsteadily (1..4)
///   diode=D     remote diode D is open (1, 2)
///   company=HH  the company ID reads HH (hexadecimal)
///   stuck=RR    writes do not change register RR (hexadecimal); stuck=RR:MM: only its bits MM are stuck
std::optional<Fault> ParseFault(std::string_view text, std::string* why = nullptr);

/// `options` modified by a comma-separated list, or nullopt, and `why` then says what is allowed:
///
///   vid        VID bits 4..0 follow the switches U3A to U3E
///   pulses=N   actual pulses per revolution of the fans; pulses=N:N:N:N: one number per fan
///   ports=N    printer ports, each with a board; the chip is on the first
///   load=W     peak processor load in W
///   noise=X    scale of the measurement noise
std::optional<SimOptions> ParseBoard(SimOptions options, std::string_view text, std::string* why = nullptr);

}  // namespace krx
