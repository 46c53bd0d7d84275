// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/nodeholder.h"

#include <fmt/format.h>
#include <unistd.h>

#include <filesystem>

#include "link/printable.h"

namespace krx {

std::string ProcessText(const KernelRoots& roots, pid_t process) {
  if (process <= 0) return "another process";
  const auto name = FirstLine(fmt::format("{}/{}/comm", roots.Proc, process));
  if (!name) return fmt::format("process {}", process);
  // A process can set its name to any bytes.
  return fmt::format("{} (process {})", Printable(*name), process);
}

std::string NodeUser(const KernelRoots& roots, const std::string& path) {
  for (const int process : NumberedEntries(roots.Proc, "")) {
    if (process == getpid()) continue;
    std::error_code error;
    const std::string files = fmt::format("{}/{}/fd", roots.Proc, process);
    for (std::filesystem::directory_iterator file(files, error), end; !error && file != end; file.increment(error)) {
      std::error_code unreadable;
      if (std::filesystem::read_symlink(file->path(), unreadable) == path) return ProcessText(roots, process);
    }
  }
  return "another program";
}

}  // namespace krx
