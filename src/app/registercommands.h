// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/commandhost.h"
#include "link/linknewcomport06.h"
#include "registers/registermap.h"

namespace krx {

/// How registers are printed: a table of address, value, bits and name, or one JSON object per line.
enum class RegisterFormat { Table, Json };

/// Reads and prints the registers in the given order; JSON repeats the `source` in every line. A register that cannot
/// be read is printed without a value; after several consecutive failures the rest is skipped. Returns the number of
/// failed reads.
int PrintRegisters(Link& link, const std::vector<const RegisterEntry*>& entries, RegisterFormat format,
                   const std::string& source, CommandHost& host);

/// Throws UsageError for a read-only register.
void CheckWritable(const RegisterEntry& entry);

/// Writes one register, reads it back and prints the value read; reports a difference. Throws CommsError when the write
/// failed, and CommandFailure when only the read-back failed.
void WriteRegisterValue(Link& link, const RegisterEntry& entry, std::uint8_t value, RegisterFormat format,
                        const std::string& source, CommandHost& host);

}  // namespace krx
