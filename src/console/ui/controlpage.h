// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace krx {

/// Tab "Control".
class ControlPage : public QWidget {
  Q_OBJECT
 public:
  explicit ControlPage(QWidget* parent = nullptr);
};

}  // namespace krx
