// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/updatebutton.h"

#include <QPainter>
#include <utility>

#include "controls/ui/palette.h"

namespace krx {
using namespace Qt::StringLiterals;
namespace {

constexpr double radius = 3;

}  // namespace

UpdateButton::UpdateButton() : QPushButton(u"Press to update"_s) {}

void UpdateButton::SetState(EntryState state) {
  if (std::exchange(state_, state) == state) return;
  setToolTip(state == EntryState::Unwritten ? u"This entry has not been written"_s : QString());
  update();
}

void UpdateButton::paintEvent(QPaintEvent* event) {
  if (state_ == EntryState::Untouched) return QPushButton::paintEvent(event);
  // The style would shade the colour, which is to be exact.
  const Palette& colours = Palette::For(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(colours.outline);
  painter.setBrush(state_ == EntryState::Unwritten ? fixedcolours::brightRed : fixedcolours::brightGreen);
  const QRectF face = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.drawRoundedRect(face, radius, radius);
  if (hasFocus()) {
    painter.setPen(QPen(fixedcolours::onBright, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(face.adjusted(2.5, 2.5, -2.5, -2.5), radius, radius);
  }
  painter.setPen(fixedcolours::onBright);
  painter.drawText(rect().translated(isDown() ? 1 : 0, isDown() ? 1 : 0), Qt::AlignCenter, text());
}

}  // namespace krx
