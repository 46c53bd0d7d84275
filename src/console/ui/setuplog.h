// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace krx {

/// The actions of Easy Setup in their order, one a line.
QString SetupLogText();

}  // namespace krx
