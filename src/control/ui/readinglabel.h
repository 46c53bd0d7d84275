// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include "monitor/livingvalue.h"

class QLabel;

namespace krx {

/// A living value with its unit muted behind it. Old: muted, and the tool tip says so.
class ReadingLabel : public QWidget {
  Q_OBJECT
 public:
  /// name: object name of the label with the value. subject: what a screen reader names with the value. scale: of the
  /// window's font.
  ReadingLabel(const QString& name, const QString& subject, double scale = 1, bool bold = true,
               Qt::AlignmentFlag side = Qt::AlignRight);

  void Show(const LivingValue& value);

 private:
  QString subject_;
  QLabel* value_;
  QLabel* unit_;
};

}  // namespace krx
