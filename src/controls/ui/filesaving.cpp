// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/filesaving.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <cerrno>

#include "controls/ui/userdialogs.h"
#include "link/failuretext.h"

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

// The toolkit keeps only its own text of a failure; the number behind it is the one that the system has left.
bool WholeFile::Checked(bool done) {
  if (!done && error_ == 0) error_ = errno;
  return done;
}

bool WholeFile::Open() {
  errno = 0;
  return Checked(open(QIODevice::WriteOnly | QIODevice::Unbuffered));
}

bool WholeFile::WriteAll(QByteArrayView bytes) {
  while (!bytes.isEmpty()) {
    errno = 0;
    const qint64 written = write(bytes.data(), bytes.size());
    if (!Checked(written > 0)) return false;
    bytes = bytes.sliced(written);
  }
  return true;
}

bool WholeFile::Commit() {
  errno = 0;
  return Checked(commit());
}

QString WholeFile::Reason() const {
  return error_ == 0 ? u"the file cannot be written"_s : QString::fromStdString(SystemErrorText(error_));
}

QString SaveWhole(const QString& fileName, const QByteArray& bytes) {
  WholeFile file(fileName);
  return file.Open() && file.WriteAll(bytes) && file.Commit() ? QString() : file.Reason();
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
