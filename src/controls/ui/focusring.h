// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace krx {

/// A ring in the accent around a widget that has the focus and does not show it by itself. Belongs to the widget.
class FocusRing : public QWidget {
  Q_OBJECT
 public:
  explicit FocusRing(QWidget& framed);

  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void Follow();

  QWidget& framed_;
};

}  // namespace krx
