// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/windowpicture.h"

#include <QBuffer>
#include <QPixmap>
#include <QWidget>

#include "controls/ui/filesaving.h"
#include "controls/ui/userdialogs.h"

namespace krx {

using namespace Qt::StringLiterals;

QString SaveWindowPicture(QWidget& window, UserDialogs& dialogs) {
  // Before the question, whose box would lie over it.
  const QPixmap picture = window.grab();
  const auto name = AskSaveName(dialogs, u"Pictures (*.png)|*.png"_s, u"window.png"_s);
  if (!name) return {};
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!picture.save(&buffer, "PNG")) {
    dialogs.Critical(NotSavedText(u"The picture"_s, u"it could not be encoded"_s));
    return {};
  }
  return SaveAndTell(dialogs, u"The picture"_s, *name, bytes);
}

}  // namespace krx
