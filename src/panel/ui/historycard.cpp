// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/historycard.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <cmath>
#include <utility>

#include "controls/ui/copyrows.h"
#include "controls/ui/labels.h"
#include "panel/ui/cardtable.h"

namespace krx {
using namespace Qt::StringLiterals;
namespace {

constexpr int refreshMilliseconds = 200;

QDateTime StartOf(BusJournal& journal) {
  return QDateTime::currentDateTime().addMSecs(-std::llround(journal.Seconds() * 1000));
}

}  // namespace

HistoryCard::HistoryCard(const Link& link, BusJournal& journal, bool readOnly)
    : Card(u"History of this register"_s),
      readOnly_(readOnly),
      journal_(journal),
      history_(link, journal),
      model_(history_, StartOf(journal)),
      table_(new QTableView),
      undo_(new QPushButton(u"Undo"_s)),
      words_(MakeLabel(u"lblUndoOffer"_s, 0.92, false, true)) {
  undo_->setObjectName(u"cmdUndoWrite"_s);
  undo_->setEnabled(false);
  Head().addWidget(undo_);
  table_->setObjectName(u"tblRegisterHistory"_s);
  table_->setAccessibleName(u"History of this register"_s);
  table_->setModel(&model_);
  MakeCardTable(*table_);
  MakeRowsCopyable(*table_);
  table_->setTabKeyNavigation(false);
  // Takes what the cards above leave, three rows at least.
  table_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
  table_->setMinimumHeight(table_->horizontalHeader()->height() + 3 * table_->verticalHeader()->defaultSectionSize());
  QHeaderView& header = *table_->horizontalHeader();
  header.setSectionResizeMode(QHeaderView::Fixed);
  header.setSectionResizeMode(HistoryModel::Origin, QHeaderView::Stretch);
  const int room = fontMetrics().height();
  table_->setColumnWidth(HistoryModel::Time, fontMetrics().horizontalAdvance(u"00:00:00.000"_s) + room);
  table_->setColumnWidth(HistoryModel::Hex, fontMetrics().horizontalAdvance(u"Hex"_s) + room);
  table_->setColumnWidth(HistoryModel::Changed, fontMetrics().horizontalAdvance(u"bits 7, 6, 5"_s) + room);
  words_->setWordWrap(true);
  // The rows reach to the card's edges.
  const QMargins margins = layout()->contentsMargins();
  layout()->setContentsMargins(1, margins.top(), 1, margins.bottom());
  Head().setContentsMargins(margins.left(), 0, margins.right(), 0);
  words_->setContentsMargins(margins.left(), 0, margins.right(), 0);
  Body().addWidget(table_, 1);
  Body().addWidget(words_);
  connect(undo_, &QPushButton::clicked, this, &HistoryCard::Undo);
  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this](const QModelIndex& row) {
    chosen_ = row.isValid() ? history_.Rows()[static_cast<std::size_t>(row.row())].Number : 0;
    OfferUndo();
  });
  refresh_.setInterval(refreshMilliseconds);
  connect(&refresh_, &QTimer::timeout, this, &HistoryCard::Refresh);
}

void HistoryCard::showEvent(QShowEvent* event) {
  Card::showEvent(event);
  Refresh();
  refresh_.start();
}

void HistoryCard::hideEvent(QHideEvent* event) {
  refresh_.stop();
  Card::hideEvent(event);
}

void HistoryCard::Show(std::uint8_t reg) {
  if (std::exchange(register_, reg) != reg) chosen_ = 0;
  Refresh();
}

void HistoryCard::Refresh() {
  const std::uint64_t chosen = chosen_;
  const bool other = model_.Follow(register_);
  if (const auto row = model_.RowOf(chosen); other && chosen != 0 && row) table_->selectRow(*row);
  // An offer looks through all that can be undone; nothing is to be said anew while there are readings only.
  const std::uint64_t newest = journal_.UserWrites().empty() ? 0 : journal_.UserWrites().back().Number;
  if (std::exchange(offeredAt_, newest) != newest || other) OfferUndo();
}

void HistoryCard::OfferUndo() {
  const auto row = chosen_ == 0 ? std::nullopt : model_.RowOf(chosen_);
  const UndoOffer offer = readOnly_
                              ? UndoOffer{false, "Read-only: nothing can have been written"}
                              : history_.OfferUndo(row ? std::optional(static_cast<std::size_t>(*row)) : std::nullopt);
  const QString words = QString::fromStdString(offer.Words);
  undo_->setEnabled(offer.Allowed);
  undo_->setToolTip(words);
  undo_->setAccessibleDescription(words);
  SetTextIfChanged(*words_, words);
}

void HistoryCard::Undo() {
  // What was offered may be old by a moment; then the new offer is shown instead of being carried out unread.
  const QString offered = words_->text();
  Refresh();
  OfferUndo();
  if (undo_->isEnabled() && words_->text() == offered) emit UndoRequested();
  Refresh();
  OfferUndo();
}

}  // namespace krx
