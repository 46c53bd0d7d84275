// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/dutyslider.h"

#include <QApplication>
#include <QEvent>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <utility>

namespace krx {

using namespace Qt::StringLiterals;

DutySlider::DutySlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
  setRange(0, 255);
  // 1 %: readings put the slider on whole percents, so that a smaller step would never get past the next one.
  setSingleStep(3);
  setPageStep(13);  // about 5 %
  setObjectName(u"analog_output_slider"_s);
  connect(this, &QSlider::sliderPressed, this, [this] {
    moved_ = false;
    emit Pressed();
  });
  connect(this, &QSlider::sliderMoved, this, [this](int value) {
    moved_ = true;
    emit ValueMoving(value);
  });
  connect(this, &QSlider::sliderReleased, this, [this] {
    emit Released();
    if (std::exchange(moved_, false)) emit ReleasedAfterMove(value());
  });
  // Keys and clicks beside the handle come here, before the value follows the position.
  connect(this, &QSlider::actionTriggered, this, [this](int action) {
    if (action == SliderMove || action == SliderNoAction || sliderPosition() == value()) return;
    setValue(sliderPosition());
    emit ValueMoving(value());
    emit ReleasedAfterMove(value());
  });
}

void DutySlider::SetCaption(const QString& caption) {
  caption_ = caption;
  setAccessibleName(caption + u" PWM duty"_s);
}

bool DutySlider::SetValue(int value) {
  if (isSliderDown()) return false;
  const QSignalBlocker blocker(this);
  setValue(value);
  return true;
}

void DutySlider::LetGo() {
  setRepeatAction(SliderNoAction);
  setSliderDown(false);
}

void DutySlider::timerEvent(QTimerEvent* event) {
  // The groove repeats by a timer, which goes on when a box has opened over it and taken the release.
  const QWidget* const modal = QApplication::activeModalWidget();
  const bool covered = modal != nullptr && !modal->isAncestorOf(this);
  if (covered || !QGuiApplication::mouseButtons().testFlag(Qt::LeftButton)) return LetGo();
  QSlider::timerEvent(event);
}

void DutySlider::changeEvent(QEvent* event) {
  QSlider::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && !isActiveWindow()) LetGo();
}

void DutySlider::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

}  // namespace krx
