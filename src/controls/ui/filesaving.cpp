// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/filesaving.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include "controls/ui/userdialogs.h"

namespace krx {

std::optional<QString> AskSaveName(UserDialogs& dialogs, const QString& filter, const QString& proposedName) {
  auto name = dialogs.SaveFile(filter, proposedName);
  if (!name || !QFileInfo(*name).suffix().isEmpty()) return name;
  // The dialog asked about the name as it was typed, not about this one.
  while (name->endsWith(QLatin1Char('.'))) name->chop(1);
  *name += QLatin1Char('.') + QFileInfo(proposedName).suffix();
  const QString question = QCoreApplication::translate("krx", "%1 exists. Replace it?");
  if (QFileInfo::exists(*name) &&
      !dialogs.Ask(question.arg(QDir::toNativeSeparators(*name)), QCoreApplication::translate("krx", "Replace")))
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
  return QCoreApplication::translate("krx", "Saved to %1").arg(QDir::toNativeSeparators(fileName));
}

QString NotSavedText(const QString& what, const QString& reason) {
  return QCoreApplication::translate("krx", "%1 could not be saved: %2").arg(what, reason);
}

}  // namespace krx
