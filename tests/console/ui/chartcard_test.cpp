// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/chartcard.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include "console/visualbench.h"
#include "controls/ui/stripchart.h"
#include "support/fulldisk.h"
#include "support/scripteddialogs.h"

namespace krx {
namespace {

TEST(ChartCard, ExportsNameTheirSourceAndAFullDiskLeavesTheOldFile) {
  VisualBench bench;
  ScriptedDialogs dialogs;
  ChartCard card(bench.Work, dialogs, bench.Model.State());
  card.SetSource("KRX5580 · A board");
  QString notice;
  QObject::connect(&card, &ChartCard::Notice, [&](const QString& text) { notice = text; });
  for (int tick = 0; tick < 600; ++tick) {
    bench.Work.Cycle.Tick();
    card.Posted();
    bench.Advance(0.01);
  }
  QTemporaryDir folder;
  const QString name = folder.filePath("chart");
  const auto* chart = card.findChild<StripChart*>("Strip2");
  const QList<QAction*> exports = chart->findChild<QToolButton*>("export")->menu()->actions();
  const std::pair<const char*, QByteArray> formats[] = {
      {".png", "\x89PNG"}, {".pdf", "%PDF"}, {".csv", "# KRX5580 · A board\n# Saved 20"}};
  for (qsizetype i = 0; i < exports.size(); ++i) {
    const auto& [ending, head] = formats[i];
    const auto run = [&] {
      notice.clear();
      dialogs.Shown.clear();
      dialogs.Files = {name.toStdString()};
      exports[i]->trigger();
      const auto told = [&] { return !notice.isEmpty() || dialogs.Shown.back().starts_with("critical"); };
      return QTest::qWaitFor(told, 60'000);
    };
    ASSERT_TRUE(run());
    EXPECT_EQ(notice, "Saved to " + name + ending);
    const QByteArray saved = Content(name + ending);
    EXPECT_TRUE(saved.startsWith(head)) << saved.left(80).toStdString();
    dialogs.Yes = true;  // replace it
    const FullDisk full;
    ASSERT_TRUE(run());
    EXPECT_EQ(dialogs.Shown.back().find("critical|The chart could not be saved: "), 0U) << dialogs.Shown.back();
    EXPECT_EQ(Content(name + ending), saved) << ending;
    dialogs.Yes = false;
  }
}

}  // namespace
}  // namespace krx
