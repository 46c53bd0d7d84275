// SPDX-License-Identifier: GPL-3.0-or-later
// Boxes and file dialogs, and the files they produce.
#include "controls/ui/userdialogs.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <stdexcept>

#include "controls/ui/displayguard.h"
#include "controls/ui/filesaving.h"
#include "controls/ui/gateddialogs.h"
#include "controls/ui/savingbar.h"
#include "link/commserror.h"
#include "support/fulldisk.h"
#include "support/livebench.h"
#include "support/scripteddialogs.h"

namespace krx {
namespace {

TEST(UserDialogs, FiltersAreTranslatedForTheToolkit) {
  EXPECT_EQ(ToolkitFilter("Text Files (*.sav)|*.sav"), "Text Files (*.sav)");
  EXPECT_EQ(ToolkitFilter("Excel Files (*.xls)|*.xls|All|*"), "Excel Files (*.xls);;All (*)");
}

TEST(UserDialogs, AFailedActionShowsOneBoxAfterReleasingItsResources) {
  ScriptedDialogs dialogs;
  bool held = false;
  dialogs.WhileOpen = [&] { EXPECT_FALSE(held); };
  EXPECT_FALSE(RunUserAction(dialogs, [&] {
    const QScopedValueRollback guard(held, true);
    throw Overflow();
  }));
  EXPECT_FALSE(RunUserAction(dialogs, [] { throw Failure("disk full"); }));
  EXPECT_FALSE(RunUserAction(dialogs, [] { throw std::runtime_error("vector::_M_range_check"); }));
  EXPECT_TRUE(RunUserAction(dialogs, [] {}));
  EXPECT_EQ(dialogs.Shown, (std::vector<std::string>{"critical|Error: 6, Overflow|", "critical|disk full|",
                                                     "critical|internal error|"}));
}

using Shown = std::vector<std::string>;

struct GateBench : LiveBench {
  ScriptedDialogs Boxes;
  GatedDialogs Gate{Boxes, Pump, [this] { return UnderWay(); }};
};

TEST(GatedDialogs, ABoxOpensOnceNoTransferOrTurnIsInProgress) {
  GateBench bench;
  int ticks = 0, behind = 0;
  bench.Boxes.WhileOpen = [&] {
    EXPECT_FALSE(bench.UnderWay());
    behind -= ticks;
    LiveBench::Run(100);
    behind += ticks;
  };
  bench.Gate.Critical("at once");
  EXPECT_EQ(bench.Boxes.Shown, (Shown{"critical|at once|"}));
  QTimer::singleShot(1, [&] { bench.Gate.Critical("in a transfer"); });
  bench.Read(3);
  EXPECT_EQ(bench.Boxes.Shown.size(), 1U);
  ChipTimer timer(bench.Turns, "t", 1, [&] {
    if (++ticks == 1) bench.Gate.Exclamation("in a turn", "its title");
    bench.Read(3);
  });
  timer.Start();
  LiveBench::Run(150);
  EXPECT_EQ(bench.Boxes.Shown,
            (Shown{"critical|at once|", "critical|in a transfer|", "exclamation|in a turn|its title"}));
  EXPECT_GE(behind, 2) << "the cycle continues during a box";
}

TEST(GatedDialogs, WaitingBoxesAreMergedAndFileDialogsNeverWait) {
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
  EXPECT_EQ(bench.Boxes.Shown, Shown{}) << "the caller still has to close its window";
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

TEST(UserDialogs, ABoxShowsPlainTextAndItsFullTitleOrTheProgramsName) {
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
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Space}) {
    const bool yes = key == Qt::Key_Space;
    const auto press = [&](QMessageBox& box) {
      for (QAbstractButton* button : box.buttons())
        if (yes && button->text() == "Replace") button->setFocus();
      QTest::keyClick(box.focusWidget(), key);
    };
    WithBox(press, [&] { EXPECT_EQ(dialogs.Ask("run.csv exists. Replace it?", "Replace"), yes); });
  }
}

TEST(DisplayGuardDeathTest, EndsWithTheReasonAndTheAlternativeWithoutADisplay) {
  const auto start = [] {
    const DisplayGuard guard;
    qInfo("This application failed to start because no Qt platform plugin could be initialized.");
    qInfo("could not connect to display :9");
    qFatal("Could not find the Qt platform plugin");
  };
  EXPECT_EXIT(start(), ::testing::ExitedWithCode(1),
              "^krx5580-console: cannot open a window \\(QT_QPA_PLATFORM=offscreen\\); krx5580 watch");
}

TEST(FileSaving, AddsAMissingExtensionAndConfirmsOverwritingThatFile) {
  QTemporaryDir folder;
  const std::string at = folder.path().toStdString() + '/';
  ASSERT_EQ(SaveWhole(folder.filePath("there.csv"), "old"), "");
  const std::tuple<const char*, bool, const char*, const char*> rows[] = {
      {"new", false, "", "new.csv"},
      {"new.", false, "", "new.csv"},
      {"new.txt", false, "", "new.txt"},
      {"there.csv", false, "", "there.csv"},
      {"there", true, "there.csv exists. Replace it?|Replace", "there.csv"},
      {"there", false, "there.csv exists. Replace it?|Replace", "given up"},
      {"no.folder/a", false, "", "no.folder/a.csv"}};
  for (const auto& [typed, yes, asked, wanted] : rows) {
    ScriptedDialogs dialogs;
    dialogs.Files = {at + typed};
    dialogs.Yes = yes;
    const auto name = AskSaveName(dialogs, "CSV|*.csv", "chart.csv");
    EXPECT_EQ(name.value_or(folder.filePath("given up")).toStdString(), at + wanted);
    Shown shown{"save|CSV|*.csv|chart.csv"};
    if (*asked) shown.push_back("ask|" + at + asked);
    EXPECT_EQ(dialogs.Shown, shown) << typed;
  }
}

TEST(FileSaving, AFailedSaveKeepsTheOldFileLeavesNoOtherAndNamesTheReason) {
  QTemporaryDir folder;
  const QString name = folder.filePath("run.txt");
  ScriptedDialogs dialogs;
  EXPECT_EQ(SaveAndTell(dialogs, "The run", name, "old"), "Saved to " + name);
  EXPECT_EQ(SaveWhole(folder.filePath("no.folder/run.txt"), "x"), "no such file or directory (ENOENT)");
  EXPECT_EQ(SaveWhole(folder.path(), "x"), "the file cannot be written");
  const FullDisk full;
  EXPECT_EQ(SaveAndTell(dialogs, "The run", name, QByteArray(10'000, 'x')), "");
  ASSERT_EQ(dialogs.Shown.size(), 1U);
  EXPECT_TRUE(dialogs.Shown[0].starts_with("critical|The run could not be saved: file too large (EFBIG)"))
      << dialogs.Shown[0];
  EXPECT_EQ(Content(name), "old");
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList("run.txt"));
}

struct Saving {
  Saving() {
    for (int i = 0; i < 20'000; ++i) History.Append(i * 10'000, std::vector<float>{1.5f});
    QObject::connect(&Bar, &SavingBar::Saved, [this] { End = "saved "; });
    QObject::connect(&Bar, &SavingBar::Cancelled, [this] { End = "cancelled "; });
    QObject::connect(&Bar, &SavingBar::Failed, [this] { End = "failed "; });
    SaveWhole(Name, "old");
  }
  void Start() { Bar.Save({History, {0, History.LastTime() + 1}, {{0, "A"}}, {}}, Name); }
  TraceHistory History{1};
  QTemporaryDir Folder;
  QString Name = Folder.filePath("run.csv");
  SavingBar Bar;
  QString End;
};

TEST(SavingBar, KeepsTheOldFileWhenCancelledElseSavesTheInitialRowsInSlices) {
  Saving saving;
  saving.Start();
  saving.Bar.findChild<QPushButton*>("cmdCancelSaving")->click();
  EXPECT_EQ(saving.End + Content(saving.Name), "cancelled old");
  EXPECT_FALSE(saving.Bar.Busy());
  int turns = 0;
  QTimer other;
  QObject::connect(&other, &QTimer::timeout, [&] {
    ++turns;
    saving.History.Append(saving.History.LastTime() + 10'000, std::vector<float>{2.f});
  });
  other.start(0);
  saving.Start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return saving.End == "saved "; }, 60'000));
  EXPECT_GE(turns, 3);
  const QByteArray text = Content(saving.Name);
  EXPECT_EQ(text.count('\n'), 20'001);
  EXPECT_TRUE(text.endsWith("199.990000,1.5\n"));
}

TEST(SavingBar, DelaysNoTransferAndReportsAFullDiskOnlyBetweenTransfers) {
  ScriptedBudget budget;
  budget.Left = 0.001;  // a transfer comes soon
  Saving saving;
  saving.Bar.SetWaitBudget(&budget);
  saving.Start();
  QTest::qWait(50);
  EXPECT_EQ(saving.Bar.findChild<QProgressBar*>("barSaving")->value(), 0);
  EXPECT_TRUE(saving.Bar.Busy());
  const FullDisk full;
  budget.Left = 0.005;
  ASSERT_TRUE(QTest::qWaitFor([&] { return budget.Afterwards != nullptr; }, 60'000));
  EXPECT_EQ(saving.End, "");
  budget.Left = std::numeric_limits<double>::infinity();
  budget.Afterwards();
  EXPECT_EQ(saving.End + Content(saving.Name), "failed old");
}

}  // namespace
}  // namespace krx
