// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QWidget;

namespace krx {

class UserDialogs;

/// Asks for a name and saves a picture of the window as it stands. The line for the status bar; empty when nothing was
/// saved.
QString SaveWindowPicture(QWidget& window, UserDialogs& dialogs);

}  // namespace krx
