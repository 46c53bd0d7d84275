// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include "console/ui/helpwindow.h"
#include "controls/ui/palette.h"

class QAction;
class QActionGroup;
class QMainWindow;
class QTabWidget;

namespace krx {

/// The main window's menus. A tab is shown by the menu itself; all else is a wish of the user.
class MainMenu : public QObject {
  Q_OBJECT
 public:
  /// journal: shows and hides the bus journal. readOnly: what would write is disabled. The window owns the menu.
  MainMenu(QMainWindow& window, QTabWidget& tabs, QAction& journal, bool readOnly);

  /// Ticks the theme.
  void SetTheme(Theme theme);

 signals:
  void ReReadRequested();
  void EasySetupRequested();
  void ResetRangesRequested();
  void AboutRequested();
  void HelpRequested(krx::HelpPage page);
  void PictureRequested();
  void ThemeChosen(krx::Theme theme);

 private:
  void AddFileMenu();
  void AddChipMenu(bool readOnly);
  void AddViewMenu(QTabWidget& tabs, QAction& journal);
  void AddHelpMenu();

  QMainWindow& window_;
  QActionGroup* themes_;
};

}  // namespace krx
