// SPDX-License-Identifier: GPL-3.0-or-later
// Charts over time and x-y charts.
#include "controls/ui/stripchart.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QMenu>
#include <QTest>
#include <QToolButton>
#include <cmath>

#include "controls/ui/plotlibrary.h"
#include "controls/ui/tracecursor.h"
#include "controls/ui/traceplottable.h"
#include "controls/ui/xychart.h"

namespace krx {
namespace {

class StripChartTest : public ::testing::Test {
 protected:
  StripChartTest() {
    chart.SetTraces({{0, "Internal", 0, false, "C", 2}, {2, "Fan1", 3, true, "RPM", 0}});
    chart.SetValueRange(-20, 120);
    chart.resize(600, 400);
    QObject::connect(&plot, &QCustomPlot::afterReplot, [this] { ++redraws; });
  }
  void Post(int count) {
    for (int i = 0; i < count; ++i) {
      history.Append(time += 10'000, std::vector<float>{celsius, 1.f, fan});
      chart.Posted();
    }
  }
  void Show() {
    chart.show();
    while (redraws == 0) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    QCoreApplication::processEvents();
  }
  void Drag(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mousePress(&plot, button, modifiers, from);
    for (const QPoint at : {(from + to) / 2, to})
      QTest::mouseEvent(QTest::MouseMove, &plot, Qt::NoButton, modifiers, at);
    QTest::mouseRelease(&plot, button, modifiers, to);
  }
  /// How the visible time differs from `before`, in lengths of that: how far it moved and how long it is.
  std::string Moved(ChartSpan before) const {
    const auto length = static_cast<double>(before.Length());
    return fmt::format("{:.2f} {:.2f}", static_cast<double>(chart.Shown().Begin - before.Begin) / length,
                       static_cast<double>(chart.Shown().Length()) / length);
  }
  QAction* Toggle(int channel) { return chart.findChild<QToolButton*>("traces")->menu()->actions().at(channel); }
  QCPPlottableLegendItem* Entry(int place) { return qobject_cast<QCPPlottableLegendItem*>(plot.legend->item(place)); }

  TraceHistory history{3};
  StripChart chart{history};
  QCustomPlot& plot = *chart.Plot();
  std::int64_t time = 0;
  float celsius = 25.5f;
  float fan = 2412.f;
  int redraws = 0;
};

TEST_F(StripChartTest, HiddenTracesAreRemovedFromLegendMenuAndExportAndDisabledOnesKeepAGreyEntry) {
  int toggled = -1;
  QObject::connect(&chart, &StripChart::TraceToggled, [&](int channel, bool) { toggled = channel; });
  EXPECT_EQ(plot.legend->itemCount(), plot.legend->visible() ? 2 : 0);
  chart.SetTraceVisible(0, false);
  EXPECT_EQ(std::pair(plot.legend->itemCount(), plot.legend->elementCount()), std::pair(1, 1));  // no hole
  EXPECT_FALSE(Toggle(0)->isVisible());
  EXPECT_EQ(toggled, -1) << "a programmatic change is not a user request";
  Post(1);
  chart.SetTraceName(1, "Rear");
  EXPECT_EQ(chart.Values({"A board"}).Next(10), "# A board\nTime (s),Rear (RPM)\n0.010000,2412\n");
  chart.SetTraceVisible(0, true);
  EXPECT_EQ(Entry(0)->plottable()->name(), "Internal");  // back in its old place
  EXPECT_EQ(Entry(1)->plottable()->name(), "Rear");
  EXPECT_EQ(Toggle(1)->text(), "Rear");
  const auto clickEntry = [&] {
    emit plot.legendClick(plot.legend, Entry(0), nullptr);
    QCoreApplication::processEvents();
  };
  clickEntry();
  EXPECT_FALSE(chart.TraceVisible(0) || Toggle(0)->isChecked());
  chart.setPalette(MakeQPalette(Palette::Dark()));  // a change of the theme keeps the difference
  EXPECT_EQ(Entry(0)->textColor(), Palette::Dark().mutedText);
  StripChart large(history);
  large.CopySettings(chart);
  large.Clear();
  EXPECT_TRUE(!large.TraceVisible(0) && large.TraceVisible(1));
  EXPECT_EQ(large.Shown().Begin, time + 1) << "starts empty";
  clickEntry();
  EXPECT_TRUE(chart.TraceVisible(0) && toggled == 0);
  EXPECT_EQ(Entry(0)->textColor(), Palette::Dark().text);
}

TEST_F(StripChartTest, TabReachesEveryButtonAndThenTheChart) {
  Show();
  chart.findChild<QToolButton*>("live")->setFocus();
  std::string order;
  for (QWidget* here = chart.focusWidget(); order.size() < 44; here = chart.focusWidget()) {
    order += here->objectName().toStdString() + " ";
    if (auto* button = qobject_cast<QToolButton*>(here); button && button->isCheckable()) {
      QTest::keyClick(here, Qt::Key_Space);
      order += std::to_string(static_cast<int>(chart.Mode())) + (button->isChecked() ? " " : "! ");
    }
    QTest::keyClick(here, Qt::Key_Tab);
  }
  EXPECT_EQ(order, "live 0 pause 1 fit 2 traces export plot live 0 ");
}

TEST_F(StripChartTest, APictureHasItsUnitsAndLeavesTheScreenUnchanged) {
  chart.SetAxisTitles("Temperature", "Fans");
  chart.SetAxisUnits("°C", "RPM");
  Post(10);
  Show();
  QTest::keyClick(&plot, Qt::Key_Right, Qt::ControlModifier);
  const QRect area = plot.axisRect()->rect();
  QStringList said;
  QObject::connect(&plot, &QCustomPlot::afterLayout, [&] {
    said << plot.yAxis->label() << plot.yAxis2->label() << plot.xAxis->label();
    said << (plot.item(0)->visible() ? "arrows" : plot.item(1)->visible() ? "cursor" : "traces only");
    if (const auto* head = qobject_cast<QCPTextElement*>(plot.plotLayout()->element(0, 0))) said << head->text();
  });
  const QByteArray png = chart.Picture(ChartFormat::Png, {"A board", "Saved"});
  EXPECT_EQ(said, QStringList({"Temperature (°C)", "Fans (RPM)", "Time (h:m:s)", "traces only", "A board\nSaved"}));
  EXPECT_EQ(QImage::fromData(png).size(), plot.size() * 2);
  said.clear();
  plot.replot();
  EXPECT_EQ(said, QStringList({"Temperature", "Fans", "", "arrows"}));
  EXPECT_EQ(plot.axisRect()->rect(), area);
}

TEST_F(StripChartTest, APausedChartIsFixedWhileReadingsArriveAndMovesByKeysAndWheel) {
  Post(10);
  chart.Pause();
  const ChartSpan paused = chart.Shown();
  Post(30'000);
  EXPECT_EQ(chart.Shown(), paused);
  Show();
  const std::pair<const char*, const char*> presses[] = {
      {"Left", "-0.10 1.00"}, {"Right", "0.10 1.00"}, {"+", "0.10 0.80"},        {"=", "0.10 0.80"},
      {"-", "-0.12 1.25"},    {"A", "0.00 1.00"},     {"Ctrl+Left", "0.00 1.00"}};
  for (const auto& [keys, moved] : presses) {
    const ChartSpan before = chart.Shown();
    const QKeyCombination key = QKeySequence(keys)[0];
    QTest::keyClick(&plot, key.key(), key.keyboardModifiers());
    EXPECT_EQ(Moved(before), moved) << keys;
  }
  const QRect area = plot.axisRect()->rect();
  const QPoint quarter(area.left() + area.width() / 4, area.center().y());
  const std::tuple<QPoint, QPoint, Qt::KeyboardModifiers, const char*> turns[] = {
      {quarter, {0, 120}, {}, "0.05 0.80"},
      {quarter, {0, -120}, {}, "-0.06 1.25"},
      {quarter, {240, 0}, {}, "-0.20 1.00"},
      {quarter, {0, -120}, Qt::ShiftModifier, "0.10 1.00"},
      {{area.left() / 2, quarter.y()}, {0, 120}, {}, "0.00 1.00"},  // outside the chart
  };
  for (const auto& [at, turn, modifiers, moved] : turns) {
    const ChartSpan before = chart.Shown();
    QWheelEvent event(at, plot.mapToGlobal(at), {}, turn, Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&plot, &event);
    EXPECT_EQ(Moved(before), moved) << turn.x() << " " << turn.y();
  }
  QTest::keyClick(&plot, Qt::Key_Home);
  EXPECT_TRUE(chart.Mode() == ChartMode::Live && chart.Shown().End == time + 1);
}

TEST_F(StripChartTest, TheCursorReadsTheTracesUnderItAndTheirChangeSinceTheLeftEdge) {
  Post(1);
  celsius = 26;
  fan = 2400;
  history.Append(time = 170'000'000, std::vector<float>{celsius, 1.f, fan});
  Show();
  auto& cursor = dynamic_cast<TraceCursor&>(*plot.item(1));
  EXPECT_FALSE(cursor.visible());
  const QPointF over = plot.axisRect()->rect().center() + QPoint(30, 10);
  QMouseEvent move(QEvent::MouseMove, over, plot.mapToGlobal(over), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(&plot, &move);
  EXPECT_EQ(cursor.Position(), over);
  QTest::keyClick(&plot, Qt::Key_Escape);
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Left})
    QTest::keyClick(&plot, key, Qt::ControlModifier);
  EXPECT_TRUE(cursor.visible() && cursor.Position()->x() == plot.axisRect()->rect().center().x() + 4);
  EXPECT_EQ(plot.accessibleDescription().section(", ", 1), "Internal 25.50 C (+0.00 C), Fan1 2412 RPM (+0 RPM)");
  cursor.SetPosition(QPointF(plot.xAxis->coordToPixel(170), 100));
  EXPECT_EQ(cursor.Text(), "00:02:50.0, Internal 26.00 C (+0.50 C), Fan1 2400 RPM (-12 RPM)");
  cursor.SetPosition(QPointF(plot.xAxis->coordToPixel(171), 100));
  EXPECT_EQ(cursor.Text(), "00:02:51.0, Internal – (), Fan1 – ()") << "nothing is measured there yet";
  QTest::keyClick(&plot, Qt::Key_Escape);
  EXPECT_FALSE(cursor.visible() || cursor.Position());
  for (const auto& [tenths, text] : {std::pair{36'000LL * 12 + 34'567, "12:57:36.7"}, {-9, "-00:00:00.9"}})
    EXPECT_EQ(ElapsedText(tenths * 100'000), text);
}

TEST_F(StripChartTest, AxesKeepTheirRangesAndTheSecondGrowsWithTheFans) {
  fan = 0;
  Post(1);
  Show();
  EXPECT_LT(plot.yAxis2->coordToPixel(0), plot.axisRect()->bottom() - 2) << "a stopped fan is visible";
  fan = 6100.f;
  Post(1);
  plot.replot();
  EXPECT_EQ(plot.yAxis->range(), QCPRange(-20, 120));
  for (const QCPAxis* axis : {plot.xAxis, plot.yAxis, plot.yAxis2}) EXPECT_TRUE(axis->visible() && axis->tickLabels());
  EXPECT_EQ(plot.yAxis2->range().upper, 10'000);
  chart.Fit();
  plot.replot();
  EXPECT_EQ(plot.yAxis->range(), QCPRange(25.49, 25.51)) << "a flat trace has room, too";
  EXPECT_EQ(plot.yAxis2->range(), QCPRange(-305, 6405));
}

TEST_F(StripChartTest, FrameZoomsShiftPansArrowsStretchAndDoubleClickGoesLive) {
  Post(1);
  Show();
  const ChartSpan live = chart.Shown();
  const std::tuple<QPointF, Qt::MouseButton, Qt::KeyboardModifiers, const char*, double> drags[] = {
      // In fractions of the chart, starting at a quarter.
      {{0.5, 0.5}, Qt::LeftButton, {}, "0.25 0.50", 70},
      {{0.5, 0}, Qt::LeftButton, Qt::ShiftModifier, "-0.50 1.00", 70},
      {{-0.2, 0}, Qt::MiddleButton, {}, "0.20 1.00", 70},
      {{0.5, 0.01}, Qt::LeftButton, {}, "0.25 0.50", 70},  // thin: the time only
      {{0.01, 0.5}, Qt::LeftButton, {}, "0.00 1.00", 35},  // the values only
      {{0.01, 0.01}, Qt::LeftButton, {}, "0.00 1.00", 35}};
  for (const auto& [share, button, modifiers, moved, values] : drags) {
    plot.replot();
    const QRect area = plot.axisRect()->rect();
    const QPoint from = area.topLeft() + QPoint(area.width() / 4, area.height() / 4);
    const ChartSpan before = chart.Shown();
    Drag(from, from + QPointF(share.x() * area.width(), share.y() * area.height()).toPoint(), button, modifiers);
    EXPECT_EQ(Moved(before), moved);
    EXPECT_EQ(chart.Mode(), ChartMode::Paused);
    EXPECT_NEAR(plot.yAxis->range().size(), values, 1.5);
    EXPECT_NEAR(plot.yAxis2->range().size(), values * 2500 / 70, 50);
  }
  const QRect area = plot.axisRect()->rect();
  const QPoint middle = area.center();
  QTest::mouseDClick(&plot, Qt::LeftButton, {}, middle);
  QTest::mouseRelease(&plot, Qt::LeftButton, {}, middle);
  EXPECT_EQ(chart.Mode(), ChartMode::Live);
  EXPECT_EQ(chart.Shown(), live);
  const std::tuple<QPoint, QPoint, bool, const char*, QCPRange> rows[] = {
      {{area.right() - 10, middle.y()}, {area.width(), 0}, false, "0.00 0.50", {-20, 120}},
      {{area.left() + 10, middle.y()}, {-area.width(), 0}, true, "0.50 0.50", {-20, 120}},
      {{area.left() + 10, middle.y()}, {-area.width(), 0}, false, "0.00 0.50", {-20, 120}},
      {{middle.x(), area.top() + 10}, {0, area.height() / -4}, false, "0.00 1.00", {-20, 92}},
      {{middle.x(), area.bottom() - 10}, {0, area.height() / 4}, false, "0.00 1.00", {8, 120}}};
  for (const auto& [arrow, by, paused, moved, values] : rows) {
    chart.Live();
    if (paused) chart.Pause();
    plot.replot();
    Drag(arrow, arrow + by);
    EXPECT_EQ(Moved(live), moved);
    EXPECT_NEAR(plot.yAxis->range().lower, values.lower, 1);
    EXPECT_NEAR(plot.yAxis->range().upper, values.upper, 1);
  }
}

TEST(XyChart, AddsAPointOnceAndListsOnlyNamedTraces) {
  QLocale::setDefault(QLocale(QLocale::German));
  XyChart chart({"Temperature °C", 0, 120}, {"PWM %", 0, 100});
  QLocale::setDefault(QLocale::c());
  chart.SetTraces({{"Fan1"}, {"Op Point"}});
  chart.resize(400, 300);
  chart.show();
  for (int i = 0; i < 1000; ++i) chart.AddPoint(0, 40 + i % 3, 20);
  for (const auto& [x, y] : {std::pair{NAN, 1.f}, {1.f, INFINITY}}) chart.AddPoint(0, x, y);
  QCustomPlot& plot = *chart.Plot();
  EXPECT_EQ(plot.locale().toString(1234.5), "1234.5") << "numbers are independent of the locale";
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
  EXPECT_LE(plot.legend->outerRect().bottom(), plot.axisRect()->top()) << "above the chart";
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

TEST(TraceLines, AreTouchingVerticalRunsAndBridgesExceptInGaps) {
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
