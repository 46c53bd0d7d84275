// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace krx {

/// A text as a JSON string, quotes included. Names come from the kernel and from files: what is not well-formed UTF-8
/// becomes the replacement character, a byte each.
std::string JsonText(std::string_view text);

}  // namespace krx
