// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/cardtable.h"

#include <QHeaderView>
#include <QPaintEvent>
#include <QPainter>
#include <QTableView>

#include "controls/ui/palette.h"
#include "panel/ui/rowdelegate.h"

namespace krx {
namespace {

/// Titles in muted text over a thin line, without the style's buttons.
class CardHeader : public QHeaderView {
 public:
  explicit CardHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}

 protected:
  QSize sectionSizeFromContents(int section) const override {
    const QString title = model()->headerData(section, orientation(), Qt::DisplayRole).toString();
    return {fontMetrics().horizontalAdvance(title) + fontMetrics().height() + 2, height()};
  }
  void paintSection(QPainter* painter, const QRect& rect, int section) const override {
    const Palette& colours = Palette::For(*this);
    painter->fillRect(rect, colours.card);
    painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), colours.line);
    const int room = fontMetrics().height() / 2;
    const int bar = section == 0 && model()->index(0, 0).data(rowStateRole).isValid() ? rowBarWidth : 0;
    const auto alignment = model()->headerData(section, orientation(), Qt::TextAlignmentRole).value<Qt::Alignment>();
    painter->setFont(font());
    painter->setPen(colours.mutedText);
    painter->drawText(rect.adjusted(room + bar, 0, -room, -1), static_cast<int>(alignment | Qt::AlignVCenter),
                      model()->headerData(section, orientation(), Qt::DisplayRole).toString());
  }
  void paintEvent(QPaintEvent* event) override {
    QPainter(viewport()).fillRect(event->rect(), Palette::For(*this).card);
    QHeaderView::paintEvent(event);
  }
};

}  // namespace

void MakeCardTable(QTableView& table) {
  auto* const header = new CardHeader(&table);
  QFont small = header->font();
  small.setPointSizeF(small.pointSizeF() * 0.92);
  header->setFont(small);
  header->setFixedHeight(table.fontMetrics().height() * 9 / 5);
  header->setSectionsClickable(false);
  header->setHighlightSections(false);
  header->setMinimumSectionSize(1);
  table.setHorizontalHeader(header);
  table.verticalHeader()->hide();
  table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table.verticalHeader()->setMinimumSectionSize(1);
  table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() * 17 / 10);
  table.setItemDelegate(new RowDelegate(&table));
  table.setFrameShape(QFrame::NoFrame);
  table.setShowGrid(false);
  table.setWordWrap(false);
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setSelectionMode(QAbstractItemView::SingleSelection);
  table.setEditTriggers(QAbstractItemView::NoEditTriggers);
  table.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // The rows' ground is that of the card, whatever the rows leave free.
  table.setBackgroundRole(QPalette::Window);
  table.viewport()->setAutoFillBackground(false);
}

}  // namespace krx
