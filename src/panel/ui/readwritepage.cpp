// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/readwritepage.h"

#include <fmt/format.h>

#include <QGridLayout>
#include <QResizeEvent>
#include <QVBoxLayout>

#include "controls/ui/chiptimer.h"
#include "controls/ui/userdialogs.h"
#include "panel/ui/continuouscard.h"
#include "panel/ui/entrycard.h"
#include "panel/ui/historycard.h"
#include "panel/ui/meaningcard.h"
#include "panel/ui/registercard.h"
#include "panel/ui/registerlist.h"

namespace krx {
namespace {

/// Heights of a line of text; below it what tool tips can say as well folds away.
constexpr int wideEnough = 82;

}  // namespace

ReadWritePage::ReadWritePage(RegisterPanel& panel, Link& link, BusJournal& journal, ChipTurns& turns,
                             UserDialogs& dialogs, bool readOnly)
    : panel_(panel),
      dialogs_(dialogs),
      readOnly_(readOnly),
      list_(new RegisterList(panel, link)),
      register_(new RegisterCard),
      entries_(new EntryCard(readOnly)),
      continuous_(new ContinuousCard(turns,
                                     [this] {
                                       panel_.ReadSelected();
                                       ShowPanel();
                                     })),
      history_(new HistoryCard(link, journal, readOnly)),
      meaning_(new MeaningCard) {
  MakeLayout();
  connect(list_, &RegisterList::RowClicked, this, &ReadWritePage::Click);
  connect(register_, &RegisterCard::BitClicked, this, [this](int bit) { Act([this, bit] { panel_.ClickBit(bit); }); });
  connect(entries_, &EntryCard::HexTyped, this, [this](const QString& text) {
    panel_.SetHexEntry(text.toStdString());
    ShowPanel();
  });
  connect(entries_, &EntryCard::DecimalTyped, this, [this](const QString& text) {
    panel_.SetDecimalEntry(text.toStdString());
    ShowPanel();
  });
  connect(entries_, &EntryCard::HexWriteRequested, this, [this] { Act([this] { panel_.WriteHexEntry(); }); });
  connect(entries_, &EntryCard::DecimalWriteRequested, this, [this] { Act([this] { panel_.WriteDecimalEntry(); }); });
  connect(history_, &HistoryCard::UndoRequested, this, &ReadWritePage::UndoRequested);
  ShowPanel();
}

void ReadWritePage::MakeLayout() {
  auto* const row = new QHBoxLayout(this);
  const int margin = fontMetrics().height() * 6 / 7;
  const int gap = fontMetrics().height() * 5 / 7;
  row->setContentsMargins(margin, margin, margin, margin);
  row->setSpacing(gap);
  row->addWidget(list_);
  auto* const grid = new QGridLayout;
  grid->setSpacing(gap);
  grid->addWidget(register_, 0, 0, 1, 2);
  grid->addWidget(entries_, 1, 0);
  grid->addWidget(continuous_, 2, 0);
  grid->addWidget(history_, 3, 0);
  grid->addWidget(meaning_, 1, 1, 3, 1);
  grid->setRowStretch(3, 1);
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(1, 1);
  row->addLayout(grid, 1);
}

void ReadWritePage::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const bool narrow = width() < wideEnough * fontMetrics().height();
  list_->SetNarrow(narrow);
  meaning_->SetNarrow(narrow);
}

void ReadWritePage::StopContinuousReading() {
  continuous_->SetOn(false);
}

void ReadWritePage::ShowWrittenElsewhere(std::uint8_t address, std::uint8_t byte) {
  panel_.ShowWrittenElsewhere(address, byte);
  ShowPanel();
}

void ReadWritePage::Enter() {
  StopContinuousReading();
  Act([this] { panel_.Reselect(); });
  list_->ScrollTo(panel_.LastSelectedRow());
}

void ReadWritePage::Click(int row) {
  Act([this, row] { panel_.Click(row); }, fmt::format("Read/Write: list, row {}", row));
}

void ReadWritePage::Act(const std::function<void()>& action, const std::string& name) {
  RunUserAction(dialogs_, action, name);
  ShowPanel();
  history_->Show(panel_.View().Register);
}

void ReadWritePage::ShowPanel() {
  const RegisterView& view = panel_.View();
  const bool writable = view.Editable && !readOnly_;
  list_->ShowStates();
  register_->Show(view, writable);
  entries_->Show(panel_, writable);
  meaning_->Show(view.Register, view.Shown());
}

}  // namespace krx
