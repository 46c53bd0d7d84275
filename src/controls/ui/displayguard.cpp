// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/displayguard.h"

#include <QGuiApplication>
#include <QString>
#include <cstdio>
#include <cstdlib>

#include "link/printable.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

void Say(const QString& text) {
  std::fprintf(stderr, "krx5580-console: %s\n", qPrintable(text));
}

/// The setting that selects the display.
QString Display() {
  for (const char* const name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"}) {
    const QString value = qEnvironmentVariable(name);
    if (!value.isEmpty()) return QString::fromStdString(Printable(name + ("=" + value.toStdString())));
  }
  return u"no display"_s;
}

[[noreturn]] void EndWithoutDisplay() {
  Say(u"cannot open a window (%1); krx5580 watch shows the same readings in the terminal"_s.arg(Display()));
  std::fflush(nullptr);
  // There are no pending restores yet, and the toolkit's objects are only partly constructed.
  std::_Exit(1);
}

void OnMessage(QtMsgType type, const QMessageLogContext&, const QString& message) {
  // The toolkit's messages are about its plugins and its installation.
  if (qEnvironmentVariableIsSet("QT_DEBUG_PLUGINS")) Say(message.trimmed());
  if (type == QtFatalMsg) EndWithoutDisplay();
}

}  // namespace

DisplayGuard::DisplayGuard() {
  qInstallMessageHandler(OnMessage);
}

DisplayGuard::~DisplayGuard() {
  qInstallMessageHandler(nullptr);
}

void DisplayGuard::Release() {
  if (QGuiApplication::screens().isEmpty()) EndWithoutDisplay();
  qInstallMessageHandler(nullptr);
}

}  // namespace krx
