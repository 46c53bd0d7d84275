// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <string>

#include "link/linux/kernel.h"

namespace krx {

/// "krx5580-console (process 4711)"; "process 4711" when its name is not available, "another process" when its number
/// is not.
std::string ProcessText(const KernelRoots& roots, pid_t process);

/// Another process that has the device node open, as ProcessText; "another program" when /proc does not show it, since
/// only root can see the open files of other users' processes.
std::string NodeUser(const KernelRoots& roots, const std::string& path);

}  // namespace krx
