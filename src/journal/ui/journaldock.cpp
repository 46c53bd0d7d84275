// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/ui/journaldock.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>
#include <map>

#include "controls/ui/accessibility.h"
#include "controls/ui/filesaving.h"
#include "controls/ui/userdialogs.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr int refreshMilliseconds = 200;

QString Hex(std::uint8_t byte) {
  return u"%1h"_s.arg(QString::number(byte, 16).toUpper(), 2, QChar(u'0'));
}

QString UndoNotice(const UndoResult& result) {
  if (result.Written.empty() && result.Problems.empty()) return u"Nothing to undo"_s;
  // More would not fit into the status bar; the journal has each of them.
  constexpr std::size_t most = 4;
  QStringList steps;
  for (const UndoStep& step : result.Written) steps << u"%1 = %2"_s.arg(Hex(step.Register), Hex(step.Value));
  const QString what = steps.isEmpty()                ? u"nothing restored"_s
                       : result.Written.size() > most ? u"%1 registers restored"_s.arg(result.Written.size())
                                                      : steps.join(u", "_s);
  QString notice =
      (result.Origin.empty() ? u"Undo to mark: "_s : u"Undo of \"%1\": "_s.arg(QString::fromStdString(result.Origin))) +
      what;
  if (result.Forgotten > 0) notice += u"; %1 older writes are no longer in the journal"_s.arg(result.Forgotten);
  return notice;
}

/// "Not undone:", then a line for each reason; empty when all went well.
QString UndoProblems(const UndoResult& result) {
  if (result.Problems.empty()) return {};
  std::map<std::string, QStringList> registers;
  for (const UndoProblem& problem : result.Problems) registers[problem.Reason] << Hex(problem.Register);
  QString text = u"Not undone:"_s;
  for (const auto& [reason, names] : registers)
    text += u'\n' + names.join(u", "_s) + u": "_s + QString::fromStdString(reason);
  return text;
}

}  // namespace

JournalDock::JournalDock(Link& link, BusJournal& journal, UserDialogs& dialogs, bool readOnly)
    : QDockWidget(u"Bus Journal"_s),
      link_(link),
      journal_(journal),
      dialogs_(dialogs),
      model_(journal),
      table_(new QTableView) {
  setObjectName(u"dockBusJournal"_s);
  auto* const content = new QWidget;
  auto* const layout = new QVBoxLayout(content);
  layout->addWidget(MakeControls(readOnly));
  table_->setObjectName(u"tblBusJournal"_s);
  table_->setAccessibleName(u"Bus Journal"_s);
  table_->setModel(&model_);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setShowGrid(false);
  table_->setWordWrap(false);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 5 / 4);
  table_->horizontalHeader()->setStretchLastSection(true);
  const int em = fontMetrics().horizontalAdvance(u'm');
  constexpr std::array<int, journalColumnCount> widths{7, 9, 10, 22, 4, 4, 36, 20, 10};
  for (std::size_t column = 0; column < widths.size(); ++column) {
    table_->setColumnWidth(static_cast<int>(column), widths.at(column) * em);
  }
  layout->addWidget(table_, 1);
  setWidget(content);
  const QScrollBar* const bar = table_->verticalScrollBar();
  connect(bar, &QScrollBar::valueChanged, this, [this, bar](int value) { atEnd_ = value == bar->maximum(); });
  connect(bar, &QScrollBar::rangeChanged, this, &JournalDock::ShowEnd);
  refresh_.setInterval(refreshMilliseconds);
  connect(&refresh_, &QTimer::timeout, this, &JournalDock::Refresh);
}

