// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/rowdelegate.h"

#include <QPainter>
#include <QVariant>

#include "controls/ui/palette.h"
#include "controls/ui/statemark.h"
#include "panel/registerpanel.h"

namespace krx {
namespace {

constexpr int unbounded = 10'000;

RowState StateOf(const QModelIndex& index) {
  return static_cast<RowState>(index.data(rowStateRole).toInt());
}

QColor BarColour(RowState state) {
  switch (state) {
    case RowState::Hovered:
      return fixedcolours::brightGreen;
    case RowState::Selected:
      return fixedcolours::darkGreen;
    case RowState::SelectedHovered:
      return fixedcolours::yellow;
    case RowState::Plain:
      break;
  }
  return {};
}

QColor Ground(const Palette& colours, const QStyleOptionViewItem& option, const QModelIndex& index) {
  const RowState state = StateOf(index);
  const bool present = index.data(presentRole).toBool();
  const bool selected = present || state == RowState::Selected || state == RowState::SelectedHovered;
  if (selected || option.state.testFlag(QStyle::State_Selected)) return colours.SelectedGround();
  return state == RowState::Hovered ? colours.HoveredGround() : colours.card;
}

void PaintBar(QPainter& painter, const Palette& colours, const QRect& cell, RowState state) {
  if (state == RowState::Plain) return;
  painter.setPen(colours.outline);
  painter.setBrush(BarColour(state));
  painter.drawRect(QRectF(cell.left() + 1.5, cell.top() + 0.5, rowBarWidth, cell.height() - 2));
}

/// A body and a bow, as high as a small letter.
void PaintLock(QPainter& painter, const Palette& colours, const QStyleOptionViewItem& option) {
  const double unit = option.fontMetrics.height() / 14.0;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(option.rect).center());
  painter.scale(unit, unit);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colours.mutedText);
  painter.drawRoundedRect(QRectF(-4, -1, 8, 6), 1, 1);
  painter.setPen(QPen(colours.mutedText, 1.5));
  painter.setBrush(Qt::NoBrush);
  painter.drawArc(QRectF(-2.5, -5, 5, 7), 0, 180 * 16);
}

}  // namespace

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& given, const QModelIndex& index) const {
  QStyleOptionViewItem option = given;
  initStyleOption(&option, index);
  const Palette& colours = Palette::For(option.palette);
  const RowState state = StateOf(index);
  painter->save();
  painter->fillRect(option.rect, Ground(colours, option, index));
  painter->fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), colours.grid);
  if (index.column() == 0) PaintBar(*painter, colours, option.rect, state);
  if (index.data(lockRole).toBool()) PaintLock(*painter, colours, option);
  painter->restore();

  const int line = option.fontMetrics.height();
  QRect room = option.rect.adjusted(line / 2, 0, -line / 2, -1);
  if (index.column() == 0 && index.data(rowStateRole).isValid()) room.setLeft(room.left() + rowBarWidth);
  if (const auto mark = static_cast<Mark>(index.data(markRole).toInt()); mark != Mark::None) {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(QPointF(room.left() + line / 4.0, QRectF(room).center().y()));
    painter->scale(0.42 * line, 0.42 * line);
    PaintMark(*painter, mark, colours);
    painter->restore();
    room.setLeft(room.left() + line * 4 / 5);
  }
  painter->save();
  painter->setFont(option.font);
  // On the ground of a selected row muted text would have too little contrast.
  const bool muted = index.data(mutedRole).toBool() && !option.state.testFlag(QStyle::State_Selected);
  painter->setPen(muted ? colours.mutedText : colours.text);
  const bool wraps = option.features.testFlag(QStyleOptionViewItem::WrapText);
  const QString text = wraps ? option.text : option.fontMetrics.elidedText(option.text, Qt::ElideRight, room.width());
  painter->drawText(room, static_cast<int>(option.displayAlignment | Qt::AlignVCenter) | (wraps ? Qt::TextWordWrap : 0),
                    text);
  painter->restore();
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& given, const QModelIndex& index) const {
  QStyleOptionViewItem option = given;
  initStyleOption(&option, index);
  const int line = option.fontMetrics.height();
  const bool wraps = option.features.testFlag(QStyleOptionViewItem::WrapText) && option.rect.width() > 0;
  const int room = wraps ? option.rect.width() - line : unbounded;
  const QSize text =
      option.fontMetrics.boundingRect(QRect(0, 0, room, unbounded), wraps ? Qt::TextWordWrap : 0, option.text).size();
  return {text.width() + line + 1, text.height() + line * 7 / 10};
}

}  // namespace krx
