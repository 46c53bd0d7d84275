// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

namespace krx {

/// A text to read: resizable, selectable, not to be changed.
class TextDialog : public QDialog {
  Q_OBJECT
 public:
  TextDialog(const QString& name, const QString& title, const QString& text, QWidget* parent = nullptr);

  /// Shows one that deletes itself when it is closed. Does not block.
  static TextDialog* Open(QWidget* parent, const QString& name, const QString& title, const QString& text);
};

}  // namespace krx
