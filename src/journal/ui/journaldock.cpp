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

#include "controls/ui/filesaving.h"
#include "controls/ui/userdialogs.h"

namespace krx {
namespace {

constexpr int refreshMilliseconds = 200;

QString Hex(std::uint8_t byte) {
  return QString("%1h").arg(QString::number(byte, 16).toUpper(), 2, QLatin1Char('0'));
}

QString UndoNotice(const UndoResult& result) {
  if (result.Written.empty() && result.Problems.empty()) return "Nothing to undo";
  // More would not fit into the status bar; the journal has each of them.
  constexpr std::size_t most = 4;
  QStringList steps;
  for (const UndoStep& step : result.Written) steps << QString("%1 = %2").arg(Hex(step.Register), Hex(step.Value));
  const QString what = steps.isEmpty()                ? QString("nothing was written back")
                       : result.Written.size() > most ? QString("%1 registers written back").arg(result.Written.size())
                                                      : steps.join(", ");
  QString notice = (result.Origin.empty() ? QString("Undo to mark: ")
                                          : QString("Undo of \"%1\": ").arg(QString::fromStdString(result.Origin))) +
                   what;
  if (result.Forgotten > 0) notice += QString("; %1 older writes are no longer known").arg(result.Forgotten);
  return notice;
}

/// "Not undone:", then a line for each reason; empty when all went well.
QString UndoProblems(const UndoResult& result) {
  if (result.Problems.empty()) return {};
  std::map<std::string, QStringList> registers;
  for (const UndoProblem& problem : result.Problems) registers[problem.Reason] << Hex(problem.Register);
  QString text = "Not undone:";
  for (const auto& [reason, names] : registers) text += '\n' + names.join(", ") + ": " + QString::fromStdString(reason);
  return text;
}

}  // namespace

JournalDock::JournalDock(Link& link, BusJournal& journal, UserDialogs& dialogs, bool readOnly)
    : QDockWidget("Bus Journal"),
      link_(link),
      journal_(journal),
      dialogs_(dialogs),
      model_(journal),
      table_(new QTableView) {
  setObjectName("dockBusJournal");
  auto* const content = new QWidget;
  auto* const layout = new QVBoxLayout(content);
  layout->addWidget(MakeControls(readOnly));
  table_->setObjectName("tblBusJournal");
  table_->setAccessibleName("Bus Journal");
  table_->setModel(&model_);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setShowGrid(false);
  table_->setWordWrap(false);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 5 / 4);
  table_->horizontalHeader()->setStretchLastSection(true);
  const int em = fontMetrics().horizontalAdvance('m');
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
  filter_->setObjectName("txtJournalFilter");
  filter_->setAccessibleName("Filter of the bus journal");
  filter_->setPlaceholderText("Filter");
  filter_->setClearButtonEnabled(true);
  writesOnly_ = new QCheckBox("Writes only");
  writesOnly_->setObjectName("chkJournalWrites");
  userOnly_ = new QCheckBox("My writes");
  userOnly_->setObjectName("chkJournalUser");
  userOnly_->setToolTip("What you wrote, without the transfers of the reading cycle: the last 10,000 of the run");
  count_ = new QLabel;
  row->addWidget(filter_, 1);
  row->addWidget(writesOnly_);
  row->addWidget(userOnly_);
  row->addWidget(count_);
  connect(filter_, &QLineEdit::textChanged, this, &JournalDock::ApplyFilter);
  connect(writesOnly_, &QCheckBox::toggled, this, &JournalDock::ApplyFilter);
  connect(userOnly_, &QCheckBox::toggled, this, &JournalDock::ApplyFilter);
  const auto add = [&](const char* name, const QString& caption, auto pressed) {
    auto* const button = new QPushButton(caption);
    button->setObjectName(name);
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, pressed);
    return button;
  };
  add("cmdJournalCopy", "Copy", &JournalDock::Copy);
  add("cmdJournalSave", "Save...", &JournalDock::Save);
  add("cmdJournalMark", "Set mark", [this, readOnly] {
    journal_.SetMark();
    undoToMark_->setEnabled(!readOnly);
    emit Notice("Mark set: \"Undo to mark\" takes back what is written from here on");
  });
  add("cmdUndoLast", "Undo last action", [this] { Undo(&UndoLastAction); })->setEnabled(!readOnly);
  undoToMark_ = add("cmdUndoMark", "Undo to mark", [this] { Undo(&UndoToMark); });
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
  count_->setText(QString("%1 transfers").arg(journal_.Count()));
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
  QGuiApplication::clipboard()->setText(lines.join('\n'));
  emit Notice(QString("%1 lines copied").arg(lines.size()));
}

void JournalDock::Save() {
  const auto name = AskSaveName(dialogs_, "Text Files (*.txt)|*.txt", "bus-journal.txt");
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
  emit Notice(SaveAndTell(dialogs_, "The journal", *name, text));
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
