// SPDX-License-Identifier: GPL-3.0-or-later
// What a user's hand does to gauge, slider and lamp, and what the program may do without a word.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QWheelEvent>
#include <cmath>
#include <tuple>

#include "controls/ui/dutyslider.h"
#include "controls/ui/indicator.h"
#include "controls/ui/limitgauge.h"
#include "controls/ui/palette.h"

namespace krx {
namespace {

void Mouse(QWidget& widget, QEvent::Type type, QPointF at, bool hover = false) {
  const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
  const auto held = hover || type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
  QMouseEvent event(type, at, widget.mapToGlobal(at), button, held, Qt::NoModifier);
  QCoreApplication::sendEvent(&widget, &event);
}

void Key(QWidget& widget, Qt::Key key) {
  QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
  QCoreApplication::sendEvent(&widget, &event);
}

void Wheel(QWidget& widget) {
  QWheelEvent event({5, 5}, {5, 5}, {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&widget, &event);
}

struct Gauge : LimitGauge {
  Gauge() {
    resize(240, 480);
    SetScale(-55, 127);
    Place(Marker::Low, 10, GaugeMarkers::RegisterBytes{10});
    Place(Marker::High, 80, GaugeMarkers::RegisterBytes{80});
    PixelsPerUnit = (MarkerY(Marker::Low) - MarkerY(Marker::High)) / 70;
    const auto note = [this](const char* what) {
      return [this, what](Marker marker, double value) {
        Log +=
            std::string(what) + (marker == Marker::Low ? "Low " : "High ") + std::to_string(std::lround(value)) + ";";
      };
    };
    QObject::connect(this, &LimitGauge::MarkerMoving, note("moving "));
    QObject::connect(this, &LimitGauge::MarkerReleased, note("released "));
  }
  /// Takes the marker where it stands and lets it go where `value` stands.
  void Drag(Marker marker, double value) {
    const double to = MarkerY(marker) - (value - Markers().ValueOf(marker)) * PixelsPerUnit;
    const double x = width() / 2.0;
    Mouse(*this, QEvent::MouseButtonPress, {x, MarkerY(marker) + 2});
    Mouse(*this, QEvent::MouseMove, {x, to + 2});
    Mouse(*this, QEvent::MouseButtonRelease, {x, to + 2});
  }
  std::string Take() { return std::exchange(Log, {}); }
  double PixelsPerUnit = 0;
  std::string Log;
};

TEST(LimitGauge, ADragTellsEachNewValueAndItsEnd) {
  Gauge gauge;
  gauge.Drag(Marker::High, 60);
  EXPECT_EQ(gauge.Take(), "moving High 60;released High 60;");
  gauge.Drag(Marker::Low, 90);
  EXPECT_EQ(gauge.Take(), "moving Low 60;released Low 60;") << "stopped by the other marker";
  Mouse(gauge, QEvent::MouseMove, {120, gauge.MarkerY(Marker::Low)});
  EXPECT_EQ(gauge.cursor().shape(), Qt::SizeVerCursor);
  gauge.Drag(Marker::Low, 60);
  EXPECT_EQ(gauge.cursor().shape(), Qt::ArrowCursor) << "put back on release";
  EXPECT_EQ(gauge.Take(), "") << "pressed and let go: nothing to write";
  EXPECT_EQ(gauge.accessibleDescription(), "High 60, Low 60");
}

TEST(LimitGauge, ARejectedValueIsPutBackWithItsBytes) {
  Gauge gauge;
  QObject::connect(&gauge, &LimitGauge::MarkerReleased, [&] { gauge.PutBack(Marker::High); });
  gauge.Drag(Marker::High, 60);
  EXPECT_EQ(gauge.Markers().High(), 80);
  EXPECT_TRUE(gauge.Markers().Bytes(Marker::High).has_value());
}

TEST(LimitGauge, ADragThatLostItsReleaseEndsWhereItWas) {
  Gauge gauge;
  const QPointF grip(120, gauge.MarkerY(Marker::High));
  Mouse(gauge, QEvent::MouseButtonPress, grip);
  Mouse(gauge, QEvent::MouseMove, grip + QPointF(0, 10 * gauge.PixelsPerUnit));
  Mouse(gauge, QEvent::MouseMove, grip + QPointF(0, 50 * gauge.PixelsPerUnit), true);
  Mouse(gauge, QEvent::MouseMove, grip + QPointF(0, 60 * gauge.PixelsPerUnit), true);
  EXPECT_EQ(gauge.Take(), "moving High 70;released High 70;");
}

TEST(LimitGauge, ANewChannelEndsADragWithoutARelease) {
  Gauge gauge;
  const double y = gauge.MarkerY(Marker::High);
  Mouse(gauge, QEvent::MouseButtonPress, {120, y});
  Mouse(gauge, QEvent::MouseMove, {120, y + 50});
  gauge.Take();
  gauge.SetScale(0, 8);
  gauge.Place(Marker::High, 5, std::nullopt);
  Mouse(gauge, QEvent::MouseMove, {120, y + 80});
  Mouse(gauge, QEvent::MouseButtonRelease, {120, y + 80});
  EXPECT_EQ(gauge.Take(), "");
}

TEST(LimitGauge, KeysMoveTheMarkerInFocusAsADragWould) {
  Gauge gauge;
  Gauge unplaced;
  unplaced.SetScale(0, 8);
  const std::tuple<Qt::Key, const char*> rows[] = {
      {Qt::Key_Up, "moving High 81;released High 81;"},
      {Qt::Key_PageDown, "moving High 71;released High 71;"},
      {Qt::Key_Down, "moving High 70;released High 70;"},
  };
  for (const auto& [key, log] : rows) {
    Key(gauge, key);
    EXPECT_EQ(gauge.Take(), log);
    Key(unplaced, key);
  }
  EXPECT_EQ(unplaced.Take(), "");
  gauge.Place(Marker::High, 127, std::nullopt);
  Key(gauge, Qt::Key_Up);
  EXPECT_EQ(gauge.Take(), "") << "at the end stop nothing moves";
  gauge.SetStepEnd([](double from, double wanted) { return wanted < from ? -20 : wanted; });
  Key(gauge, Qt::Key_Down);
  EXPECT_EQ(gauge.Take(), "moving High 10;released High 10;") << "stopped by the other marker";
  Wheel(gauge);
  gauge.SetValue(50);
  EXPECT_EQ(gauge.Take(), "");
}

TEST(LimitGauge, TabReachesBothMarkersAndThenLeaves) {
  QWidget window;
  Gauge* gauge = new Gauge;
  gauge->setParent(&window);
  auto* next = new DutySlider(&window);
  window.show();
  window.activateWindow();
  gauge->setFocus(Qt::TabFocusReason);
  QCoreApplication::processEvents();
  Key(*gauge, Qt::Key_Tab);
  Key(*gauge, Qt::Key_Up);
  EXPECT_EQ(gauge->Take(), "moving Low 11;released Low 11;");
  Key(*gauge, Qt::Key_Tab);
  EXPECT_TRUE(next->hasFocus());
}

struct Slider : DutySlider {
  Slider() {
    resize(400, 30);
    QObject::connect(this, &DutySlider::Pressed, [this] { Log += "pressed;"; });
    QObject::connect(this, &DutySlider::ValueMoving, [this](int value) { Note("moving ", value); });
    QObject::connect(this, &DutySlider::Released, [this] { Log += "released;"; });
    QObject::connect(this, &DutySlider::ReleasedAfterMove, [this](int value) { Note("after move ", value); });
  }
  void Note(const char* what, int value) { Log += what + std::to_string(value) + ";"; }
  QPointF Handle() const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this).center();
  }
  std::string Take() { return std::exchange(Log, {}); }
  std::string Log;
};

TEST(DutySlider, TellsAPressAMoveAndAReleaseApart) {
  Slider slider;
  EXPECT_TRUE(slider.SetValue(128));
  EXPECT_EQ(slider.Take(), "") << "the program's own values are silent";
  const QPointF handle = slider.Handle();
  Mouse(slider, QEvent::MouseButtonPress, handle);
  Mouse(slider, QEvent::MouseButtonRelease, handle);
  EXPECT_EQ(slider.Take(), "pressed;released;");

  Mouse(slider, QEvent::MouseButtonPress, handle);
  EXPECT_FALSE(slider.SetValue(10)) << "a tick does not pull the slider from under the user";
  EXPECT_EQ(slider.value(), 128);
  Mouse(slider, QEvent::MouseMove, handle + QPointF(1000, 0));
  Mouse(slider, QEvent::MouseButtonRelease, handle + QPointF(1000, 0));
  EXPECT_EQ(slider.Take(), "pressed;moving 255;released;after move 255;");
}

TEST(DutySlider, AKeyStepIsMovedAndReleasedAfterTheMoveAndTheWheelIsNothing) {
  Slider slider;
  slider.SetValue(254);
  Key(slider, Qt::Key_Right);
  EXPECT_EQ(slider.Take(), "moving 255;after move 255;");
  EXPECT_EQ(slider.value(), 255);
  slider.SetValue(130);  // 51 %: a step to 131 would still be 51 %, and the next reading would take it back
  Key(slider, Qt::Key_Right);
  EXPECT_EQ(slider.Take(), "moving 133;after move 133;");
  slider.SetValue(255);
  Key(slider, Qt::Key_Right);
  Wheel(slider);
  EXPECT_EQ(slider.Take(), "");
  EXPECT_EQ(slider.value(), 255);
}

TEST(Indicator, EveryStateHasItsOwnPictureAndWord) {
  Indicator lamp;
  lamp.resize(lamp.sizeHint());
  EXPECT_EQ(lamp.toolTip(), "Interrupt Status: Green=OK, Red=Bad, Invisible=Disabled");
  std::vector<QImage> pictures;
  const std::tuple<IndicatorState, bool, const char*> rows[] = {
      {IndicatorState::Hidden, false, "Disabled"}, {IndicatorState::Unknown, false, "Not read yet"},
      {IndicatorState::Ok, false, "OK"},           {IndicatorState::Bad, false, "Bad"},
      {IndicatorState::Ok, true, "OK (old)"},      {IndicatorState::Bad, true, "Bad (old)"},
  };
  for (const auto& [state, stale, word] : rows) {
    lamp.SetState(state);
    lamp.SetStale(stale);
    EXPECT_EQ(lamp.accessibleDescription(), word);
    // Without colour: the shape alone must tell them apart.
    const QImage picture = lamp.grab().toImage().convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
    pictures.push_back(picture);
  }
  EXPECT_NE(pictures[2], pictures[3]);
  EXPECT_NE(pictures[4], pictures[5]);
  EXPECT_NE(pictures[1], pictures[2]);
  EXPECT_NE(pictures[0], pictures[1]);
}

double Luminance(const QColor& colour) {
  const auto linear = [](float part) {
    return part <= 0.03928F ? double(part) / 12.92 : std::pow((double(part) + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

TEST(Palette, EveryTextIsReadableOnEveryGround) {
  const auto readable = [](const QColor& text, const QColor& ground) {
    const double a = Luminance(text);
    const double b = Luminance(ground);
    EXPECT_GE((std::max(a, b) + 0.05) / (std::min(a, b) + 0.05), 4.5)
        << text.name().toStdString() << " on " << ground.name().toStdString();
  };
  for (const Palette* palette : {&Palette::Light(), &Palette::Dark()}) {
    for (const QColor& ground : {palette->window, palette->card, palette->raised}) {
      for (const QColor& text : {palette->text, palette->mutedText, palette->accent, palette->ok, palette->bad})
        readable(text, ground);
    }
    for (const QColor& text : {palette->text, palette->bad}) readable(text, palette->AlarmGround());
    EXPECT_EQ(&Palette::For(MakeQPalette(*palette)), palette);
  }
}

}  // namespace
}  // namespace krx
