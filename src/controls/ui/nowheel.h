// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace krx {

/// An event filter for boxes and lists whose value would be written: the wheel passes on to what lies behind them, so
/// that scrolling a page never changes a setting.
class NoWheel : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

/// Installs the filter on a widget, which owns it.
void IgnoreWheel(QWidget& widget);

}  // namespace krx
