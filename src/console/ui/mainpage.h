// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSvgRenderer>
#include <QWidget>

class QLabel;

namespace krx {

/// Draws the board's picture as large as the room allows, without distorting it.
class BoardPicture : public QWidget {
  Q_OBJECT
 public:
  explicit BoardPicture(QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QSvgRenderer picture_;
};

/// Tab "Main": the board and the way to the About box.
class MainPage : public QWidget {
  Q_OBJECT
 public:
  explicit MainPage(QWidget* parent = nullptr);

  /// Medium and address, as the status bar names them.
  void ShowConnection(const QString& connection);

 signals:
  void AboutRequested();

 private:
  QLabel* connection_;
};

}  // namespace krx