QWidget* JournalDock::MakeControls(bool readOnly) {
  auto* const controls = new QWidget;
  auto* const row = new QHBoxLayout(controls);
  row->setContentsMargins(0, 0, 0, 0);
  filter_ = new QLineEdit;
  filter_->setObjectName(u"txtJournalFilter"_s);
  filter_->setAccessibleName(u"Bus journal filter"_s);
  filter_->setPlaceholderText(u"Filter"_s);
  AddClearButton(*filter_);
  writesOnly_ = new QCheckBox(u"Writes only"_s);
  writesOnly_->setObjectName(u"chkJournalWrites"_s);
  userOnly_ = new QCheckBox(u"My writes"_s);
  userOnly_->setObjectName(u"chkJournalUser"_s);
  userOnly_->setToolTip(u"Your last 10,000 writes, without the transfers of the reading cycle"_s);
  count_ = new QLabel;
  row->addWidget(filter_, 1);
  row->addWidget(writesOnly_);
  row->addWidget(userOnly_);
  row->addWidget(count_);
  connect(filter_, &QLineEdit::textChanged, this, &JournalDock::ApplyFilter);
  connect(writesOnly_, &QCheckBox::toggled, this, &JournalDock::ApplyFilter);
  connect(userOnly_, &QCheckBox::toggled, this, &JournalDock::ApplyFilter);
  const auto add = [&](const QString& name, const QString& caption, auto pressed) {
    auto* const button = new QPushButton(caption);
    button->setObjectName(name);
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, pressed);
    return button;
  };
  add(u"cmdJournalCopy"_s, u"Copy"_s, &JournalDock::Copy);
  add(u"cmdJournalSave"_s, u"Save..."_s, &JournalDock::Save);
  add(u"cmdJournalMark"_s, u"Set mark"_s, [this, readOnly] {
    journal_.SetMark();
    undoToMark_->setEnabled(!readOnly);
    emit Notice(u"Mark set: \"Undo to mark\" undoes all writes from here on"_s);
  });
  add(u"cmdUndoLast"_s, u"Undo last action"_s, &JournalDock::UndoLast)->setEnabled(!readOnly);
  undoToMark_ = add(u"cmdUndoMark"_s, u"Undo to mark"_s, [this] { Undo(&UndoToMark); });
  undoToMark_->setEnabled(false);
  return controls;
}

void JournalDock::showEvent(QShowEvent* event) {
  QDockWidget::showEvent(event);
  Refresh();
  refresh_.start();
}

void JournalDock::hideEvent(QHideEvent* event) {
  refresh_.stop();
  QDockWidget::hideEvent(event);
}

void JournalDock::Refresh() {
  model_.Follow();
  ShowEnd();
  count_->setText(u"%1 transfers"_s.arg(journal_.Count()));
}

void JournalDock::ShowEnd() {
  // Whoever scrolled back wants to read, not to be carried off.
  if (atEnd_) table_->scrollToBottom();
}

void JournalDock::ApplyFilter() {
  model_.SetFilter({filter_->text().toStdString(), writesOnly_->isChecked(), userOnly_->isChecked()});
  table_->scrollToBottom();
}

void JournalDock::Copy() {
  QStringList lines;
  model_.Follow();
  QModelIndexList rows = table_->selectionModel()->selectedRows();
  std::sort(rows.begin(), rows.end());
  for (const QModelIndex& row : rows) lines << QString::fromStdString(JournalLine(model_.Entry(row.row())));
  if (lines.isEmpty()) {
    for (int row = 0; row < model_.rowCount(); ++row) lines << QString::fromStdString(JournalLine(model_.Entry(row)));
  }
  QGuiApplication::clipboard()->setText(lines.join(u'\n'));
  emit Notice(u"%1 lines copied"_s.arg(lines.size()));
}

void JournalDock::Save() {
  const auto name = AskSaveName(dialogs_, u"Text Files (*.txt)|*.txt"_s, u"bus-journal.txt"_s);
  if (!name) return;
  model_.Follow();
  QByteArray text;
  for (std::size_t column = 0; column < journalTitles.size(); ++column) {
    if (column > 0) text += '\t';
    text.append(journalTitles.at(column).data(), static_cast<qsizetype>(journalTitles.at(column).size()));
  }
  text += '\n';
  for (int row = 0; row < model_.rowCount(); ++row) {
    text += QByteArray::fromStdString(JournalLine(model_.Entry(row))) + '\n';
  }
  emit Notice(SaveAndTell(dialogs_, u"The journal"_s, *name, text));
}

void JournalDock::UndoLast() {
  Undo(&UndoLastAction);
}

void JournalDock::Undo(UndoResult (*undo)(Link&, BusJournal&)) {
  UndoResult result;
  RunUserAction(
      dialogs_, [&] { result = undo(link_, journal_); }, undoOrigin);
  emit Undone(result);
  // Behind what follows an undo, which has notices of its own.
  emit Notice(UndoNotice(result));
  if (const QString problems = UndoProblems(result); !problems.isEmpty()) dialogs_.Exclamation(problems);
}

}  // namespace krx
