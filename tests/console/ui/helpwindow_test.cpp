// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/helpwindow.h"

#include <gtest/gtest.h>

#include <QTableWidget>
#include <QTextBrowser>

#include "support/formbench.h"

namespace krx {
namespace {

TEST(HelpWindow, F1ShowsTheManualAndThePageBesideItHasEveryShortcutOfTheMenus) {
  FormBench console;
  console.Open();
  console.Find<QAction>("actManual")->trigger();
  auto* const help = console.Find<HelpWindow>("frmHelp");
  EXPECT_TRUE(console.Find<QTextBrowser>("txtManual")->isVisible());
  EXPECT_TRUE(console.Find<QTextBrowser>("txtManual")->toPlainText().contains("--medium simulated"));
  console.Find<QAction>("actShortcuts")->trigger();
  EXPECT_EQ(console.Find<HelpWindow>("frmHelp"), help) << "one window";
  auto* const table = console.Find<QTableWidget>("tblShortcuts");
  EXPECT_TRUE(table->isVisible());
  QStringList keys;
  for (int row = 0; row < table->rowCount(); ++row) keys << table->item(row, 1)->text();
  for (const QAction* action : console.Form->findChildren<QAction*>()) {
    const QString key = action->shortcut().toString();
    const bool page = key.startsWith("Ctrl+") && key.back().isDigit();
    if (key.isEmpty()) continue;
    EXPECT_TRUE(keys.contains(page ? "Ctrl+1 ... Ctrl+4" : key)) << key.toStdString();
  }
}

TEST(MainMenu, SavesAPictureOfTheWindow) {
  FormBench console;
  console.Open();
  QTemporaryDir folder;
  console.Dialogs.Files = {folder.filePath("bench").toStdString()};
  console.Find<QAction>("actSavePicture")->trigger();
  EXPECT_EQ(QImage(folder.filePath("bench.png")).size(), console.Form->size());
}

}  // namespace
}  // namespace krx
