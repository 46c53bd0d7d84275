// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/displayguard.h"

#include <QGuiApplication>
#include <QString>
#include <cstdio>
#include <cstdlib>

namespace krx {

using namespace Qt::StringLiterals;

namespace {

void Say(const QString& text) {
  std::fprintf(stderr, "krx5580-console: %s\n", qPrintable(text));
}

[[noreturn]] void EndWithoutDisplay() {
  Say(u"no window can open here; krx5580 watch shows the same readings in the terminal"_s);
  std::fflush(nullptr);
  // Nothing is owed yet, and the toolkit's own objects are half made.
  std::_Exit(1);
}

void OnMessage(QtMsgType type, const QMessageLogContext&, const QString& message) {
  // The toolkit speaks of its plugins and of installing it anew. What the plugin itself says before is the reason.
  const bool aboutPlugins = message.contains(u"platform plugin"_s);
  const bool unknownName = message.contains(u"Could not find"_s);
  if (!aboutPlugins || unknownName) Say(message.trimmed());
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
