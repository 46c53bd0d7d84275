// SPDX-License-Identifier: GPL-3.0-or-later
// User input on gauge, slider, field and indicator, and silent changes by the program.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <cmath>
#include <tuple>

#include "controls/ui/dutyslider.h"
#include "controls/ui/indicator.h"
#include "controls/ui/limitgauge.h"
#include "controls/ui/nowheel.h"
#include "controls/ui/palette.h"
#include "controls/ui/updownedit.h"

namespace krx {
namespace {

void Mouse(QWidget& widget, QEvent::Type type, QPointF at, bool hover = false) {
  const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
  const auto held = hover || type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
  QMouseEvent event(type, at, widget.mapToGlobal(at), button, held, {});
  QCoreApplication::sendEvent(&widget, &event);
}

void DragMouse(QWidget& widget, QPointF from, QPointF to) {
  Mouse(widget, QEvent::MouseButtonPress, from);
  if (from != to) Mouse(widget, QEvent::MouseMove, to);
  Mouse(widget, QEvent::MouseButtonRelease, to);
}

struct Gauge : LimitGauge {
  Gauge() {
    resize(240, 480);
    SetScale(-55, 127);
    Place(Marker::Low, 10, GaugeMarkers::RegisterBytes{10});
    Place(Marker::High, 80, GaugeMarkers::RegisterBytes{80});
    PixelsPerUnit = (MarkerY(Marker::Low) - MarkerY(Marker::High)) / 70;
    QObject::connect(this, &LimitGauge::MarkerMoving, [this](Marker it, double value) { Note("moving", it, value); });
    QObject::connect(this, &LimitGauge::MarkerReleased,
                     [this](Marker it, double value) { Note("released", it, value); });
  }
  void Note(const char* what, Marker marker, double value) {
    Log += fmt::format("{} {} {:g};", what, marker == Marker::Low ? "Low" : "High", value);
  }
  QPointF Grip(Marker marker, double units = 0) { return {120, MarkerY(marker) - units * PixelsPerUnit}; }
  std::string Take() { return std::exchange(Log, {}); }
  void paintEvent(QPaintEvent* event) override {
    ++Paints;
    LimitGauge::paintEvent(event);
  }
  double PixelsPerUnit = 0;
  std::string Log;
  int Paints = 0;
};

TEST(LimitGauge, ADragReportsEachNewValueAndItsEnd) {
  Gauge gauge;
  const std::tuple<Marker, double, double, const char*> rows[] = {
      // Start and end, in scale units above the marker.
      {Marker::High, -0.6, -20.6, "moving High 60;released High 60;"},  // grabbed off its centre
      {Marker::Low, -0.6, 79.4, "moving Low 60;released Low 60;"},      // stopped by the other marker
      {Marker::Low, -0.6, 20, ""},                                      // stopped there already: nothing to write
      {Marker::Low, 0, 0, ""},                                          // nothing to write
      // At the same position the side of the mouse decides.
      {Marker::Low, -1, -11, "moving Low 50;released Low 50;"},
      {Marker::High, 1, 11, "moving High 70;released High 70;"},
      {Marker::High, 15, 20, ""},  // far from both
  };
  for (const auto& [marker, from, to, log] : rows) {
    DragMouse(gauge, gauge.Grip(marker, from), gauge.Grip(marker, to));
    EXPECT_EQ(gauge.Take(), log);
  }
  DragMouse(gauge, gauge.Grip(Marker::High) - QPointF(118, 0), gauge.Grip(Marker::High, 20) - QPointF(118, 0));
  EXPECT_EQ(gauge.Take(), "") << "outside the bar";
  Mouse(gauge, QEvent::MouseMove, gauge.Grip(Marker::Low), true);
  EXPECT_EQ(gauge.cursor().shape(), Qt::SizeVerCursor);
  DragMouse(gauge, gauge.Grip(Marker::Low), gauge.Grip(Marker::Low));
  EXPECT_EQ(gauge.cursor().shape(), Qt::ArrowCursor) << "restored on release";
  gauge.PutBack(Marker::High);
  EXPECT_EQ(gauge.accessibleDescription(), "High 80, Low 50") << "a rejected value";
}

TEST(LimitGauge, ADragWithoutReleaseEndsInPlaceAndASelectionOfAnotherChannelEndsADrag) {
  Gauge gauge;
  const QPointF grip = gauge.Grip(Marker::High);
  const QPointF ten(0, 10 * gauge.PixelsPerUnit);
  Mouse(gauge, QEvent::MouseButtonPress, grip);
  Mouse(gauge, QEvent::MouseMove, grip + ten);
  for (const int far : {5, 6}) Mouse(gauge, QEvent::MouseMove, grip + far * ten, true);
  EXPECT_EQ(gauge.Take(), "moving High 70;released High 70;");
  Mouse(gauge, QEvent::MouseButtonPress, grip + ten);
  gauge.SetScale(0, 8);
  gauge.Place(Marker::High, 5, std::nullopt);
  Mouse(gauge, QEvent::MouseMove, grip + 3 * ten);
  Mouse(gauge, QEvent::MouseButtonRelease, grip + 3 * ten);
  EXPECT_EQ(gauge.Take(), "");
}

TEST(LimitGauge, KeysMoveTheFocusedMarkerLikeADragAndTabReachesBothAndThenLeaves) {
  Gauge gauge;
  Gauge unplaced;
  unplaced.SetScale(0, 8);
  for (const Qt::Key key : {Qt::Key_Up, Qt::Key_PageDown, Qt::Key_Down, Qt::Key_PageUp})
    for (Gauge* each : {&gauge, &unplaced}) QTest::keyClick(each, key);
  EXPECT_EQ(gauge.Take(),
            "moving High 81;released High 81;moving High 71;released High 71;"
            "moving High 70;released High 70;moving High 80;released High 80;");
  EXPECT_EQ(unplaced.Take(), "");
  gauge.Place(Marker::High, 127, std::nullopt);
  QTest::keyClick(&gauge, Qt::Key_Up);
  EXPECT_EQ(gauge.Take(), "") << "no movement at the end";
  gauge.SetStepEnd([](double from, double wanted) { return wanted < from ? -20 : wanted; });
  QTest::keyClick(&gauge, Qt::Key_Down);
  EXPECT_EQ(gauge.Take(), "moving High 10;released High 10;") << "stopped by the other marker";
  QWidget window;
  auto* inWindow = new Gauge;
  inWindow->setParent(&window);
  auto* next = new DutySlider(&window);
  window.show();
  window.activateWindow();
  inWindow->setFocus(Qt::TabFocusReason);
  QCoreApplication::processEvents();
  for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Tab, Qt::Key_Up, Qt::Key_Backtab, Qt::Key_Up, Qt::Key_Tab, Qt::Key_Tab})
    QTest::keyClick(QApplication::focusWidget(), key);
  EXPECT_EQ(inWindow->Take(),
            "moving High 81;released High 81;moving Low 11;released Low 11;moving High 82;released High 82;");
  EXPECT_TRUE(next->hasFocus());
}

