// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "app/commandhost.h"

namespace krx {

/// The program krx5580 without its process: `arguments` without the program's name. Data goes to Out, messages to Err.
/// Returns the exit code: 0 success, 1 bus or output failure, 2 usage error. Throws nothing.
int RunCommand(std::vector<std::string> arguments, CommandHost& host);

}  // namespace krx
