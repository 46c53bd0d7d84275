// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ui/card.h"
#include "panel/registerpanel.h"

class QGridLayout;
class QLineEdit;

namespace krx {

class UpdateButton;

/// The two boxes for a whole byte with their buttons, what has become of each entry, and what to mind.
class EntryCard : public Card {
  Q_OBJECT
 public:
  /// readOnly: nothing is written in this run.
  explicit EntryCard(bool readOnly);

  /// writable: the boxes take input.
  void Show(const RegisterPanel& panel, bool writable);

 signals:
  void HexTyped(const QString& text);
  void DecimalTyped(const QString& text);
  void HexWriteRequested();
  void DecimalWriteRequested();

 private:
  struct Entry {
    QLineEdit* Box = nullptr;
    UpdateButton* Button = nullptr;
    StateMark* State = nullptr;
    QLabel* Word = nullptr;
  };
  Entry AddEntry(QGridLayout& grid, const QString& caption, const char* box, const char* button);
  static void ShowEntry(const Entry& entry, const std::string& text, EntryState state, const QString& written);

  Entry hex_;
  Entry decimal_;
  QLabel* caution_ = nullptr;
};

}  // namespace krx
