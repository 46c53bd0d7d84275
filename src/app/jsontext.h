// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace krx {

/// A text as a JSON string, quotes included. Names come from the kernel and from files: each byte that is not part of
/// well-formed UTF-8 becomes the replacement character.
std::string JsonText(std::string_view text);

}  // namespace krx