TEST(LimitGauge, ShowsProgrammaticChangesAtOnceWithoutASignal) {
  Gauge gauge;
  gauge.show();
  const GaugeMarkers::RegisterBytes allOnes{0xFF, 0xFF};
  const std::pair<const char*, std::function<void()>> rows[] = {
      {"High 80, Low 10", [&] { gauge.SetValue(50); }},
      {"High 80, Low 10", [&] { gauge.SetStale(true); }},
      {"High unknown, Low 10", [&] { gauge.Place(Marker::High, 20, std::nullopt); }},
      {"High unknown", [&] { gauge.Park(Marker::Low, -55); }},
      {"", [&] { gauge.SetScale(0, 20000); }},
      {"Low none", [&] { gauge.Place(Marker::Low, INFINITY, allOnes); }},
  };
  for (const auto& [description, change] : rows) {
    QCoreApplication::processEvents();
    gauge.Paints = 0;
    change();
    QCoreApplication::processEvents();
    EXPECT_GT(gauge.Paints, 0) << &change - &rows[0].second;
    EXPECT_EQ(gauge.accessibleDescription(), description);
  }
  EXPECT_EQ(gauge.Take(), "");
}

struct Slider : DutySlider {
  Slider() {
    resize(400, 30);
    QObject::connect(this, &DutySlider::Pressed, [this] { Log += "pressed;"; });
    QObject::connect(this, &DutySlider::ValueMoving, [this](int to) { Log += fmt::format("moving {};", to); });
    QObject::connect(this, &DutySlider::Released, [this] { Log += "released;"; });
    QObject::connect(this, &DutySlider::ReleasedAfterMove,
                     [this](int to) { Log += fmt::format("after move {};", to); });
  }
  std::string Take() { return std::exchange(Log, {}); }
  std::string Log;
};

TEST(DutySlider, DistinguishesPressMoveAndRelease) {
  Slider slider;
  EXPECT_TRUE(slider.SetValue(128));
  const QPointF handle = slider.rect().center();
  DragMouse(slider, handle, handle);
  EXPECT_EQ(slider.Take(), "pressed;released;");
  Mouse(slider, QEvent::MouseButtonPress, handle);
  EXPECT_FALSE(slider.SetValue(10)) << "a tick does not move a pressed slider";
  EXPECT_EQ(slider.value(), 128);
  Mouse(slider, QEvent::MouseMove, handle + QPointF(1000, 0));
  Mouse(slider, QEvent::MouseButtonRelease, handle + QPointF(1000, 0));
  EXPECT_EQ(slider.Take(), "pressed;moving 255;released;after move 255;");
}

