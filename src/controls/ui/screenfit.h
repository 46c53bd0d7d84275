// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>

class QWidget;

namespace krx {

/// The wanted size, or what of it the window's screen has room for beside the frame that the window manager adds.
QSize FittedToScreen(const QWidget& window, const QSize& wanted);

}  // namespace krx
