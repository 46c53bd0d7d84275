// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/mainmenu.h"

#include <QActionGroup>
#include <QMainWindow>
#include <QMenuBar>
#include <QTabWidget>
#include <utility>

namespace krx {

using namespace Qt::StringLiterals;

MainMenu::MainMenu(QMainWindow& window, QTabWidget& tabs, QAction& journal, bool readOnly)
    : QObject(&window), window_(window), themes_(new QActionGroup(this)) {
  QMenu* file = window.menuBar()->addMenu(u"&File"_s);
  file->addAction(u"E&xit"_s, QKeySequence(Qt::CTRL | Qt::Key_Q), &window, &QWidget::close);
  AddChipMenu(readOnly);
  AddViewMenu(tabs, journal);
  window.menuBar()->addMenu(u"&Help"_s)->addAction(u"&About"_s, this, &MainMenu::AboutRequested);
}

void MainMenu::AddChipMenu(bool readOnly) {
  QMenu* chip = window_.menuBar()->addMenu(u"&Chip"_s);
  chip->addAction(u"&Re-read Chip"_s, QKeySequence(Qt::Key_F5), this, &MainMenu::ReReadRequested)
      ->setObjectName(u"actReReadChip"_s);
  QAction* easySetup =
      chip->addAction(u"&Easy Setup"_s, QKeySequence(Qt::CTRL | Qt::Key_E), this, &MainMenu::EasySetupRequested);
  easySetup->setObjectName(u"actEasySetup"_s);
  easySetup->setEnabled(!readOnly);
  chip->addSeparator();
  chip->addAction(u"Reset Minima and &Maxima"_s, this, &MainMenu::ResetRangesRequested)
      ->setObjectName(u"actResetRanges"_s);
}

void MainMenu::AddViewMenu(QTabWidget& tabs, QAction& journal) {
  QMenu* view = window_.menuBar()->addMenu(u"&View"_s);
  for (int tab = 0; tab < tabs.count(); ++tab) {
    view->addAction(u"Show \"%1\""_s.arg(tabs.tabText(tab).trimmed()), QKeySequence(Qt::CTRL | (Qt::Key_1 + tab)),
                    &tabs, [&tabs, tab] { tabs.setCurrentIndex(tab); });
  }
  view->addSeparator();
  journal.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_J));
  view->addAction(&journal);
  view->addSeparator();
  const std::pair<QString, Theme> choices[] = {
      {u"Theme of the &System"_s, Theme::System}, {u"&Light"_s, Theme::Light}, {u"&Dark"_s, Theme::Dark}};
  for (const auto& [text, theme] : choices) {
    QAction* action = view->addAction(text, this, [this, theme = theme] { emit ThemeChosen(theme); });
    action->setCheckable(true);
    action->setData(static_cast<int>(theme));
    themes_->addAction(action);
  }
}

void MainMenu::SetTheme(Theme theme) {
  for (QAction* action : themes_->actions()) action->setChecked(action->data().toInt() == static_cast<int>(theme));
}

}  // namespace krx