TEST(DutySlider, AKeyStepIsMovedAndReleasedAfterTheMove) {
  Slider slider;
  const std::tuple<int, Qt::Key, int> rows[] = {
      {254, Qt::Key_Right, 255},
      {130, Qt::Key_Right, 133},  // 51 %: a step to 131 would still be 51 %, and the next reading would reset it
      {130, Qt::Key_PageDown, 117},
      {255, Qt::Key_Right, 255},
  };
  for (const auto& [from, key, to] : rows) {
    slider.SetValue(from);  // silent
    QTest::keyClick(&slider, key);
    EXPECT_EQ(slider.Take(), from == to ? "" : fmt::format("moving {0};after move {0};", to));
  }
}

TEST(Wheel, NeverChangesAValueButScrollsTheParent) {
  Gauge gauge;
  Slider slider;
  QSpinBox box;
  IgnoreWheel(box);
  for (QWidget* control : std::initializer_list<QWidget*>{&gauge, &slider, &box}) {
    QWheelEvent turn({5, 5}, {5, 5}, {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(control, &turn);
    EXPECT_FALSE(turn.isAccepted());
  }
  EXPECT_EQ(gauge.Take() + slider.Take() + std::to_string(box.value()), "0");
}

TEST(UpDownEdit, ButtonsAndKeysStepWithinTheRangeFromTheIntegerPartOfTheText) {
  UpDownEdit edit("duty", "Duty", 0, 100);
  QString log;
  QObject::connect(&edit, &UpDownEdit::Edited, [&](const QString& text) { log += text + ";"; });
  edit.SetText("98.7");  // silent
  auto* up = edit.findChild<QToolButton*>("dutyUp");
  auto* down = edit.findChild<QToolButton*>("dutyDown");
  QTest::keyClick(&edit.Field(), Qt::Key_Up);
  for (int i = 0; i < 2; ++i) up->click();
  down->click();
  QTest::keyClick(&edit.Field(), Qt::Key_Down);
  QTest::keyClick(&edit.Field(), Qt::Key_Backspace);
  EXPECT_EQ(log, "99;100;100;99;98;9;");
  EXPECT_TRUE(up->autoRepeat() && down->autoRepeat());
  EXPECT_EQ(edit.focusProxy(), &edit.Field());
}

TEST(Indicator, EveryStateHasItsOwnPictureAndWord) {
  Indicator lamp;
  lamp.resize(lamp.sizeHint());
  EXPECT_EQ(lamp.toolTip(), "Interrupt Status: Green=OK, Red=Bad, Invisible=Disabled");
  EXPECT_EQ(lamp.accessibleDescription(), "Not read yet");
  QImage before;
  const std::tuple<IndicatorState, bool, const char*> rows[] = {
      {IndicatorState::Hidden, false, "Disabled"},
      {IndicatorState::Unknown, false, "Not read yet"},
      {IndicatorState::Ok, false, "OK"},
      {IndicatorState::Bad, false, "Bad"},
      {IndicatorState::Ok, true, "OK (out of date)"},
      {IndicatorState::Bad, true, "Bad (out of date)"},
  };
  for (const auto& [state, stale, word] : rows) {
    lamp.SetState(state);
    lamp.SetStale(stale);
    EXPECT_EQ(lamp.accessibleDescription(), word);
    // Without colour: distinguished by shape alone.
    const QImage shape = lamp.grab().toImage().convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
    EXPECT_NE(std::exchange(before, shape), shape) << word;
  }
}

double Luminance(const QColor& colour) {
  const auto linear = [](float part) {
    return part <= 0.03928F ? double(part) / 12.92 : std::pow((double(part) + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

TEST(Palette, EveryTextIsReadableOnEveryGround) {
  for (const Palette* palette : {&Palette::Light(), &Palette::Dark()}) {
    for (const QColor& text : {palette->text, palette->bad, palette->mutedText, palette->accent, palette->ok}) {
      for (const QColor& ground :
           {palette->window, palette->card, palette->raised, palette->sunk, palette->AlarmGround()}) {
        const auto [dark, light] = std::minmax({Luminance(text), Luminance(ground)});
        const bool used = ground != palette->AlarmGround() || text == palette->text || text == palette->bad;
        EXPECT_GE((light + 0.05) / (dark + 0.05), used ? 4.5 : 1) << text.name().toStdString();
      }
    }
    EXPECT_EQ(&Palette::For(MakeQPalette(*palette)), palette);
  }
}

}  // namespace
}  // namespace krx
