// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/userdialogs.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <stdexcept>

#include "link/commserror.h"
#include "support/scripteddialogs.h"

namespace krx {
namespace {

TEST(UserDialogs, FiltersAreTranslatedForTheToolkit) {
  EXPECT_EQ(ToolkitFilter("Text Files (*.sav)|*.sav"), "Text Files (*.sav)");
  EXPECT_EQ(ToolkitFilter("Excel Files (*.xls)|*.xls|All|*"), "Excel Files (*.xls);;All (*)");
}

TEST(UserDialogs, AnActionThatFailsShowsOneBoxAfterItHasReleasedWhatItHeld) {
  ScriptedDialogs dialogs;
  int held = 0;
  int heldWhileOpen = -1;
  dialogs.WhileOpen = [&] { heldWhileOpen = held; };
  EXPECT_FALSE(RunUserAction(dialogs, [&] {
    const auto guard = std::shared_ptr<void>(&held, [](void* count) { --*static_cast<int*>(count); });
    ++held;
    throw Overflow();
  }));
  EXPECT_EQ(heldWhileOpen, 0);
  EXPECT_FALSE(RunUserAction(dialogs, [] { throw std::runtime_error("disk full"); }));
  EXPECT_TRUE(RunUserAction(dialogs, [] {}));
  EXPECT_EQ(dialogs.Shown, (std::vector<std::string>{"critical|Error: 6, Overflow|", "critical|disk full|"}));
}

TEST(UserDialogs, ABoxShowsItsTextPlainUnderItsWholeTitleOrTheProgramsName) {
  QGuiApplication::setApplicationDisplayName("The Program");
  QtUserDialogs dialogs;
  std::vector<std::string> seen;
  const auto look = [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    seen.push_back(std::to_string(box->icon()) + box->windowTitle().toStdString() + "|" + box->text().toStdString() +
                   (box->textFormat() == Qt::PlainText ? "" : "?"));
    const QFontMetrics font = box->fontMetrics();  // the frame has an icon and buttons beside the title
    EXPECT_GT(box->width(), font.horizontalAdvance(box->windowTitle()) + 5 * font.height());
    box->accept();
  };
  QTimer::singleShot(0, look);
  dialogs.Critical("<b>1</b>");
  QTimer::singleShot(0, look);
  dialogs.Exclamation("2", "There was a Problem with a long name, much longer than what there is to say of it!");
  QTimer::singleShot(0, look);
  dialogs.Information("3");
  EXPECT_EQ(seen, (std::vector<std::string>{
                      "3The Program|<b>1</b>",
                      "2There was a Problem with a long name, much longer than what there is to say of it!|2",
                      "1The Program|3"}));
  QGuiApplication::setApplicationDisplayName({});
}

TEST(UserDialogs, AQuestionIsAnsweredYesByItsButtonOnly) {
  QtUserDialogs dialogs;
  const struct {
    Qt::Key Key;
    bool Yes;
  } rows[] = {{Qt::Key_Escape, false}, {Qt::Key_Return, false}, {Qt::Key_Space, true}};
  for (const auto& row : rows) {
    QTimer::singleShot(0, [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      for (QAbstractButton* button : box->buttons()) {
        if (row.Yes && button->text() == "Replace") button->setFocus();
      }
      QTest::keyClick(box->focusWidget(), row.Key);
    });
    EXPECT_EQ(dialogs.Ask("run.csv exists. Replace it?", "Replace"), row.Yes) << row.Key;
  }
}

}  // namespace
}  // namespace krx
