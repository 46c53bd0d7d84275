// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLineEdit>
#include <QToolButton>
#include <algorithm>
#include <array>

namespace krx {

using namespace Qt::StringLiterals;

namespace {

struct WidgetRole {
  QLatin1StringView Class;
  QAccessible::Role Role;
};

constexpr std::array<WidgetRole, 6> widgetRoles{{{QLatin1StringView("krx::Indicator"), QAccessible::Graphic},
                                                 {QLatin1StringView("krx::StateMark"), QAccessible::Graphic},
                                                 {QLatin1StringView("krx::BoardPicture"), QAccessible::Graphic},
                                                 {QLatin1StringView("krx::SwitchSymbol"), QAccessible::Graphic},
                                                 {QLatin1StringView("krx::LimitGauge"), QAccessible::Dial},
                                                 {QLatin1StringView("QCustomPlot"), QAccessible::Chart}}};

QAccessibleInterface* MakeInterface(const QString& className, QObject* object) {
  auto* const widget = qobject_cast<QWidget*>(object);
  const auto* const row = std::ranges::find(widgetRoles, className, &WidgetRole::Class);
  if (widget == nullptr || row == widgetRoles.end()) return nullptr;
  return new QAccessibleWidget(widget, row->Role);  // the toolkit owns it
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(&MakeInterface);
}

void AddClearButton(QLineEdit& box) {
  box.setClearButtonEnabled(true);
  for (auto* const button : box.findChildren<QToolButton*>()) button->setAccessibleName(u"Clear"_s);
}

}  // namespace krx
