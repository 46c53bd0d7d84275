// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace krx {

/// Tab "Read/Write".
class ReadWritePage : public QWidget {
  Q_OBJECT
 public:
  explicit ReadWritePage(QWidget* parent = nullptr);
};

}  // namespace krx
