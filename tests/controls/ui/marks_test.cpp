// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>

#include "board/ui/switchlamp.h"
#include "control/ui/sparkline.h"
#include "controls/ui/focusring.h"
#include "controls/ui/outlinedstyle.h"
#include "controls/ui/palette.h"
#include "controls/ui/statemark.h"
#include "support/words.h"

namespace krx {
namespace {

TEST(Marks, AreDrawnAgainWhenTheirStateChangesAndOnlyThen) {
  QWidget window;
  auto* const row = new QHBoxLayout(&window);
  auto* const mark = new StateMark(Mark::Off);
  auto* const lamp = new SwitchLamp;
  for (QWidget* widget : {static_cast<QWidget*>(mark), static_cast<QWidget*>(lamp)}) row->addWidget(widget);
  window.show();
  EXPECT_TRUE(Repaints(*mark, [&] { mark->SetMark(Mark::Good); }));
  EXPECT_TRUE(Repaints(*mark, [&] { mark->SetMuted(true); }));
  EXPECT_FALSE(Repaints(*mark, [&] { mark->SetMark(Mark::Good), mark->SetMuted(true); }));
  EXPECT_TRUE(Repaints(*lamp, [&] { lamp->SetState(LampState::Closed); }));
  EXPECT_FALSE(Repaints(*lamp, [&] { lamp->SetState(LampState::Closed); }));
}

/// Columns of the picture in which something else than the ground is drawn in the upper part, as a line of x and
/// blanks.
std::string DrawnColumns(QWidget& widget, int columns) {
  const QImage picture = widget.grab().toImage();
  const QRgb ground = picture.pixel(0, 0);
  std::string text;
  for (int column = 0; column < columns; ++column) {
    bool drawn = false;
    const int x = (2 * column + 1) * picture.width() / (2 * columns);
    for (int y = 0; y < picture.height() / 2; ++y) drawn |= picture.pixel(x, y) != ground;
    text += drawn ? 'x' : ' ';
  }
  return text;
}

TEST(Sparkline, LeavesOutWhereNothingWasMeasured) {
  Sparkline line(0);
  line.resize(90, 40);
  EXPECT_EQ(DrawnColumns(line, 9), std::string(9, ' ')) << "nothing measured";
  std::vector<TraceColumn> columns(9);
  for (const std::size_t measured : {0U, 1U, 2U, 6U, 7U, 8U}) columns[measured] = {10, 10, measured == 2};
  columns[8] = {0, 10, false};  // the scale
  line.Show(columns, false);
  EXPECT_EQ(DrawnColumns(line, 9).substr(0, 8), "xxx   xx");
}

TEST(FocusRing, FollowsTheFocusAndTheSize) {
  QWidget window;
  auto* const row = new QVBoxLayout(&window);
  auto* const framed = new QWidget;
  auto* const other = new QLineEdit;
  framed->setFocusPolicy(Qt::StrongFocus);
  for (QWidget* widget : {framed, static_cast<QWidget*>(other)}) row->addWidget(widget);
  auto* const ring = new FocusRing(*framed);
  window.show();
  window.activateWindow();
  other->setFocus();
  EXPECT_TRUE(ring->isHidden());
  framed->setFocus();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !ring->isHidden(); }));
  window.resize(300, 200);
  EXPECT_TRUE(QTest::qWaitFor([&] { return ring->geometry() == framed->rect(); }));
  other->setFocus();
  EXPECT_TRUE(QTest::qWaitFor([&] { return ring->isHidden(); }));
}

TEST(OutlinedStyle, ShowsTheFocusInTheAccentAndADisabledFieldPale) {
  OutlinedStyle style;
  const Palette& colours = Palette::Dark();
  const std::pair<QStyle::State, QColor> rows[] = {{QStyle::State_Enabled, colours.outline},
                                                   {QStyle::State_Enabled | QStyle::State_HasFocus, colours.accent},
                                                   {QStyle::State_HasFocus, colours.line}};
  for (const auto& [state, colour] : rows) {
    QImage picture(40, 20, QImage::Format_RGB32);
    picture.fill(colours.card);
    QPainter painter(&picture);
    QStyleOptionFrame option;
    option.palette = MakeQPalette(colours);
    option.rect = picture.rect();
    option.state = state;
    style.drawPrimitive(QStyle::PE_FrameLineEdit, &option, &painter, nullptr);
    EXPECT_EQ(picture.pixelColor(20, 0), colour) << colour.name().toStdString();
  }
}

}  // namespace
}  // namespace krx
