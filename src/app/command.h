// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "app/commandhost.h"

namespace krx {

/// The program krx5580 without its process: `arguments` without the program's name. Data goes to Out, talk to Err.
/// Returns the exit code: 0 done, 1 the bus or the output failed, 2 the command was not understood. Throws nothing.
int RunCommand(std::vector<std::string> arguments, CommandHost& host);

}  // namespace krx
