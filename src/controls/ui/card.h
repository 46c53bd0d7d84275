// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGroupBox>

#include "controls/ui/statemark.h"

class QHBoxLayout;
class QLabel;
class QVBoxLayout;

namespace krx {

/// A titled group of widgets: a card on the window, or a section inside a card. Its head is one line: title, a muted
/// note behind it, a state at the right. The title is the group's accessible name.
class Card : public QGroupBox {
  Q_OBJECT
 public:
  enum class Kind { Card, Section };

  /// An empty title makes a card without a head, until something is added to it.
  explicit Card(const QString& title, Kind kind = Kind::Card, QWidget* parent = nullptr);

  /// Where the group's contents go, from top to bottom.
  QVBoxLayout& Body() const { return *body_; }
  /// The head's line, for what the functions below do not know. What is added stands at its right end.
  QHBoxLayout& Head() const { return *head_; }

  /// Muted text behind the title. Empty: none.
  void SetNote(const QString& note);
  /// The state at the right of the head, a mark and its word.
  void SetState(Mark mark, const QString& word, bool muted = false);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  Kind kind_;
  QWidget* headRow_;
  QHBoxLayout* head_;
  QLabel* note_;
  StateMark* mark_;
  QLabel* word_;
  QVBoxLayout* body_;
};

}  // namespace krx
