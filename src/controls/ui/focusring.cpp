// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/focusring.h"

#include <QEvent>
#include <QPainter>

#include "controls/ui/palette.h"

namespace krx {
namespace {

constexpr double ringWidth = 2;
constexpr double ringRadius = 4;

}  // namespace

FocusRing::FocusRing(QWidget& framed) : QWidget(&framed), framed_(framed) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  framed.installEventFilter(this);
  Follow();
}

void FocusRing::Follow() {
  setGeometry(framed_.rect());
  setVisible(framed_.hasFocus());
  raise();
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type == QEvent::FocusIn || type == QEvent::FocusOut || type == QEvent::Resize) Follow();
  return QWidget::eventFilter(watched, event);
}

void FocusRing::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Palette::For(*this).accent, ringWidth));
  const double inset = ringWidth / 2;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), ringRadius, ringRadius);
}

}  // namespace krx
