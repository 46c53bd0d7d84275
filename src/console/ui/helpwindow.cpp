// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/helpwindow.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QHeaderView>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextBrowser>
#include <QVBoxLayout>

#include "console/ui/resources.h"
#include "controls/ui/copyrows.h"
#include "controls/ui/texts.h"

namespace krx {
namespace {

using namespace Qt::StringLiterals;

struct Shortcut {
  std::string_view Where;
  std::string_view Keys;
  std::string_view Action;
};

constexpr Shortcut shortcuts[] = {
    {"Anywhere", "F1", "Help"},
    {"Anywhere", "F5", "Re-read Chip"},
    {"Anywhere", "Ctrl+1 ... Ctrl+4", "Show the page Main, Read/Write, Visual Display or Control"},
    {"Anywhere", "Ctrl+E", "Easy Setup"},
    {"Anywhere", "Ctrl+J", "Show or hide the bus journal"},
    {"Anywhere", "Ctrl+Shift+S", "Save a picture of the window"},
    {"Anywhere", "Ctrl+Q", "Exit"},
    {"A value, rows of a table", "Right click", "Copy"},
    {"Tables", "Ctrl+C", "Copy the selected rows"},
    {"Register list", "Up, Down, Page Up, Page Down, Home, End", "Select a register"},
    {"Register filter", "Down, Return", "Go to the first match, select it"},
    {"Register filter", "Escape", "Clear the filter"},
    {"Bits", "Left, Right", "Go to the next bit"},
    {"Bits", "Space", "Change the bit"},
    {"Register entry", "Return", "Write the entry"},
    {"Limit gauge", "Up, Down, Page Up, Page Down", "Move the limit"},
    {"Limit gauge", "Tab", "Go to the other limit"},
    {"Limit box", "Return, Up, Down", "Write the limit, change it by one step"},
    {"Limit box", "Escape", "Restore the limit"},
    {"Duty slider", "Left, Right, Page Up, Page Down", "Change the duty"},
    {"Chart", "Left, Right", "Scroll the chart"},
    {"Chart", "+, -", "Zoom the time axis"},
    {"Chart", "Home", "Live view"},
    {"Chart", "Ctrl+Left, Ctrl+Right", "Move the cursor"},
    {"Chart", "Escape", "Hide the cursor"},
};

QTableWidget* MakeShortcutTable() {
  auto* const table = new QTableWidget(static_cast<int>(std::size(shortcuts)), 3);
  table->setObjectName(u"tblShortcuts"_s);
  table->setAccessibleName(u"Keyboard shortcuts"_s);
  table->setHorizontalHeaderLabels({u"Where"_s, u"Keys"_s, u"Action"_s});
  int row = 0;
  for (const Shortcut& shortcut : shortcuts) {
    int column = 0;
    for (const std::string_view text : {shortcut.Where, shortcut.Keys, shortcut.Action})
      table->setItem(row, column++, new QTableWidgetItem(QtText(text)));  // the table owns it
    ++row;
  }
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setShowGrid(false);
  table->setTabKeyNavigation(false);
  table->verticalHeader()->hide();
  table->horizontalHeader()->setStretchLastSection(true);
  table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table->resizeColumnsToContents();
  MakeRowsCopyable(*table);
  return table;
}

QTextBrowser* MakeManual() {
  InitResources();
  auto* const view = new QTextBrowser;
  view->setObjectName(u"txtManual"_s);
  view->setAccessibleName(u"Manual"_s);
  view->setOpenLinks(false);
  QFile file(u":/console/manual.md"_s);
  if (file.open(QIODevice::ReadOnly)) view->setMarkdown(QString::fromUtf8(file.readAll()));
  view->document()->setDocumentMargin(view->fontMetrics().height());
  return view;
}

}  // namespace

HelpWindow::HelpWindow(QWidget* parent) : QDialog(parent), pages_(new QTabWidget) {
  setObjectName(u"frmHelp"_s);
  setWindowTitle(u"Help"_s);
  pages_->addTab(MakeShortcutTable(), u"Keyboard shortcuts"_s);
  pages_->addTab(MakeManual(), u"Manual"_s);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* const column = new QVBoxLayout(this);
  column->addWidget(pages_, 1);
  column->addWidget(buttons);
  const QFontMetrics metrics = fontMetrics();
  resize(metrics.averageCharWidth() * 120, metrics.height() * 38);
}

void HelpWindow::ShowPage(HelpPage page) {
  pages_->setCurrentIndex(static_cast<int>(page));
}

}  // namespace krx
