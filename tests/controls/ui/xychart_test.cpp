// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/xychart.h"

#include <gtest/gtest.h>
#include <qcustomplot.h>

#include <QTest>
#include <cmath>

#include "controls/ui/traceplottable.h"

namespace krx {
namespace {

TEST(XyChart, TakesAPointOnceAndNamesOnlyTracesThatHaveAName) {
  QLocale::setDefault(QLocale(QLocale::German));
  XyChart chart({"Temperature °C", 0, 120}, {"PWM %", 0, 100});
  QLocale::setDefault(QLocale::c());
  chart.SetTraces({{"Fan1"}, {"Op Point"}});
  chart.resize(400, 300);
  chart.show();
  for (int i = 0; i < 1000; ++i) chart.AddPoint(0, 40 + i % 3, 20);
  for (const auto& [x, y] : {std::pair{NAN, 1.f}, {1.f, INFINITY}}) chart.AddPoint(0, x, y);
  QCustomPlot& plot = *chart.Plot();
  EXPECT_EQ(plot.locale().toString(1234.5), "1234.5") << "numbers are written alike in every country";
  auto* curve = qobject_cast<QCPCurve*>(plot.plottable(0));
  EXPECT_EQ(std::pair(chart.PointCount(0), curve->data()->size()), std::pair(3, 3));
  EXPECT_EQ(plot.xAxis->label() + plot.yAxis->label(), "Temperature °CPWM %");
  EXPECT_EQ(std::pair(plot.xAxis->range(), plot.yAxis->range()), std::pair(QCPRange(0, 120), QCPRange(0, 100)));
  QCoreApplication::processEvents();
  int redraws = 0;
  QObject::connect(&plot, &QCustomPlot::afterReplot, [&] { ++redraws; });
  chart.AddLabel("Therm", 0.5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return redraws > 0; }));
  auto* label = qobject_cast<QCPItemText*>(plot.item(0));
  EXPECT_EQ(label->text(), "Therm");
  EXPECT_NEAR(label->position->pixelPosition().x(), plot.axisRect()->rect().center().x(), 1);
  EXPECT_EQ(plot.legend->itemCount(), 2);
  EXPECT_LE(plot.legend->outerRect().bottom(), plot.axisRect()->top()) << "above the picture";
  EXPECT_EQ(plot.legend->rowCount(), 1);
  chart.resize(plot.legend->outerRect().width() / 2, 300);
  plot.replot();
  EXPECT_EQ(plot.legend->rowCount(), 2) << "too narrow for both";
  chart.SetTraceName(1, " ");
  EXPECT_EQ(plot.legend->itemCount(), 1);
  chart.SetTraceVisible(0, false);
  EXPECT_EQ(plot.legend->itemCount(), 0);
  chart.ClearPoints();
  EXPECT_EQ(chart.PointCount(0) + curve->data()->size() + plot.itemCount(), 0);
}

TEST(TraceLines, AreUprightRunsThatTouchAndBridgesUnlessNothingWasMeasured) {
  std::vector<TraceColumn> columns{{1, 3}, {5, 6}, {}, {}, {2, 2}, {2, 2}, {2, 2}};
  const TraceScale scale{.FirstX = 0.5, .ColumnWidth = 1, .ZeroY = 10, .YPerUnit = -1};
  const QVector<QLineF> straight{{0.5, 7.5, 0.5, 9.5}, {1.5, 4.5, 1.5, 7.5}, {4.5, 8.5, 6.5, 8.5}};
  for (const bool gap : {false, true}) {
    columns[1].GapAfter = gap;
    const TraceLines lines = MakeTraceLines(columns, scale, std::nullopt, std::nullopt);
    EXPECT_EQ(lines.Straight, straight);
    EXPECT_EQ(lines.Slanted, gap ? QVector<QLineF>() : QVector<QLineF>({{1.5, 5.5, 4.5, 8.5}}));
  }
}

}  // namespace
}  // namespace krx
