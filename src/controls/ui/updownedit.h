// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLineEdit;

namespace krx {

/// A text field with an up-down control beside it. The text is free; the control steps its leading number by 1 within
/// the range, by mouse and by the up and down keys.
class UpDownEdit : public QWidget {
  Q_OBJECT

 public:
  /// name: object name of the text field; its buttons are `name` + "Up" and "Down".
  UpDownEdit(const QString& name, const QString& accessibleName, int minimum, int maximum);

  QString Text() const;
  /// Emits nothing.
  void SetText(const QString& text);
  QLineEdit& Field() { return *field_; }

 signals:
  /// The user typed or stepped.
  void Edited(const QString& text);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Step(int by);

  QLineEdit* field_;
  int minimum_;
  int maximum_;
};

}  // namespace krx
