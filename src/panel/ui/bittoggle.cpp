// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/bittoggle.h"

#include <QKeyEvent>
#include <QPainter>

#include "controls/ui/palette.h"

namespace krx {
using namespace Qt::StringLiterals;
namespace {

constexpr double radius = 3;
constexpr double focusWidth = 2;

}  // namespace

BitToggle::BitToggle(int bit) : QPushButton(u"0"_s) {
  setObjectName(u"bit%1"_s.arg(bit));
  setToolTip(u"Click to change"_s);
  setCheckable(true);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  QFont digit = font();
  digit.setPointSizeF(digit.pointSizeF() * 1.3);
  digit.setBold(true);
  setFont(digit);
}

void BitToggle::SetBit(bool set) {
  if (isChecked() == set && !text().isEmpty()) return;
  setChecked(set);
  setText(set ? u"1"_s : u"0"_s);
}

QSize BitToggle::sizeHint() const {
  return {fontMetrics().horizontalAdvance(u"000"_s), fontMetrics().height() * 2};
}

void BitToggle::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
    emit NeighbourRequested(event->key() == Qt::Key_Left ? -1 : 1);
    return;
  }
  QPushButton::keyPressEvent(event);
}

void BitToggle::paintEvent(QPaintEvent*) {
  const Palette& colours = Palette::For(*this);
  const bool filled = isEnabled() && isChecked();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool lit = isEnabled() && (hasFocus() || underMouse());
  const double width = isEnabled() && hasFocus() ? focusWidth : 1;
  painter.setPen(QPen(lit || filled ? colours.accent : isEnabled() ? colours.outline : colours.line, width));
  painter.setBrush(filled ? colours.accent : isEnabled() ? colours.sunk : colours.card);
  QRectF face = QRectF(rect()).adjusted(width / 2, width / 2, -width / 2, -width / 2);
  painter.drawRoundedRect(face, radius, radius);
  if (filled && hasFocus()) {  // the ring would not stand out from the accent
    painter.setPen(QPen(colours.card, focusWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(face.adjusted(2, 2, -2, -2), radius, radius);
  }
  painter.setPen(filled ? colours.window : isEnabled() || isChecked() ? colours.text : colours.mutedText);
  painter.drawText(rect(), Qt::AlignCenter, text());
}

}  // namespace krx
