// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace krx {

/// The text as it may be shown on a terminal: control characters and bytes that are no UTF-8 as "\x1B". For what comes
/// from files and from other programs.
std::string Printable(std::string_view text);

/// The beginning of the text, at most `most` bytes and then "...", as Printable.
std::string Excerpt(std::string_view text, std::size_t most = 60);

}  // namespace krx
