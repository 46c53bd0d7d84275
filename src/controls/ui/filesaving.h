// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QSaveFile>
#include <QString>
#include <optional>

namespace krx {

class UserDialogs;

/// A file that is replaced when all is written and committed, and left as it was by whatever comes between. The
/// toolkit's own class, but none of the bytes waits in its buffer: it does not notice when the last of them find the
/// disk full.
class WholeFile : public QSaveFile {
 public:
  explicit WholeFile(const QString& fileName) : QSaveFile(fileName) {}
  bool Open() { return open(QIODevice::WriteOnly | QIODevice::Unbuffered); }
  /// False when not all could be written; errorString tells why.
  bool WriteAll(QByteArrayView bytes);
};

/// Asks for the name of a file to write, as UserDialogs::SaveFile does. Where the user typed no ending it gets that of
/// the proposed name, and a file that is only met by the completed name is asked about before it is replaced.
std::optional<QString> AskSaveName(UserDialogs& dialogs, const QString& filter, const QString& proposedName);

/// Replaces the file by these bytes, or leaves it as it was. Empty when they are saved, else the reason why not.
QString SaveWhole(const QString& fileName, const QByteArray& bytes);

/// Saves and says so: the status bar's "Saved to ..." is the result, empty after a box said what failed. `what` begins
/// that box's text: "The journal".
QString SaveAndTell(UserDialogs& dialogs, const QString& what, const QString& fileName, const QByteArray& bytes);

/// The two texts of it.
QString SavedText(const QString& fileName);
QString NotSavedText(const QString& what, const QString& reason);

}  // namespace krx
