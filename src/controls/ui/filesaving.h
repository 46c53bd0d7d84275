// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QSaveFile>
#include <QString>
#include <optional>

namespace krx {

class UserDialogs;

/// A file that is replaced when all is written and committed, and otherwise left as it was. The toolkit's class, but
/// without its buffer: it does not notice a full disk when the buffer is flushed.
class WholeFile : public QSaveFile {
 public:
  explicit WholeFile(const QString& fileName) : QSaveFile(fileName) {}
  // Each returns false on failure.
  bool Open();
  bool WriteAll(QByteArrayView bytes);
  bool Commit();
  /// Why the first failed one failed, in our words.
  QString Reason() const;

 private:
  bool Checked(bool done);

  int error_ = 0;  ///< of the system; 0: none was given
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
