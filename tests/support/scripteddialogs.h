// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "controls/ui/userdialogs.h"

namespace krx {

/// Answers the file dialogs from a list (an empty list means cancelled) and records every text: a box as
/// "critical|text|title", a file dialog as "save|filter|proposed name".
class ScriptedDialogs : public UserDialogs {
 public:
  std::vector<std::string> Shown;
  std::deque<std::string> Files;
  bool Yes = false;  ///< the answer to every question
  /// Called while a box or dialog is open, in place of its event loop.
  std::function<void()> WhileOpen;

  void Critical(const QString& text, const QString& title = {}) override { Record("critical", text, title); }
  void Exclamation(const QString& text, const QString& title = {}) override { Record("exclamation", text, title); }
  void Information(const QString& text, const QString& title = {}) override { Record("information", text, title); }
  /// Answers with `Yes`.
  bool Ask(const QString& text, const QString& yes, const QString&) override {
    Record("ask", text, yes);
    return Yes;
  }
  std::optional<QString> SaveFile(const QString& filter, const QString& proposedName = {}) override {
    return Answer("save", filter, proposedName);
  }
  std::optional<QString> OpenFile(const QString& filter, const QString& proposedName = {}) override {
    return Answer("open", filter, proposedName);
  }

 private:
  void Record(const std::string& kind, const QString& first, const QString& second) {
    Shown.push_back(kind + "|" + first.toStdString() + "|" + second.toStdString());
    if (WhileOpen) WhileOpen();
  }
  std::optional<QString> Answer(const std::string& kind, const QString& filter, const QString& proposedName) {
    Record(kind, filter, proposedName);
    if (Files.empty()) return std::nullopt;
    const QString file = QString::fromStdString(Files.front());
    Files.pop_front();
    return file;
  }
};

}  // namespace krx
