// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/mainmenu.h"

#include <QActionGroup>
#include <QMainWindow>
#include <QMenuBar>
#include <QTabWidget>
#include <utility>

namespace krx {

MainMenu::MainMenu(QMainWindow& window, QTabWidget& tabs, QAction& journal, bool readOnly)
    : QObject(&window), window_(window), themes_(new QActionGroup(this)) {
  QMenu* file = window.menuBar()->addMenu(tr("&File"));
  file->addAction(tr("E&xit"), QKeySequence(Qt::CTRL | Qt::Key_Q), &window, &QWidget::close);
  AddChipMenu(readOnly);
  AddViewMenu(tabs, journal);
  window.menuBar()->addMenu(tr("&Help"))->addAction(tr("&About"), this, &MainMenu::AboutRequested);
}

void MainMenu::AddChipMenu(bool readOnly) {
  QMenu* chip = window_.menuBar()->addMenu(tr("&Chip"));
  chip->addAction(tr("&Re-read Chip"), QKeySequence(Qt::Key_F5), this, &MainMenu::ReReadRequested)
      ->setObjectName(QStringLiteral("actReReadChip"));
  QAction* easySetup =
      chip->addAction(tr("&Easy Setup"), QKeySequence(Qt::CTRL | Qt::Key_E), this, &MainMenu::EasySetupRequested);
  easySetup->setObjectName(QStringLiteral("actEasySetup"));
  easySetup->setEnabled(!readOnly);
  chip->addSeparator();
  chip->addAction(tr("Reset Minima and &Maxima"), this, &MainMenu::ResetRangesRequested)
      ->setObjectName(QStringLiteral("actResetRanges"));
}

void MainMenu::AddViewMenu(QTabWidget& tabs, QAction& journal) {
  QMenu* view = window_.menuBar()->addMenu(tr("&View"));
  for (int tab = 0; tab < tabs.count(); ++tab) {
    view->addAction(tr("Show \"%1\"").arg(tabs.tabText(tab).trimmed()), QKeySequence(Qt::CTRL | (Qt::Key_1 + tab)),
                    &tabs, [&tabs, tab] { tabs.setCurrentIndex(tab); });
  }
  view->addSeparator();
  journal.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_J));
  view->addAction(&journal);
  view->addSeparator();
  const std::pair<QString, Theme> choices[] = {
      {tr("Theme of the &System"), Theme::System}, {tr("&Light"), Theme::Light}, {tr("&Dark"), Theme::Dark}};
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
