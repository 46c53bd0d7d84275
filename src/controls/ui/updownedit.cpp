// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/updownedit.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>
#include <algorithm>

namespace krx {

using namespace Qt::StringLiterals;

UpDownEdit::UpDownEdit(const QString& name, const QString& accessibleName, int minimum, int maximum)
    : field_(new QLineEdit), minimum_(minimum), maximum_(maximum) {
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  field_->setObjectName(name);
  field_->setAccessibleName(accessibleName);
  field_->installEventFilter(this);
  setFocusProxy(field_);
  layout->addWidget(field_, 1);
  const auto addButton = [&](Qt::ArrowType arrow, const QString& suffix, int by) {
    auto* const button = new QToolButton;
    button->setObjectName(name + suffix);
    button->setArrowType(arrow);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);  // the keys of the field step as well
    button->setAccessibleName(accessibleName + (by > 0 ? u" up"_s : u" down"_s));
    layout->addWidget(button);
    connect(button, &QToolButton::clicked, this, [this, by] { Step(by); });
  };
  addButton(Qt::UpArrow, u"Up"_s, 1);
  addButton(Qt::DownArrow, u"Down"_s, -1);
  connect(field_, &QLineEdit::textEdited, this, &UpDownEdit::Edited);
}

QString UpDownEdit::Text() const {
  return field_->text();
}

void UpDownEdit::SetText(const QString& text) {
  field_->setText(text);
}

void UpDownEdit::Step(int by) {
  const int value = std::clamp(field_->text().section(u'.', 0, 0).toInt() + by, minimum_, maximum_);
  SetText(QString::number(value));
  emit Edited(field_->text());
}

bool UpDownEdit::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Up || key == Qt::Key_Down) {
      Step(key == Qt::Key_Up ? 1 : -1);
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace krx
