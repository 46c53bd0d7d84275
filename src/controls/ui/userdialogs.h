// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <string>

#include "link/commserror.h"

namespace krx {

/// The modal boxes and file dialogs, behind an interface so that a test answers them. An empty title stands for the
/// program's name. The program's go through GatedDialogs, so that none opens inside a transfer; a box may then come
/// only after the call has returned.
class UserDialogs {
 public:
  virtual ~UserDialogs() = default;

  /// Told of every transfer that failed in a user's action, beside the box that it shows.
  std::function<void(const CommsError& error)> LinkFault;

  /// Runs every user's action, by its name (empty: that of the control pressed), and must call it.
  std::function<void(const std::string& name, const std::function<void()>& action)> Around;

  virtual void Critical(const QString& text, const QString& title = {}) = 0;
  virtual void Exclamation(const QString& text, const QString& title = {}) = 0;
  virtual void Information(const QString& text, const QString& title = {}) = 0;

  /// A question with a button for yes and "Cancel", which is what Escape and Return mean. True when yes was pressed.
  virtual bool Ask(const QString& text, const QString& yes, const QString& title = {}) = 0;

  /// The chosen file's path, nothing when the dialog was cancelled. Filters are pairs of name and pattern with a bar
  /// between: "Text Files (*.sav)|*.sav". The name is returned as typed, no ending is added.
  virtual std::optional<QString> SaveFile(const QString& filter, const QString& proposedName = {}) = 0;
  virtual std::optional<QString> OpenFile(const QString& filter, const QString& proposedName = {}) = 0;
};

/// The toolkit's boxes and dialogs, over the active window.
class QtUserDialogs : public UserDialogs {
 public:
  void Critical(const QString& text, const QString& title = {}) override;
  void Exclamation(const QString& text, const QString& title = {}) override;
  void Information(const QString& text, const QString& title = {}) override;
  bool Ask(const QString& text, const QString& yes, const QString& title = {}) override;
  std::optional<QString> SaveFile(const QString& filter, const QString& proposedName = {}) override;
  std::optional<QString> OpenFile(const QString& filter, const QString& proposedName = {}) override;
};

/// "Text Files (*.sav)|*.sav" as the toolkit writes it: "Text Files (*.sav)"; several pairs are parted by ";;".
QString ToolkitFilter(const QString& filter);

/// Runs what a user's click asks for and shows a failure in one box, so that no exception leaves the slot. True when
/// the action came to its end. name: where the handler knows better than the control pressed what it does.
bool RunUserAction(UserDialogs& dialogs, const std::function<void()>& action, const std::string& name = {});

}  // namespace krx
