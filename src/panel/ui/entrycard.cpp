// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/entrycard.h"

#include <QGridLayout>
#include <QLineEdit>

#include "controls/ui/labels.h"
#include "controls/ui/texts.h"
#include "panel/ui/updatebutton.h"

namespace krx {
using namespace Qt::StringLiterals;

EntryCard::EntryCard(bool readOnly) : Card(u"Write"_s) {
  auto* const grid = new QGridLayout;
  hex_ = AddEntry(*grid, u"Write (Hex)"_s, "Text6", "Command4");
  decimal_ = AddEntry(*grid, u"Write (Dec)"_s, "Text7", "Command5");
  grid->setColumnStretch(4, 1);
  Body().addLayout(grid);
  caution_ = MakeLabel(u"lblCaution"_s, 0.92, false);
  caution_->setWordWrap(true);
  Body().addWidget(caution_);
  connect(hex_.Box, &QLineEdit::textEdited, this, &EntryCard::HexTyped);
  connect(decimal_.Box, &QLineEdit::textEdited, this, &EntryCard::DecimalTyped);
  hex_.Button->setEnabled(!readOnly);
  decimal_.Button->setEnabled(!readOnly);
  connect(hex_.Button, &QPushButton::clicked, this, &EntryCard::HexWriteRequested);
  connect(decimal_.Button, &QPushButton::clicked, this, &EntryCard::DecimalWriteRequested);
}

EntryCard::Entry EntryCard::AddEntry(QGridLayout& grid, const QString& caption, const char* boxName,
                                     const char* buttonName) {
  const int row = grid.rowCount();
  Entry entry{new QLineEdit, new UpdateButton, new StateMark, MakeLabel(u""_s, 0.92, false, true)};
  auto* const label = new QLabel(caption);
  label->setBuddy(entry.Box);
  entry.Box->setObjectName(QString::fromLatin1(boxName));
  entry.Box->setAccessibleName(caption);
  // They take any length: cut to what fits, "100" would be written as 10 and "1000" as 100.
  entry.Box->setFixedWidth(fontMetrics().horizontalAdvance(u"0000000"_s));
  entry.Button->setObjectName(QString::fromLatin1(buttonName));
  entry.Button->setAccessibleName(u"Press to update, "_s + caption);
  entry.Word->setMinimumWidth(entry.Word->fontMetrics().horizontalAdvance(u"not written"_s));
  grid.addWidget(label, row, 0);
  grid.addWidget(entry.Box, row, 1);
  grid.addWidget(entry.Button, row, 2);
  grid.addWidget(entry.State, row, 3);
  grid.addWidget(entry.Word, row, 4);
  connect(entry.Box, &QLineEdit::returnPressed, entry.Button, &QPushButton::click);
  return entry;
}

void EntryCard::Show(const RegisterPanel& panel, bool writable) {
  const QString written =
      u"written %1"_s.arg(panel.LastWritten(), 2, 16, QChar(u'0')).toUpper().replace(0, 7, u"written"_s);
  ShowEntry(hex_, panel.HexEntry(), panel.HexButton(), written);
  ShowEntry(decimal_, panel.DecimalEntry(), panel.DecimalButton(), written);
  hex_.Box->setEnabled(writable);
  decimal_.Box->setEnabled(writable);
  const QString refusal = QtText(panel.Refusal());
  SetState(refusal.isEmpty() ? Mark::None : Mark::Attention, refusal);
  const QString caution = QtText(panel.View().Caution);
  SetTextIfChanged(*caution_, caution.isEmpty() ? QString() : u"⚠ "_s + caution);
  caution_->setVisible(!caution.isEmpty());
}

void EntryCard::ShowEntry(const Entry& entry, const std::string& text, EntryState state, const QString& written) {
  const QString wanted = QString::fromStdString(text);
  if (entry.Box->text() != wanted) entry.Box->setText(wanted);
  const QString word = state == EntryState::Unwritten ? u"not written"_s
                       : state == EntryState::Written ? written
                                                      : QString();
  entry.Button->SetState(state);
  entry.Button->setAccessibleDescription(word);
  entry.State->SetMark(state == EntryState::Unwritten ? Mark::Attention
                       : state == EntryState::Written ? Mark::Good
                                                      : Mark::None);
  SetTextIfChanged(*entry.Word, word);
}

}  // namespace krx
