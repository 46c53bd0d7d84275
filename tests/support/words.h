// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtTest>
#include <QtWidgets>
#include <functional>
#include <string>

namespace krx {

/// The visible texts of a window in order, disabled ones in brackets: "Easy Setup|(Expand Graph)".
inline std::string Words(const QWidget& window) {
  QStringList words;
  for (const auto* widget : window.findChildren<const QWidget*>()) {
    const bool labelled = qobject_cast<const QLabel*>(widget) || qobject_cast<const QAbstractButton*>(widget);
    const QString text = widget->property(labelled ? "text" : "title").toString();
    if (!text.isEmpty() && widget->isVisible()) words << (widget->isEnabled() ? text : '(' + text + ')');
  }
  return words.join('|').toStdString();
}

/// Whether a change to a visible window causes a repaint of `part`.
inline bool Repaints(QWidget& part, const std::function<void()>& change) {
  struct Counter : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::Paint) ++Paints;
      return false;
    }
    int Paints = 0;
  } counter;
  part.installEventFilter(&counter);
  do {
    counter.Paints = 0;
    QTest::qWait(20);
  } while (counter.Paints > 0);
  change();
  QTest::qWait(20);
  return counter.Paints > 0;
}

/// Among visible widgets: those that overlap, or take the focus without a name or from the mouse wheel.
inline std::string Flaws(const QWidget& window) {
  QStringList flaws;
  for (const auto* widget : window.findChildren<const QWidget*>()) {
    const QString name = widget->metaObject()->className() + (' ' + widget->objectName());
    if (!widget->isVisible() || name.contains("qt_") || widget->inherits("QCustomPlot")) continue;
    const QString spoken = widget->accessibleName() + widget->property("text").toString();
    if (widget->focusPolicy() != Qt::NoFocus && spoken.isEmpty()) flaws << name + " has no name";
    const bool stepped = widget->inherits("QAbstractSpinBox") || widget->inherits("QComboBox");
    if (stepped && widget->focusPolicy() == Qt::WheelFocus) flaws << name + " takes the focus by the wheel";
    for (const auto* other : widget->parentWidget()->findChildren<const QWidget*>(Qt::FindDirectChildrenOnly)) {
      const QRect common = other->geometry() & widget->geometry();  // a slider's margin is its style's
      if (other > widget && other->isVisible() && !other->isWindow() && common.width() > 6 && common.height() > 6)
        flaws << name + " lies over " + other->objectName();
    }
  }
  return flaws.join('\n').toStdString();
}

}  // namespace krx
