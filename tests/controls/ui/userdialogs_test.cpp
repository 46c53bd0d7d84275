// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/userdialogs.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QTest>
#include <QTimer>
#include <stdexcept>

#include "controls/ui/displayguard.h"
#include "controls/ui/gateddialogs.h"
#include "link/commserror.h"
#include "link/registeraccess.h"
#include "support/livebench.h"
#include "support/scripteddialogs.h"

namespace krx {
namespace {

TEST(UserDialogs, FiltersAreTranslatedForTheToolkit) {
  EXPECT_EQ(ToolkitFilter("Text Files (*.sav)|*.sav"), "Text Files (*.sav)");
  EXPECT_EQ(ToolkitFilter("Excel Files (*.xls)|*.xls|All|*"), "Excel Files (*.xls);;All (*)");
}

TEST(UserDialogs, AnActionThatFailsShowsOneBoxAfterItHasReleasedWhatItHeld) {
  ScriptedDialogs dialogs;
  bool held = false;
  dialogs.WhileOpen = [&] { EXPECT_FALSE(held); };
  EXPECT_FALSE(RunUserAction(dialogs, [&] {
    const QScopedValueRollback guard(held, true);
    throw Overflow();
  }));
  EXPECT_FALSE(RunUserAction(dialogs, [] { throw std::runtime_error("disk full"); }));
  EXPECT_TRUE(RunUserAction(dialogs, [] {}));
  EXPECT_EQ(dialogs.Shown, (std::vector<std::string>{"critical|Error: 6, Overflow|", "critical|disk full|"}));
}

struct GateBench : LiveBench {
  GateBench() {
    Boxes.WhileOpen = [this] { Inside += Bus.TransferInProgress() || Turns.TurnRunning() ? 1 : 0; };
  }
  ScriptedDialogs Boxes;
  GatedDialogs Gate{Boxes, Pump, [this] { return Bus.TransferInProgress() || Turns.TurnRunning(); }};
  int Inside = 0;
};
using Shown = std::vector<std::string>;

TEST(GatedDialogs, ABoxOpensOnceNeitherTransferNorTurnIsUnderWay) {
  GateBench bench;
  bench.Gate.Critical("at once");
  EXPECT_EQ(bench.Boxes.Shown, (Shown{"critical|at once|"}));
  QTimer::singleShot(1, [&] { bench.Gate.Critical("in a transfer"); });
  for (int i = 0; i < 3; ++i) ReadByte(bench.Bus, 0x26);
  EXPECT_EQ(bench.Boxes.Shown.size(), 1U);
  int ticks = 0;
  ChipTimer timer(bench.Turns, "t", 1, [&] {
    if (++ticks == 1) bench.Gate.Exclamation("in a turn", "its title");
    for (int i = 0; i < 3; ++i) ReadByte(bench.Bus, 0x26);
  });
  int behind = 0;
  bench.Boxes.WhileOpen = [&, look = bench.Boxes.WhileOpen] {
    look();
    behind -= ticks;
    LiveBench::Run(100);
    behind += ticks;
  };
  timer.Start();
  LiveBench::Run(150);
  EXPECT_EQ(bench.Boxes.Shown,
            (Shown{"critical|at once|", "critical|in a transfer|", "exclamation|in a turn|its title"}));
  EXPECT_GE(behind, 2) << "the cycle goes on behind a box";
  EXPECT_EQ(bench.Inside, 0);
}

TEST(GatedDialogs, BoxesThatWaitTogetherAreOneAndFileDialogsNeverWait) {
  GateBench bench;
  {
    const GatedDialogs::Together together(bench.Gate);
    bench.Gate.Information("a");
    bench.Gate.Critical("b");
    bench.Gate.Exclamation("b");
    bench.Gate.Exclamation("c", "of its own");
    LiveBench::Run(5);
    EXPECT_EQ(bench.Boxes.Shown, Shown{});
  }
  EXPECT_EQ(bench.Boxes.Shown, Shown{}) << "the caller has still to close its window";
  LiveBench::Run(5);
  EXPECT_EQ(bench.Boxes.Shown, (Shown{"critical|a\nb|", "exclamation|c|of its own"}));
  bench.Boxes.Files = {"f"};
  EXPECT_EQ(bench.Gate.SaveFile("*"), "f");
}

#ifndef QT_NO_DEBUG
TEST(GatedDialogsDeathTest, ADebugBuildStopsAtAModalWindowInsideATransfer) {
  GateBench bench;
  QMessageBox box;
  QTimer::singleShot(1, &box, [&] { box.open(); });
  EXPECT_DEATH(ReadByte(bench.Bus, 0x26), "modal window was shown inside a transfer");
}
#endif

/// Lets `look` handle the box that `open` shows.
void WithBox(const std::function<void(QMessageBox&)>& look, const std::function<void()>& open) {
  QTimer::singleShot(0, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    look(*box);
  });
  open();
}

TEST(UserDialogs, ABoxShowsItsTextPlainUnderItsWholeTitleOrTheProgramsName) {
  QGuiApplication::setApplicationDisplayName("The Program");
  QtUserDialogs dialogs;
  Shown seen;
  const auto look = [&](QMessageBox& box) {
    seen.push_back(fmt::format("{} {}|{}", int(box.icon()), box.windowTitle().toStdString(), box.text().toStdString()));
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    const QFontMetrics font = box.fontMetrics();  // the frame has an icon and buttons beside the title
    EXPECT_GT(box.width(), font.horizontalAdvance(box.windowTitle()) + 5 * font.height());
    box.accept();
  };
  const std::string title = "There was a Problem with a long name, much longer than what there is to say of it!";
  WithBox(look, [&] { dialogs.Critical("<b>1</b>"); });
  WithBox(look, [&] { dialogs.Exclamation("2", QString::fromStdString(title)); });
  WithBox(look, [&] { dialogs.Information("3"); });
  EXPECT_EQ(seen, (Shown{"3 The Program|<b>1</b>", "2 " + title + "|2", "1 The Program|3"}));
  QGuiApplication::setApplicationDisplayName({});
}

TEST(UserDialogs, AQuestionIsAnsweredYesByItsButtonOnly) {
  QtUserDialogs dialogs;
  for (const auto& [key, yes] : {std::pair{Qt::Key_Escape, false}, {Qt::Key_Return, false}, {Qt::Key_Space, true}}) {
    const auto press = [&, key = key, yes = yes](QMessageBox& box) {
      for (QAbstractButton* button : box.buttons())
        if (yes && button->text() == "Replace") button->setFocus();
      QTest::keyClick(box.focusWidget(), key);
    };
    WithBox(press, [&, yes = yes] { EXPECT_EQ(dialogs.Ask("run.csv exists. Replace it?", "Replace"), yes); });
  }
}

TEST(DisplayGuardDeathTest, EndsWithTheReasonAndTheWayOutWhenNoWindowCanOpen) {
  const auto start = [] {
    const DisplayGuard guard;
    qInfo("This application failed to start because no Qt platform plugin could be initialized.");
    qInfo("could not connect to display :9");
    qFatal("Could not find the Qt platform plugin");
  };
  EXPECT_EXIT(start(), ::testing::ExitedWithCode(1),
              "^krx5580-console: could not connect to display :9\n.*Could not find.*\n.*no window can open here");
}

}  // namespace
}  // namespace krx
