// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace krx {

/// Registers the files that are compiled into the program, the board's picture and the manual. They lie in a static
/// library, where nothing but a call keeps them. Any number of calls.
void InitResources();

}  // namespace krx
