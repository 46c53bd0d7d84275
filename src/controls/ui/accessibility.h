// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace krx {

/// Tells a screen reader what the program's own widgets are: pictures, charts, gauges. Once, before the first window.
void InstallAccessibility();

}  // namespace krx
