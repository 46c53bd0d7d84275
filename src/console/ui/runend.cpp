// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/runend.h"

#include <QDir>
#include <ostream>

#include "board/fantests.h"
#include "controls/ui/savingbar.h"
#include "controls/ui/userdialogs.h"

namespace krx {

using namespace Qt::StringLiterals;

QStringList RunEnd::Leaves() const {
  QStringList lines;
  if (glitch_.Running()) lines << u"Glitch test stopped: "_s + QString::fromStdString(glitch_.Leaves());
  const QString file = saving_.Unsaved();
  if (!file.isEmpty()) lines << u"Not saved: "_s + QDir::toNativeSeparators(file);
  return lines;
}

bool RunEnd::MayClose(UserDialogs& dialogs) const {
  const QStringList left = Leaves();
  return left.isEmpty() || dialogs.Ask(u"If you exit now:\n\n"_s + left.join(u'\n'), u"Exit"_s);
}

void RunEnd::GiveUp(std::ostream& err) {
  for (const QString& line : Leaves()) err << line.toStdString() << '\n';
  saving_.GiveUp();
}

}  // namespace krx
