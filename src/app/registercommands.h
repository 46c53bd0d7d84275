// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/commandhost.h"
#include "link/linknewcomport06.h"
#include "registers/registermap.h"

namespace krx {

/// How registers are printed: a table of address, value, bits and name, or one JSON object a line.
enum class RegisterFormat { Table, Json };

/// Reads and prints the registers in their order; JSON names the `source` in every line. One that cannot be read is
/// printed without a value, and after several failures in a row the rest is left unread. Returns how many could not be
/// read.
int PrintRegisters(Link& link, const std::vector<const RegisterEntry*>& entries, RegisterFormat format,
                   const std::string& source, CommandHost& host);

/// Throws UsageError for a register that is only read.
void CheckWritable(const RegisterEntry& entry);

/// Writes one register, reads it back and prints what it then holds; says so when that differs. Throws CommsError when
/// nothing was written, and CommandFailure when only the reading back failed.
void WriteRegisterValue(Link& link, const RegisterEntry& entry, std::uint8_t value, RegisterFormat format,
                        const std::string& source, CommandHost& host);

}  // namespace krx
