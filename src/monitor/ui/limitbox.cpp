// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/ui/limitbox.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QWheelEvent>

#include "controls/ui/labels.h"

namespace krx {

using namespace Qt::StringLiterals;

LimitBox::LimitBox(const QString& name, const QString& accessibleName) {
  const QString rangeName = u"lbl%1Range"_s.arg(name.mid(3));  // of "txtHighLimit"
  setObjectName(name);
  setAccessibleName(accessibleName);
  setFocusPolicy(Qt::StrongFocus);
  setEnabled(false);
  range_ = MakeLabel(rangeName, 0.9, false);
  range_->setWordWrap(true);
  range_->hide();
  connect(this, &QAbstractSpinBox::editingFinished, this, &LimitBox::Finish);
}

void LimitBox::ShowLimit(const QString& limit) {
  if (released_ || limit != limit_) Put(limit);
}

void LimitBox::Put(const QString& limit) {
  released_ = false;
  limit_ = limit;
  HideRange();
  if (text() != limit) lineEdit()->setText(limit);
}

void LimitBox::Release() {
  released_ = true;
}

void LimitBox::Refuse(const QString& range) {
  range_->setText(u"⚠ "_s + range);
  range_->show();
  setAccessibleDescription(range);
}

bool LimitBox::IsRefused() const {
  return !range_->isHidden();
}

void LimitBox::HideRange() {
  range_->hide();
  setAccessibleDescription({});
}

void LimitBox::Finish() {
  // The box that a failed write opens takes the focus, which finishes the same entry once more.
  if (finishing_) return;
  const QScopedValueRollback finishing(finishing_, true);
  if (text() == limit_) {
    HideRange();
  } else {
    emit Typed(text());
  }
}

void LimitBox::stepBy(int steps) {
  Finish();  // what was typed comes first
  if (!IsRefused()) emit Stepped(steps);
}

QAbstractSpinBox::StepEnabled LimitBox::stepEnabled() const {
  return StepUpEnabled | StepDownEnabled;
}

QValidator::State LimitBox::validate(QString&, int&) const {
  return QValidator::Acceptable;
}

QSize LimitBox::sizeHint() const {
  // Room for the arrows and the text; a wider layout gives it more.
  const int text = fontMetrics().horizontalAdvance(u"20000 RPM"_s);
  return {text + 2 * fontMetrics().height(), QAbstractSpinBox::sizeHint().height()};
}

void LimitBox::wheelEvent(QWheelEvent* event) {
  // A limit is written to the chip, so the wheel, which turns by accident, changes nothing.
  event->ignore();
}

void LimitBox::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && text() != limit_) {
    Put(limit_);
    selectAll();
    return;
  }
  QAbstractSpinBox::keyPressEvent(event);
}

}  // namespace krx
