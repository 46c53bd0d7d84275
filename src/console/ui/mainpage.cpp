// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/mainpage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "console/ui/resources.h"

namespace krx {

using namespace Qt::StringLiterals;

BoardPicture::BoardPicture(QWidget* parent) : QWidget(parent) {
  InitResources();
  picture_.load(u":/console/board.svg"_s);
  setObjectName(u"picBoard"_s);
  setAccessibleName(u"Picture of the evaluation board"_s);
  setMinimumSize(fontMetrics().height() * 20, fontMetrics().height() * 12);
}

void BoardPicture::paintEvent(QPaintEvent*) {
  const QSizeF room = size();
  const QSizeF fitted = QSizeF(picture_.defaultSize()).scaled(room, Qt::KeepAspectRatio);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  picture_.render(&painter,
                  QRectF(QPointF((room.width() - fitted.width()) / 2, (room.height() - fitted.height()) / 2), fitted));
}

MainPage::MainPage(QWidget* parent) : QWidget(parent), connection_(new QLabel) {
  auto* about = new QPushButton(u"About"_s);
  about->setObjectName(u"Command3"_s);
  about->setAccessibleName(u"About"_s);
  connect(about, &QPushButton::clicked, this, &MainPage::AboutRequested);
  connection_->setObjectName(u"lblConnection"_s);

  auto* below = new QHBoxLayout;
  below->addWidget(connection_);
  below->addStretch();
  below->addWidget(about);
  auto* column = new QVBoxLayout(this);
  column->addWidget(new BoardPicture, 1);
  column->addLayout(below);
}

void MainPage::ShowConnection(const QString& connection) {
  connection_->setText(connection);
}

}  // namespace krx
