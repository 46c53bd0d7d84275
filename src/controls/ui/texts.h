// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <string_view>

namespace krx {

/// A text of the headless code, in UTF-8, as the windows show it.
QString QtText(std::string_view text);

}  // namespace krx
