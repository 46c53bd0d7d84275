// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLineEdit;

namespace krx {

/// Tells a screen reader what the program's own widgets are: pictures, charts, gauges. Once, before the first window.
void InstallAccessibility();

/// Gives the box the toolkit's button that clears it, with a name.
void AddClearButton(QLineEdit& box);

}  // namespace krx
