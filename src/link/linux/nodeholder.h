// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <string>

#include "link/linux/kernel.h"

namespace krx {

/// "krx5580-console (process 4711)"; "process 4711" where the kernel does not tell its name, "another process" for one
/// without a number.
std::string ProcessText(const KernelRoots& roots, pid_t process);

/// Another process that has the device node open, as ProcessText; "another program" where /proc does not show it,
/// since it tells the open files of other users' processes to nobody but root.
std::string NodeUser(const KernelRoots& roots, const std::string& path);

}  // namespace krx
