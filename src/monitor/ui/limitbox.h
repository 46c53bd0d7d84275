// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractSpinBox>

class QLabel;

namespace krx {

/// The box of one limit: a free text with two arrows. It judges nothing. What is typed goes out when its entry is
/// finished, and a refused text stays, with what may be typed beside it, until it is corrected or given up with Escape.
class LimitBox : public QAbstractSpinBox {
  Q_OBJECT
 public:
  LimitBox(const QString& name, const QString& accessibleName);

  /// Below the box; hidden unless a text was refused. Its owner is whoever lays it out.
  QLabel* RangeLabel() { return range_; }

  /// The limit as it stands. A text that the user is at work on, or that was refused, stays while the limit is the
  /// same.
  void ShowLimit(const QString& limit);
  /// The entry has been dealt with: the next ShowLimit replaces it.
  void Release();
  /// Again while IsRefused: the range has changed.
  void Refuse(const QString& range);
  bool IsRefused() const;

  void stepBy(int steps) override;
  QSize sizeHint() const override;

 signals:
  void Typed(const QString& text);
  void Stepped(int steps);

 protected:
  StepEnabled stepEnabled() const override;
  QValidator::State validate(QString& text, int& position) const override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Finish();
  void Put(const QString& limit);
  void HideRange();

  QLabel* range_;
  QString limit_;
  bool released_ = true;
  bool finishing_ = false;
};

}  // namespace krx
