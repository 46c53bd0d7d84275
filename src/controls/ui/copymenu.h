// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

namespace krx {

/// The text that a widget offers to copy, where it is not the text of a label: a QString property of this name.
inline constexpr const char* copyTextProperty = "copyText";

/// Offers "Copy" in the context menu of every label and of what has the property above, and copies the selected rows
/// of tables, columns separated by tabs. To be installed as an event filter of the application.
class CopyMenu : public QObject {
  Q_OBJECT
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  static void Offer(QWidget& widget, const QString& caption, const QString& text, const QPoint& position);
};

}  // namespace krx
