// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

namespace krx {

/// What the program runs on, one fact a line: versions of the toolkit and the system, processor, screens.
QString SystemInformation();

/// Version, licence, and a button that shows the system information.
class AboutBox : public QDialog {
  Q_OBJECT
 public:
  explicit AboutBox(QWidget* parent = nullptr);

 private:
  void ShowSystemInformation();
};

}  // namespace krx
