// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/ui/readingtable.h"

#include <QGridLayout>
#include <QPainter>

#include "control/ui/controlchoice.h"
#include "controls/ui/labels.h"
#include "controls/ui/palette.h"

namespace krx {
namespace {

constexpr double headScale = 0.92;

}  // namespace

ReadingTable::ReadingTable(const QString& name, const QStringList& heads, int left) : left_(left) {
  setAccessibleName(name);
  grid_ = new QGridLayout(this);
  grid_->setContentsMargins(0, 0, 0, 0);
  grid_->setVerticalSpacing(1);
  for (int column = 0; column < heads.size(); ++column) {
    auto* const head = MakeLabel({}, headScale, false, true);
    head->setText(heads.at(column));
    head->setAlignment((column < left_ ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    Add(0, column, head);
  }
  for (int column = left_ - 1; column < heads.size(); ++column) grid_->setColumnStretch(column, column < left_ ? 2 : 1);
}

void ReadingTable::Add(int row, int column, QWidget* cell) {
  grid_->addWidget(cell, row, column);
}

void ReadingTable::SetCompact(bool compact) {
  grid_->setHorizontalSpacing(Lines(*this, compact ? 0.5 : 0.8));
  for (int row = 0; row < grid_->rowCount(); ++row) grid_->setRowMinimumHeight(row, Lines(*this, compact ? 1.2 : 1.45));
}

void ReadingTable::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(Palette::For(*this).line);
  for (int row = 0; row + 1 < grid_->rowCount(); ++row) {
    const int y = grid_->cellRect(row, 0).bottom() + 1;
    painter.drawLine(0, y, width(), y);
  }
}

}  // namespace krx
