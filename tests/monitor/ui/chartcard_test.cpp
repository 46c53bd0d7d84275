// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/ui/chartcard.h"

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>

#include "controls/ui/plotlibrary.h"
#include "controls/ui/savingbar.h"
#include "controls/ui/stripchart.h"
#include "support/fulldisk.h"
#include "support/scripteddialogs.h"
#include "support/visualbench.h"

namespace krx {
namespace {

TEST(ChartCard, EachChartHasItsTracesAndUnitsAndAnExportNamesItsSourceAndCanBeCancelled) {
  VisualBench bench;
  ScriptedDialogs dialogs;
  ChartCard card({bench.Work.History, bench.Work.Display, bench.Work.Cycle}, dialogs, bench.Model.State());
  card.SetSource("KRX5580 · A board");
  QString notice;
  QObject::connect(&card, &ChartCard::Notice, [&](const QString& text) { notice = text; });
  for (int tick = 0; tick < 600; ++tick) {
    bench.Work.Cycle.Tick();
    card.Posted();
    bench.Advance(0.01);
  }
  const std::tuple<const char*, const char*, const char*, const char*> rows[] = {
      {"Strip2", "Temperature|Fans", "2 2 2 0 0 0 0 2 1",
       "Time (s),Internal (C),External 1 (C),External 2 (C),Fan1 (RPM),Fan2 (RPM),Fan3 (RPM),Fan4 (RPM),"
       "Proc. Power (W),THERM= %\n"},
      {"Strip3", "Voltage|", "3 3 3 3 3", "Time (s),5V (V),12V (V),Vccp (V),Vcc (V),2.5V (V)\n"}};
  for (const auto& [name, axes, digits, heading] : rows) {
    const auto& chart = *card.findChild<StripChart*>(name);
    EXPECT_EQ((chart.Plot()->yAxis->label() + '|' + chart.Plot()->yAxis2->label()).toStdString(), axes);
    QStringList decimals;
    for (int trace = 0; trace < chart.TraceCount(); ++trace) decimals << QString::number(chart.Trace(trace).Decimals);
    EXPECT_EQ(decimals.join(' '), digits);
    EXPECT_TRUE(chart.Values({}).Next(9).starts_with(heading));
  }
  QTemporaryDir folder;
  const QString name = folder.filePath("chart");
  const auto* chart = card.findChild<StripChart*>("Strip2");
  const QList<QAction*> exports = chart->findChild<QToolButton*>("export")->menu()->actions();
  const std::tuple<const char*, QByteArray, const char*> formats[] = {
      {".png", "\x89PNG", "save|Pictures (*.png)|*.png|chart.png"},
      {".pdf", "%PDF", "save|Documents (*.pdf)|*.pdf|chart.pdf"},
      {".csv", "# KRX5580 · A board\n# Saved 20", "save|Comma-separated values (*.csv)|*.csv|chart.csv"}};
  for (qsizetype i = 0; i < exports.size(); ++i) {
    const auto& [ending, head, filter] = formats[i];
    notice.clear();
    dialogs.Shown.clear();
    dialogs.Files = {name.toStdString()};
    exports[i]->trigger();
    EXPECT_TRUE(QTest::qWaitFor([&] { return notice == "Saved to " + name + ending; }, 60'000)) << ending;
    EXPECT_EQ(dialogs.Shown, std::vector<std::string>{filter});
    EXPECT_TRUE(Content(name + ending).startsWith(head)) << ending;
  }
  dialogs.Files = {name.toStdString() + "2"};
  for (int twice = 0; twice < 2; ++twice) exports[2]->trigger();
  EXPECT_EQ(notice, "The previous values are still being saved");
  card.findChild<SavingBar*>()->findChild<QPushButton*>()->click();
  EXPECT_TRUE(QTest::qWaitFor([&] { return notice == "Cancelled, " + name + "2.csv not saved"; }));
  EXPECT_FALSE(QFile::exists(name + "2.csv"));
}

}  // namespace
}  // namespace krx
