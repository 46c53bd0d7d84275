// SPDX-License-Identifier: GPL-3.0-or-later
// A library for LD_PRELOAD, for tests only: operates controls of a graphical program by their object names, each as
// soon as it is enabled. KRX_PRESS is a list such as "Main_Form_Tab=3 chkHeater1": a tab is selected by its number, a
// button is clicked.

#include <QAbstractButton>
#include <QApplication>
#include <QStringList>
#include <QTabWidget>
#include <QTimer>

namespace {

void Start() {
  auto* const timer = new QTimer(QCoreApplication::instance());
  QStringList left = qEnvironmentVariable("KRX_PRESS").split(' ', Qt::SkipEmptyParts);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, left]() mutable {
    if (left.isEmpty()) return timer->stop();
    const QString name = left.front().section('=', 0, 0);
    for (QWidget* const widget : QApplication::allWidgets()) {
      if (widget->objectName() != name || !widget->isVisible() || !widget->isEnabled()) continue;
      const QString value = left.takeFirst().section('=', 1);
      if (auto* const tabs = qobject_cast<QTabWidget*>(widget)) return tabs->setCurrentIndex(value.toInt());
      // The click may not return before the program ends; the timer keeps running.
      return static_cast<QAbstractButton*>(widget)->click();
    }
  });
  timer->start(50);
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(Start)
