// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace krx {

/// The text made safe for a terminal: control characters and invalid UTF-8 bytes are shown as "\x1B". For text from
/// files and other programs.
std::string Printable(std::string_view text);

/// The beginning of the text, at most `most` bytes followed by "...", as Printable.
std::string Excerpt(std::string_view text, std::size_t most = 60);

}  // namespace krx
