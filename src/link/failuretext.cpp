// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/failuretext.h"

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <new>
#include <system_error>
#include <utility>

#include "link/commserror.h"
#include "link/linux/kernel.h"

namespace krx {
namespace {

constexpr std::array<std::pair<int, const char*>, 16> systemErrors{{
    {ENOENT, "no such file or directory"},
    {EACCES, "permission denied"},
    {EPERM, "operation not permitted"},
    {EISDIR, "is a directory"},
    {ENOTDIR, "not a directory"},
    {ENAMETOOLONG, "name too long"},
    {ELOOP, "too many symbolic links"},
    {ENOSPC, "no space left on the device"},
    {EDQUOT, "disk quota exceeded"},
    {EFBIG, "file too large"},
    {EROFS, "read-only file system"},
    {EIO, "input/output error"},
    {ENODEV, "no such device"},
    {EMFILE, "too many open files"},
    {ENFILE, "too many open files"},
    {ENOMEM, "not enough memory"},
}};

}  // namespace

std::string SystemErrorText(int number) {
  const char* text = "system error";
  for (const auto& [known, words] : systemErrors) {
    if (known == number) text = words;
  }
  return fmt::format("{} ({})", text, ErrorSymbol(number));
}

std::string FailureText(const std::exception& error) {
  if (const auto* comms = dynamic_cast<const CommsError*>(&error)) return comms->BoxText();
  if (dynamic_cast<const Failure*>(&error) != nullptr) return error.what();
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) return "not enough memory";
  if (const auto* system = dynamic_cast<const std::system_error*>(&error)) {
    return SystemErrorText(system->code().value());
  }
  return "internal error";
}

}  // namespace krx
