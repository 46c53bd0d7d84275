// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/originfilter.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace krx {

OriginFilter::OriginFilter(BusJournal& journal) : journal_(journal) {
  QCoreApplication::instance()->installEventFilter(this);
}

bool OriginFilter::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type != QEvent::MouseButtonPress && type != QEvent::MouseButtonRelease && type != QEvent::KeyPress) return false;
  // Parts of a control have no name of their own.
  for (const QObject* object = watched; object != nullptr; object = object->parent()) {
    if (!object->isWidgetType() || object->objectName().isEmpty() || object->objectName().startsWith("qt_")) continue;
    journal_.SetOrigin(object->objectName().toStdString());
    break;
  }
  return false;
}

}  // namespace krx
