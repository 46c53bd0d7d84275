// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/gateddialogs.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScopedValueRollback>
#include <QStringList>
#include <QWidget>
#include <algorithm>
#include <utility>

namespace krx {

GatedDialogs::GatedDialogs(UserDialogs& shown, WaitBudget& waits, std::function<bool()> busy)
    : shown_(shown), waits_(waits), busy_(std::move(busy)) {
#ifndef QT_NO_DEBUG
  QCoreApplication::instance()->installEventFilter(this);
#endif
}

GatedDialogs::~GatedDialogs() {
  waits_.Forget(this);
}

void GatedDialogs::Critical(const QString& text, const QString& title) {
  Request(Kind::Critical, text, title);
}

void GatedDialogs::Exclamation(const QString& text, const QString& title) {
  Request(Kind::Exclamation, text, title);
}

void GatedDialogs::Information(const QString& text, const QString& title) {
  Request(Kind::Information, text, title);
}

bool GatedDialogs::Ask(const QString& text, const QString& yes, const QString& title) {
  Q_ASSERT_X(!busy_(), "GatedDialogs", "a question inside a transfer");
  return !busy_() && shown_.Ask(text, yes, title);
}

std::optional<QString> GatedDialogs::SaveFile(const QString& filter, const QString& proposedName) {
  Q_ASSERT_X(!busy_(), "GatedDialogs", "a file dialog inside a transfer");
  return busy_() ? std::nullopt : shown_.SaveFile(filter, proposedName);
}

std::optional<QString> GatedDialogs::OpenFile(const QString& filter, const QString& proposedName) {
  Q_ASSERT_X(!busy_(), "GatedDialogs", "a file dialog inside a transfer");
  return busy_() ? std::nullopt : shown_.OpenFile(filter, proposedName);
}

void GatedDialogs::Request(Kind icon, const QString& text, const QString& title) {
  const auto same = std::find_if(waiting_.begin(), waiting_.end(), [&](const Box& box) { return box.Title == title; });
  if (same == waiting_.end()) {
    waiting_.push_back({icon, {text}, title});
  } else {
    same->Icon = std::max(same->Icon, icon);
    if (!same->Texts.contains(text)) same->Texts << text;
  }
  if (busy_())
    PutOff();
  else
    OpenWaiting();
}

void GatedDialogs::PutOff() {
  if (waiting_.empty() || together_ > 0) return;
  waits_.CallAfterwards(this, [this] {
    if (busy_())
      PutOff();
    else
      OpenWaiting();
  });
}

void GatedDialogs::OpenWaiting() {
  if (open_ || together_ > 0) return;  // whoever has the open one goes on with the next
  const QScopedValueRollback open(open_, true);
  while (!waiting_.empty() && !busy_()) {
    const Box box = waiting_.front();
    waiting_.pop_front();
    Open(box);
  }
  PutOff();
}

void GatedDialogs::Open(const Box& box) {
  const QString text = box.Texts.join(u'\n');
  switch (box.Icon) {
    case Kind::Critical:
      return shown_.Critical(text, box.Title);
    case Kind::Exclamation:
      return shown_.Exclamation(text, box.Title);
    case Kind::Information:
      return shown_.Information(text, box.Title);
  }
}

bool GatedDialogs::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show && watched->isWidgetType()) {
    const auto* const widget = static_cast<QWidget*>(watched);
    Q_ASSERT_X(!(widget->isWindow() && widget->isModal() && busy_()), "GatedDialogs",
               "a modal window was shown inside a transfer");
  }
  return false;
}

}  // namespace krx
