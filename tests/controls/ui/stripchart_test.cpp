// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/stripchart.h"

#include <gtest/gtest.h>
#include <qcustomplot.h>

#include <QAction>
#include <QCoreApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include "controls/ui/traceplottable.h"
#include "controls/ui/xychart.h"
#include "controls/ui/zoomarrows.h"

namespace krx {
namespace {

constexpr std::int64_t kTick = 10'000;

class StripChartTest : public ::testing::Test {
 protected:
  StripChartTest() {
    chart.SetTraces({{0, "Internal", 0, false, "C", 2}, {2, "Fan1", 3, true, "RPM", 0}});
    chart.SetValueRange(-20, 120);
    chart.resize(600, 400);
  }
  void Post(int count) {
    for (int i = 0; i < count; ++i) {
      history.Append(time += kTick, std::vector<float>{25.5f, 1.f, fan});
      chart.Posted();
    }
  }
  void Show() {
    chart.show();
    while (Redraws(0) == 0) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    QCoreApplication::processEvents();
  }
  int Redraws(int start) {
    if (!counted) QObject::connect(chart.Plot(), &QCustomPlot::afterReplot, [this] { ++redraws; });
    counted = true;
    return redraws - start;
  }
  void Key(int key) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(chart.Plot(), &press);
  }
  void Mouse(QEvent::Type type, QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const bool moving = type == QEvent::MouseMove;
    QMouseEvent event(type, at, chart.Plot()->mapToGlobal(QPointF(at)), moving ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, modifiers);
    QCoreApplication::sendEvent(chart.Plot(), &event);
  }
  void Drag(QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    Mouse(QEvent::MouseButtonPress, from, modifiers);
    Mouse(QEvent::MouseMove, (from + to) / 2, modifiers);
    Mouse(QEvent::MouseMove, to, modifiers);
    Mouse(QEvent::MouseButtonRelease, to, modifiers);
  }
  TraceHistory history{3};
  StripChart chart{history};
  std::int64_t time = 0;
  float fan = 2412.f;
  int redraws = 0;
  bool counted = false;
};

TEST_F(StripChartTest, HiddenTracesLeaveLegendMenuAndExport) {
  QAction* toggle = chart.findChild<QToolButton*>("traces")->menu()->actions().at(0);
  int toggled = -1;
  QObject::connect(&chart, &StripChart::TraceToggled, [&](int channel, bool) { toggled = channel; });
  EXPECT_EQ(chart.Plot()->legend->itemCount(), 2);
  chart.SetTraceVisible(0, false);
  EXPECT_EQ(chart.Plot()->legend->itemCount(), 1);
  EXPECT_EQ(chart.Plot()->legend->elementCount(), 1);  // no hole
  EXPECT_FALSE(toggle->isVisible());
  EXPECT_EQ(toggled, -1);  // the program's own change is no wish of the user
  Post(1);
  EXPECT_EQ(chart.Values({"A board"}).Next(10), "# A board\nTime (s),Fan1 (RPM)\n0.010000,2412\n");
  chart.SetTraceVisible(0, true);
  auto* first = qobject_cast<QCPPlottableLegendItem*>(chart.Plot()->legend->item(0));
  EXPECT_EQ(first->plottable()->name(), "Internal");  // back in its old place
}

TEST_F(StripChartTest, ATraceThatIsSwitchedOffKeepsItsGreyLegendEntry) {
  const auto entry = [&] { return qobject_cast<QCPPlottableLegendItem*>(chart.Plot()->legend->item(0)); };
  const auto clickEntry = [&] {
    emit chart.Plot()->legendClick(chart.Plot()->legend, entry(), nullptr);
    QCoreApplication::processEvents();
  };
  clickEntry();
  EXPECT_FALSE(chart.TraceVisible(0));
  EXPECT_FALSE(chart.findChild<QToolButton*>("traces")->menu()->actions().at(0)->isChecked());
  ASSERT_EQ(chart.Plot()->legend->itemCount(), 2);
  EXPECT_EQ(entry()->plottable()->name(), "Internal");
  const QColor grey = entry()->textColor();
  chart.setPalette(MakeQPalette(Palette::Dark()));  // a change of the theme keeps the difference
  EXPECT_NE(entry()->textColor(), grey);
  EXPECT_EQ(entry()->textColor(), Palette::Dark().mutedText);
  StripChart large(history);
  large.CopySettings(chart);
  EXPECT_FALSE(large.TraceVisible(0));
  clickEntry();
  EXPECT_TRUE(chart.TraceVisible(0));
  EXPECT_EQ(entry()->textColor(), Palette::Dark().text);
}

TEST_F(StripChartTest, TabReachesEveryButtonAndThenThePicture) {
  QWidget window;
  auto* before = new QPushButton(&window);
  auto* column = new QVBoxLayout(&window);
  column->addWidget(before);
  column->addWidget(&chart);
  window.show();
  before->setFocus();
  QTest::keyClick(before, Qt::Key_Tab);
  std::string order;
  for (int i = 0; i < 6; ++i) {
    QWidget* const here = window.focusWidget();
    order += here->objectName().toStdString() + " ";
    if (here->objectName() == "pause" || here->objectName() == "fit") {
      QTest::keyClick(here, Qt::Key_Space);
      EXPECT_EQ(chart.Mode(), here->objectName() == "fit" ? ChartMode::Whole : ChartMode::Paused);
    }
    QTest::keyClick(here, Qt::Key_Tab);
  }
  EXPECT_EQ(order, "live pause fit traces export plot ");
  chart.setParent(nullptr);
}

TEST_F(StripChartTest, AFanThatStandsStillIsSeenAboveTheFrame) {
  fan = 0;
  Post(1);
  Show();
  EXPECT_LT(chart.Plot()->yAxis2->coordToPixel(0), chart.Plot()->axisRect()->bottom() - 2);
}

TEST_F(StripChartTest, NumbersAreWrittenAlikeInEveryCountry) {
  QLocale::setDefault(QLocale(QLocale::German));
  StripChart german(history);
  QLocale::setDefault(QLocale::c());
  QVector<double> ticks;
  QVector<QString> labels;
  german.Plot()->yAxis->ticker()->generate({0, 1}, german.Plot()->locale(), 'f', 1, ticks, nullptr, &labels);
  EXPECT_TRUE(labels.contains("0.6")) << labels.join(' ').toStdString();
}

TEST_F(StripChartTest, APictureSaysItsUnitsAndLeavesTheScreenAsItWas) {
  chart.SetAxisTitles("Temperature", "Fans");
  chart.SetAxisUnits("°C", "RPM");
  Post(10);
  Show();
  const QRect area = chart.Plot()->axisRect()->rect();
  QStringList said;
  QObject::connect(chart.Plot(), &QCustomPlot::afterLayout, [&] {
    said << chart.Plot()->yAxis->label() << chart.Plot()->yAxis2->label() << chart.Plot()->xAxis->label();
    if (const auto* head = qobject_cast<QCPTextElement*>(chart.Plot()->plotLayout()->element(0, 0)))
      said << head->text();
  });
  const QByteArray png = chart.Picture(ChartFormat::Png, {"A board", "Saved"});
  EXPECT_EQ(said, QStringList({"Temperature (°C)", "Fans (RPM)", "Time (h:m:s)", "A board\nSaved"}));
  EXPECT_EQ(QImage::fromData(png).size(), chart.Plot()->size() * 2);
  EXPECT_TRUE(chart.Picture(ChartFormat::Pdf, {"A board"}).startsWith("%PDF"));
  said.clear();
  chart.Plot()->replot();
  EXPECT_EQ(said, QStringList({"Temperature", "Fans", ""}));
  EXPECT_EQ(chart.Plot()->axisRect()->rect(), area);
}

TEST_F(StripChartTest, PausedPictureStandsWhileReadingsComeIn) {
  Post(10);
  chart.Pause();
  const ChartSpan paused = chart.Shown();
  Post(30'000);
  EXPECT_EQ(chart.Shown(), paused);
  EXPECT_EQ(history.RowCount(), 30'010u);
  EXPECT_TRUE(chart.findChild<QToolButton*>("pause")->isChecked());
  Key(Qt::Key_Left);
  EXPECT_EQ(chart.Shown().Begin, paused.Begin - paused.Length() / 10);
  Key(Qt::Key_Home);
  EXPECT_EQ(chart.Mode(), ChartMode::Live);
  EXPECT_EQ(chart.Shown().End, time + 1);
}

TEST_F(StripChartTest, DrawsAtEveryFifthTickAndNeverWhileHidden) {
  const int start = redraws;
  Post(100);
  EXPECT_EQ(Redraws(start), 0);
  Show();
  Post(5);  // whatever was left over from showing
  const int shown = redraws;
  Post(20);
  EXPECT_GE(Redraws(shown), 4);
  EXPECT_LE(Redraws(shown), 10);  // a slow machine may pass the 50 ms now and then
  chart.hide();
  const int hidden = redraws;
  Post(20);
  EXPECT_EQ(Redraws(hidden), 0);
}

TEST_F(StripChartTest, AxesKeepTheirRangesAndTheSecondGrowsWithTheFans) {
  fan = 6100.f;
  Post(1);
  Show();
  EXPECT_EQ(chart.Plot()->yAxis->range().lower, -20);
  EXPECT_EQ(chart.Plot()->yAxis->range().upper, 120);
  EXPECT_EQ(chart.Plot()->yAxis2->range().upper, 10'000);
  StripChart large(history);
  large.CopySettings(chart);
  large.Clear();
  EXPECT_EQ(large.Shown().Begin, time + 1);  // starts empty
  EXPECT_EQ(large.TraceCount(), 2);
}

TEST_F(StripChartTest, FrameZoomsShiftPansArrowsStretchAndDoubleClickGoesLive) {
  Post(1);
  Show();
  const QRect area = chart.Plot()->axisRect()->rect();
  const QPoint first = area.topLeft() + QPoint(area.width() / 4, area.height() / 4);
  const std::int64_t length = chart.Shown().Length();
  Drag(first, first + QPoint(area.width() / 2, area.height() / 2));
  EXPECT_EQ(chart.Mode(), ChartMode::Paused);
  EXPECT_NEAR(static_cast<double>(chart.Shown().Length()) / static_cast<double>(length), 0.5, 0.01);
  EXPECT_NEAR(chart.Plot()->yAxis->range().size(), 70, 1.5);
  EXPECT_NEAR(chart.Plot()->yAxis2->range().size(), 2500, 50);
  const ChartSpan zoomed = chart.Shown();
  Drag(first, first + QPoint(area.width() / 2, 0), Qt::ShiftModifier);
  EXPECT_EQ(chart.Shown().Length(), zoomed.Length());
  EXPECT_NEAR(static_cast<double>(zoomed.Begin - chart.Shown().Begin) / static_cast<double>(zoomed.Length()), 0.5,
              0.01);
  Mouse(QEvent::MouseButtonDblClick, first);
  Mouse(QEvent::MouseButtonRelease, first);
  EXPECT_EQ(chart.Mode(), ChartMode::Live);
  EXPECT_EQ(chart.Shown().Length(), length);
  const QPoint arrow(area.right() - 10, area.center().y());
  Drag(arrow, arrow + QPoint(area.width(), 0));
  EXPECT_NEAR(static_cast<double>(chart.Shown().Length()) / static_cast<double>(length), 0.5, 0.01);
}

TEST(XyChart, TakesAPointOnceAndNamesOnlyTracesThatHaveAName) {
  XyChart chart({"Temperature °C", 0, 120}, {"PWM %", 0, 100});
  chart.SetTraces({{"Fan1"}, {"Op Point"}});
  for (int i = 0; i < 1000; ++i) chart.AddPoint(0, 40 + i % 3, 20);
  chart.AddPoint(0, std::numeric_limits<double>::quiet_NaN(), 1);
  EXPECT_EQ(chart.PointCount(0), 3);
  EXPECT_EQ(chart.Plot()->legend->itemCount(), 2);
  chart.SetTraceName(1, " ");
  EXPECT_EQ(chart.Plot()->legend->itemCount(), 1);
  chart.AddLabel("Therm", 0.5);
  chart.ClearPoints();
  EXPECT_EQ(chart.PointCount(0), 0);
  EXPECT_EQ(chart.Plot()->itemCount(), 0);
}

TEST(TraceLines, AreUprightRunsThatTouchAndBridgesUnlessNothingWasMeasured) {
  const std::vector<TraceColumn> columns{{1, 3}, {5, 6}, {}, {}, {2, 2}, {2, 2}, {2, 2}};
  const TraceLines lines = MakeTraceLines(columns, {.FirstX = 0.5, .ColumnWidth = 1, .ZeroY = 10, .YPerUnit = -1},
                                          std::nullopt, std::nullopt);
  const QVector<QLineF> straight{{0.5, 7.5, 0.5, 9.5}, {1.5, 4.5, 1.5, 7.5}, {4.5, 8.5, 6.5, 8.5}};
  EXPECT_EQ(lines.Straight, straight);
  EXPECT_EQ(lines.Slanted, QVector<QLineF>({{1.5, 5.5, 4.5, 8.5}}));
  std::vector<TraceColumn> gap = columns;
  gap[1].GapAfter = true;
  const TraceLines parted =
      MakeTraceLines(gap, {.FirstX = 0.5, .ColumnWidth = 1, .ZeroY = 10, .YPerUnit = -1}, std::nullopt, std::nullopt);
  EXPECT_EQ(parted.Straight, straight);
  EXPECT_TRUE(parted.Slanted.isEmpty());
}

TEST(ZoomArrows, DraggedOutwardStretchAndInwardCompress) {
  const QSizeF size(400, 200);
  EXPECT_DOUBLE_EQ(DragFactor(ChartEdge::Right, {400, 0}, size), 0.5);
  EXPECT_DOUBLE_EQ(DragFactor(ChartEdge::Left, {-400, 0}, size), 0.5);
  EXPECT_DOUBLE_EQ(DragFactor(ChartEdge::Top, {0, 100}, size), 2);
  EXPECT_DOUBLE_EQ(DragFactor(ChartEdge::Bottom, {0, -1000}, size), 10);
}

}  // namespace
}  // namespace krx
