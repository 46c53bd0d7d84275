// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/ui/originfilter.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QEvent>
#include <QKeyEvent>
#include <QTabWidget>
#include <QWidget>
#include <array>
#include <string_view>

#include "controls/ui/texts.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

struct NamedControl {
  std::string_view ObjectName;  ///< with "*" at its end: the number that follows in the name is put behind the words
  std::string_view Words;
};

/// The controls whose caption says too little or changes, and those that stand for the same thing.
constexpr std::array<NamedControl, 17> namedControls{{
    {"Text6", "Read/Write: hex box"},
    {"Command4", "Read/Write: hex box"},
    {"Text7", "Read/Write: decimal box"},
    {"Command5", "Read/Write: decimal box"},
    {"bit*", "Read/Write: bit "},
    {"lstRegisterRows", "Read/Write: list"},
    {"SSRibbon5", "Continuous reading"},
    {"limits_gauge", "Visual Display: limits"},
    {"txtHighLimit", "Visual Display: high limit"},
    {"txtLowLimit", "Visual Display: low limit"},
    {"analog_output_slider", "Visual Display: duty slider"},
    {"Command1", "Easy Setup"},
    {"cmdFanTest", "Fan Test Setup"},
    {"cmdGlitchTest", glitchTestOrigin},
    {"cmdUndoLast", undoOrigin},
    {"cmdUndoMark", undoOrigin},
    {"cmdUndoWrite", undoOrigin},
}};

constexpr std::array<std::pair<std::string_view, std::string_view>, 3> timers{{
    {"visual_timer", "Reading cycle"},
    {"tmrGlitch", glitchTestOrigin},
    {"Continuous reading", "Continuous reading"},
}};

// The system repeats a held key as a release and a press of the same moment.
constexpr quint64 repeatMilliseconds = 5;
constexpr int keyEndMilliseconds = 500;

QString TableName(const QString& objectName) {
  for (const NamedControl& row : namedControls) {
    const QString name = QtText(row.ObjectName);
    if (objectName == name) return QtText(row.Words);
    if (!name.endsWith(u'*') || !objectName.startsWith(name.chopped(1))) continue;
    const QString number = objectName.mid(name.size() - 1);
    bool isNumber = false;
    number.toInt(&isNumber);
    if (isNumber) return QtText(row.Words) + number;
  }
  return {};
}

QString Plain(QString caption) {
  return caption.remove(u'&').remove(u"..."_s).trimmed();
}

/// The page of the main window, or the window.
QString PlaceOf(const QWidget& control) {
  for (const QWidget* widget = &control; widget != nullptr; widget = widget->parentWidget()) {
    if (const auto* const dock = qobject_cast<const QDockWidget*>(widget)) return dock->windowTitle();
    if (widget->isWindow()) return widget->windowTitle();
    const QWidget* const stack = widget->parentWidget();
    auto* const tabs = stack == nullptr ? nullptr : qobject_cast<const QTabWidget*>(stack->parentWidget());
    if (tabs == nullptr || tabs->objectName() != u"Main_Form_Tab"_s) continue;
    if (const int page = tabs->indexOf(widget); page >= 0) return tabs->tabText(page).trimmed();
  }
  return {};
}

QString CaptionOf(const QWidget& control) {
  if (const auto* const button = qobject_cast<const QAbstractButton*>(&control)) return Plain(button->text());
  return control.accessibleName();
}

}  // namespace

std::string ControlName(const QObject& control) {
  if (const auto* const action = qobject_cast<const QAction*>(&control)) return Plain(action->text()).toStdString();
  // Parts of a control have no name of their own.
  for (const QObject* object = &control; object != nullptr; object = object->parent()) {
    if (const QString words = TableName(object->objectName()); !words.isEmpty()) return words.toStdString();
    const auto* const widget = qobject_cast<const QWidget*>(object);
    if (widget == nullptr) continue;
    const QString caption = CaptionOf(*widget);
    if (!caption.isEmpty()) return (PlaceOf(*widget) + u": "_s + caption).toStdString();
    if (widget->isWindow()) return widget->windowTitle().toStdString();
  }
  return {};
}

OriginFilter::OriginFilter(BusJournal& journal) : journal_(journal) {
  // Before the first press there is only the search for the chip.
  journal_.EndGesture(journal_.BeginGesture("Search"));
  // A timer, so that the handlers of the event itself still belong to the gesture.
  end_.setSingleShot(true);
  connect(&end_, &QTimer::timeout, this, [this] { journal_.EndGesture(gesture_); });
  QCoreApplication::instance()->installEventFilter(this);
}

bool OriginFilter::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
      if (Repeats(*static_cast<QKeyEvent*>(event))) {
        end_.stop();
      } else {
        Begin(*watched);
      }
      break;
    case QEvent::KeyRelease: {
      const auto& key = *static_cast<QKeyEvent*>(event);
      if (key.isAutoRepeat()) break;
      releasedKey_ = key.key();
      releasedAt_ = key.timestamp();
      end_.start(keyEndMilliseconds);
      break;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      Begin(*watched);
      break;
    case QEvent::Shortcut:
      Begin(*watched);
      end_.start(0);
      break;
    case QEvent::MouseButtonRelease:
      end_.start(0);
      break;
    default:
      break;
  }
  return false;
}

void OriginFilter::Begin(const QObject& control) {
  const std::string name = ControlName(control);
  if (name.empty()) return;
  end_.stop();
  gesture_ = journal_.BeginGesture(name);
}

bool OriginFilter::Repeats(const QKeyEvent& press) const {
  // Where input was held back during a transfer the toolkit does not know a repetition for one.
  const bool followsRelease =
      press.timestamp() != 0 && press.key() == releasedKey_ && press.timestamp() - releasedAt_ <= repeatMilliseconds;
  return press.isAutoRepeat() || followsRelease;
}

void RunTick(BusJournal& journal, const std::string& timer, const std::function<void()>& tick) {
  std::string name = timer;
  for (const auto& [timerName, words] : timers) {
    if (timer == timerName) name = words;
  }
  if (name == glitchTestOrigin) {
    const BusJournal::ActionScope scope(journal, name, BusJournal::ActionScope::Run::Continued);
    tick();
  } else {
    const BusJournal::OriginScope scope(journal, name);
    tick();
  }
}

}  // namespace krx
