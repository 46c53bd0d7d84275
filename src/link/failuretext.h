// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <exception>
#include <string>

namespace krx {

/// An error number of the system in words, with its symbol: "no such file or directory (ENOENT)". In our own words,
/// since the C library's text depends on the locale.
std::string SystemErrorText(int number);

/// A failure as it is shown to the user. An exception of the standard library or of another one is described in our
/// words: its own text is meant for developers.
std::string FailureText(const std::exception& error);

}  // namespace krx
