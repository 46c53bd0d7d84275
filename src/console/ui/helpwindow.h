// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QTabWidget;

namespace krx {

enum class HelpPage { Shortcuts, Manual };

/// The help: the keyboard shortcuts and the manual, a page each.
class HelpWindow : public QDialog {
  Q_OBJECT
 public:
  explicit HelpWindow(QWidget* parent = nullptr);

  void ShowPage(HelpPage page);

 private:
  QTabWidget* pages_;
};

}  // namespace krx
