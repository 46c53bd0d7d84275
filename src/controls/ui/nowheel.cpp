// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/nowheel.h"

#include <QEvent>
#include <QWidget>

namespace krx {

bool NoWheel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Wheel) return QObject::eventFilter(watched, event);
  event->ignore();
  return true;
}

void IgnoreWheel(QWidget& widget) {
  widget.setFocusPolicy(Qt::StrongFocus);
  widget.installEventFilter(new NoWheel(&widget));
}

}  // namespace krx
