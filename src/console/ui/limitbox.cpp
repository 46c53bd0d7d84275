// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/limitbox.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTimerEvent>
#include <QWheelEvent>
#include <utility>

#include "console/ui/labels.h"

namespace krx {
namespace {

constexpr int retryMilliseconds = 1;  ///< between two ticks there are only some milliseconds

}  // namespace

LimitBox::LimitBox(const char* name, const QString& accessibleName) {
  const QByteArray rangeName = QByteArray("lbl") + QByteArray(name).mid(3) + "Range";  // of "txtHighLimit"
  setObjectName(QString::fromLatin1(name));
  setAccessibleName(accessibleName);
  setFocusPolicy(Qt::StrongFocus);
  setEnabled(false);
  range_ = MakeLabel(rangeName.constData(), 0.9, false);
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
  range_->hide();
  if (text() != limit) lineEdit()->setText(limit);
}

void LimitBox::Release() {
  released_ = true;
}

void LimitBox::Refuse(const QString& range) {
  range_->setText(QStringLiteral("⚠ ") + range);
  range_->show();
  setAccessibleDescription(range);
}

void LimitBox::Finish() {
  if (text() == limit_) {
    range_->hide();
  } else {
    emit Typed(text());
  }
}

void LimitBox::stepBy(int steps) {
  Finish();  // what was typed comes first
  if (range_->isHidden()) emit Stepped(steps);
}

QAbstractSpinBox::StepEnabled LimitBox::stepEnabled() const {
  return StepUpEnabled | StepDownEnabled;
}

QValidator::State LimitBox::validate(QString&, int&) const {
  return QValidator::Acceptable;
}

QSize LimitBox::sizeHint() const {
  // Room for the arrows and the text; a wider layout gives it more.
  const int text = fontMetrics().horizontalAdvance(QStringLiteral("20000 RPM"));
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

void LimitBox::timerEvent(QTimerEvent* event) {
  // The toolkit repeats a held arrow by a timer, and timers go on inside a transfer, where nothing may be written. Put
  // off and not dropped: on the SMBus nearly every repeat falls into one.
  if (event->timerId() != retry_) {
    if (!busy_ || !busy_()) {
      QAbstractSpinBox::timerEvent(event);
      return;
    }
    repeat_ = event->timerId();
    if (retry_ == 0) retry_ = startTimer(retryMilliseconds, Qt::PreciseTimer);
    return;
  }
  if (busy_()) return;
  killTimer(std::exchange(retry_, 0));
  QTimerEvent put(repeat_);
  QAbstractSpinBox::timerEvent(&put);  // which knows its timer, unless the arrow was let go meanwhile
}

}  // namespace krx
