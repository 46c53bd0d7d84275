// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/registerlist.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStackedWidget>

#include "controls/ui/accessibility.h"
#include "controls/ui/labels.h"
#include "panel/registerfilter.h"

namespace krx {
using namespace Qt::StringLiterals;

RegisterList::RegisterList(RegisterPanel& panel, Link& link)
    : Card(QString()),
      panel_(panel),
      changes_(link),
      model_(panel, changes_),
      table_(new RegisterTable(panel, model_)) {
  setAccessibleName(u"Register list"_s);
  noMatch_ = MakeLabel(u"lblNoMatch"_s, 1, false, true);
  noMatch_->setAlignment(Qt::AlignCenter);
  stack_ = new QStackedWidget;
  stack_->addWidget(table_);
  stack_->addWidget(noMatch_);
  const int padding = fontMetrics().height() * 4 / 5;
  layout()->setContentsMargins(1, padding, 1, padding / 2);
  QLayout* const search = MakeSearch();
  search->setContentsMargins(padding, 0, padding, 0);
  Body().addLayout(search);
  Body().addWidget(stack_, 1);
  SetWidth();
  ShowCount();
  connect(table_, &RegisterTable::RowClicked, this, &RegisterList::RowClicked);
  connect(&model_, &RegisterTableModel::ByteSeen, this, &RegisterList::FilterRow);
}

QLayout* RegisterList::MakeSearch() {
  auto* const row = new QHBoxLayout;
  find_ = new QLineEdit;
  find_->setObjectName(u"txtFindRegister"_s);
  find_->setAccessibleName(u"Find a register"_s);
  find_->setPlaceholderText(u"find by name or address"_s);
  AddClearButton(*find_);
  find_->installEventFilter(this);
  changedOnly_ = new QCheckBox(u"Changed"_s);
  changedOnly_->setObjectName(u"chkChangedOnly"_s);
  changedOnly_->setToolTip(u"Only registers that hold another byte than when they were first seen"_s);
  count_ = MakeLabel(u"lblRegisterCount"_s, 0.92, false, true);
  row->addWidget(find_, 1);
  row->addWidget(changedOnly_);
  row->addWidget(count_);
  connect(find_, &QLineEdit::textChanged, this, &RegisterList::Filter);
  connect(changedOnly_, &QCheckBox::toggled, this, &RegisterList::Filter);
  connect(find_, &QLineEdit::returnPressed, this, [this] {
    const int row = FirstHit();
    if (row == 0) return;
    emit RowClicked(row);
    table_->ScrollTo(row);
    table_->setFocus();
  });
  return row;
}

bool RegisterList::eventFilter(QObject* watched, QEvent* event) {
  if (watched != find_ || event->type() != QEvent::KeyPress) return Card::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key == Qt::Key_Escape) find_->clear();
  if (const int row = FirstHit(); key == Qt::Key_Down && row > 0) {
    table_->setFocus();
    table_->GoTo(row);
  }
  return key == Qt::Key_Escape || key == Qt::Key_Down;
}

bool RegisterList::IsShown(int row) const {
  const RegisterEntry& entry = *LookupEntry(row);
  return IsFound(entry, find_->text().toStdString()) && (!changedOnly_->isChecked() || changes_.Was(entry.Address));
}

int RegisterList::FirstHit() const {
  for (int row = 1; row <= RegisterPanel::rowCount; ++row) {
    if (!table_->isRowHidden(row - 1)) return row;
  }
  return 0;
}

void RegisterList::Filter() {
  hits_ = 0;
  for (int row = 1; row <= RegisterPanel::rowCount; ++row) {
    const bool shown = IsShown(row);
    table_->setRowHidden(row - 1, !shown);
    hits_ += shown ? 1 : 0;
  }
  ShowCount();
  if (IsShown(panel_.LastSelectedRow())) table_->ScrollTo(panel_.LastSelectedRow());
}

void RegisterList::FilterRow(int row) {
  const bool shown = IsShown(row);
  if (shown == !table_->isRowHidden(row - 1)) return;
  table_->setRowHidden(row - 1, !shown);
  hits_ += shown ? 1 : -1;
  ShowCount();
}

void RegisterList::ShowCount() {
  SetTextIfChanged(*count_, u"%1 of %2"_s.arg(hits_).arg(RegisterPanel::rowCount));
  const bool searched = !find_->text().trimmed().isEmpty();
  SetTextIfChanged(*noMatch_, searched ? u"no match"_s : u"no register has changed"_s);
  stack_->setCurrentWidget(hits_ > 0 ? static_cast<QWidget*>(table_) : noMatch_);
}

void RegisterList::SetNarrow(bool narrow) {
  if (std::exchange(narrow_, narrow) == narrow) return;
  table_->SetRoomy(!narrow);
  SetWidth();
}

void RegisterList::SetWidth() {
  // However wide it is now, a window may become narrow.
  setMinimumWidth(table_->WidthOfColumns(false) + 2);
  setMaximumWidth(table_->WidthOfColumns(!narrow_) + 2);
  updateGeometry();
}

QSize RegisterList::sizeHint() const {
  return {maximumWidth(), Card::sizeHint().height()};
}

}  // namespace krx
