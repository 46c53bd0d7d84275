// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/filesaving.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include "controls/ui/userdialogs.h"

namespace krx {

using namespace Qt::StringLiterals;

std::optional<QString> AskSaveName(UserDialogs& dialogs, const QString& filter, const QString& proposedName) {
  auto name = dialogs.SaveFile(filter, proposedName);
  if (!name || !QFileInfo(*name).suffix().isEmpty()) return name;
  // The dialog asked about the name as it was typed, not about this one.
  while (name->endsWith(u'.')) name->chop(1);
  *name += u'.' + QFileInfo(proposedName).suffix();
  const QString question = u"%1 exists. Replace it?"_s;
  if (QFileInfo::exists(*name) && !dialogs.Ask(question.arg(QDir::toNativeSeparators(*name)), u"Replace"_s))
    return std::nullopt;
  return name;
}

bool WholeFile::WriteAll(QByteArrayView bytes) {
  while (!bytes.isEmpty()) {
    const qint64 written = write(bytes.data(), bytes.size());
    if (written <= 0) return false;
    bytes = bytes.sliced(written);
  }
  return true;
}

QString SaveWhole(const QString& fileName, const QByteArray& bytes) {
  WholeFile file(fileName);
  if (!file.Open() || !file.WriteAll(bytes)) return file.errorString();
  return file.commit() ? QString() : file.errorString();
}

QString SaveAndTell(UserDialogs& dialogs, const QString& what, const QString& fileName, const QByteArray& bytes) {
  const QString reason = SaveWhole(fileName, bytes);
  if (reason.isEmpty()) return SavedText(fileName);
  dialogs.Critical(NotSavedText(what, reason));
  return {};
}

QString SavedText(const QString& fileName) {
  return u"Saved to %1"_s.arg(QDir::toNativeSeparators(fileName));
}

QString NotSavedText(const QString& what, const QString& reason) {
  return u"%1 could not be saved: %2"_s.arg(what, reason);
}

}  // namespace krx
