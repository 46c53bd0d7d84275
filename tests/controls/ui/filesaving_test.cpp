// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/filesaving.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include "controls/ui/savingbar.h"
#include "support/fulldisk.h"
#include "support/livebench.h"
#include "support/scripteddialogs.h"

namespace krx {
namespace {

TEST(FileSaving, AddsTheEndingNobodyTypedAndAsksForAFileThatTheDialogDidNotName) {
  QTemporaryDir folder;
  ASSERT_EQ(SaveWhole(folder.filePath("there.csv"), "old"), "");
  const struct {
    const char* Typed;
    bool Yes;
    const char* Name;  // null: given up
    bool Asked;
  } rows[] = {{"new", false, "new.csv", false},
              {"new.", false, "new.csv", false},
              {"new.txt", false, "new.txt", false},
              {"there.csv", false, "there.csv", false},
              {"there", true, "there.csv", true},
              {"there", false, nullptr, true},
              {"no.folder/a", false, "no.folder/a.csv", false}};
  for (const auto& row : rows) {
    ScriptedDialogs dialogs;
    dialogs.Files = {folder.filePath(row.Typed).toStdString()};
    dialogs.Yes = row.Yes;
    const auto name = AskSaveName(dialogs, "CSV|*.csv", "chart.csv");
    EXPECT_EQ(name, row.Name ? std::optional(folder.filePath(row.Name)) : std::nullopt) << row.Typed;
    std::vector<std::string> shown{"save|CSV|*.csv|chart.csv"};
    if (row.Asked)
      shown.push_back("ask|" + folder.filePath("there.csv").toStdString() + " exists. Replace it?|Replace");
    EXPECT_EQ(dialogs.Shown, shown) << row.Typed;
  }
}

TEST(FileSaving, AFullDiskLeavesTheOldFileAndNoOther) {
  QTemporaryDir folder;
  const QString name = folder.filePath("run.txt");
  ScriptedDialogs dialogs;
  EXPECT_EQ(SaveAndTell(dialogs, "The run", name, "old"), "Saved to " + name);
  {
    const FullDisk full;
    EXPECT_EQ(SaveAndTell(dialogs, "The run", name, QByteArray(10'000, 'x')), "");
  }
  ASSERT_EQ(dialogs.Shown.size(), 1U);
  EXPECT_EQ(dialogs.Shown[0].find("critical|The run could not be saved: "), 0U) << dialogs.Shown[0];
  EXPECT_EQ(Content(name), "old");
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList("run.txt"));
}

struct Saving {
  Saving() {
    for (int i = 0; i < 20'000; ++i) History.Append(i * 10'000, std::vector<float>{1.5f});
    const auto ends = [this](const char* how) { return [this, how] { End = how; }; };
    QObject::connect(&Bar, &SavingBar::Saved, ends("saved"));
    QObject::connect(&Bar, &SavingBar::Cancelled, ends("cancelled"));
    QObject::connect(&Bar, &SavingBar::Failed, ends("failed"));
    SaveWhole(Name, "old");
  }
  void Start() { Bar.Save({History, {0, History.LastTime() + 1}, {{0, "A"}}, {}}, Name); }
  TraceHistory History{1};
  QTemporaryDir Folder;
  QString Name = Folder.filePath("run.csv");
  SavingBar Bar;
  QString End;
};

TEST(SavingBar, SavesInSlicesBetweenOtherWorkWhatWasThereWhenItBegan) {
  Saving saving;
  int turns = 0;
  QTimer other;
  QObject::connect(&other, &QTimer::timeout, [&] {
    ++turns;
    saving.History.Append(saving.History.LastTime() + 10'000, std::vector<float>{2.f});
  });
  other.start(0);
  saving.Start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !saving.End.isEmpty(); }, 60'000));
  EXPECT_EQ(saving.End, "saved");
  EXPECT_GE(turns, 3);
  const QByteArray text = Content(saving.Name);
  EXPECT_EQ(text.count('\n'), 20'001);
  EXPECT_TRUE(text.endsWith("199.990000,1.5\n"));
}

TEST(SavingBar, ACancelledOneLeavesTheOldFile) {
  Saving saving;
  saving.Start();
  saving.Bar.findChild<QPushButton*>("cmdCancelSaving")->click();
  EXPECT_EQ(saving.End, "cancelled");
  EXPECT_EQ(Content(saving.Name), "old");
  EXPECT_FALSE(saving.Bar.Busy());
}

TEST(SavingBar, MakesNoTransferLateAndTellsOnlyBetweenTransfersThatAFullDiskLeftTheOldFile) {
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
  EXPECT_EQ(saving.End, "failed");
  EXPECT_EQ(Content(saving.Name), "old");
}

}  // namespace
}  // namespace krx
