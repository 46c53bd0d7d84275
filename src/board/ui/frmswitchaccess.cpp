// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/ui/frmswitchaccess.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

#include "board/switches.h"
#include "board/ui/switchlamp.h"
#include "board/ui/switchsymbol.h"
#include "controls/ui/card.h"
#include "controls/ui/labels.h"
#include "controls/ui/palette.h"
#include "controls/ui/texts.h"
#include "controls/ui/userdialogs.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr int columns = 3;
constexpr QStringView widestDesignator = u"U6G";

struct Tab {
  QString Caption;
  std::vector<std::string_view> Groups;
};

std::vector<Tab> Tabs() {
  return {{u"Fans"_s, {"Fan1", "Fan2", "Fan3", "Fan4"}},
          {u"Temp"_s, {"Temp1", "Temp2"}},
          {u"VID/Spare"_s, {"VID", "Spare"}},
          {u"PWM/Tach"_s, {"PWM3", "Tach4/PROC", "PWM2/Alert"}}};
}

}  // namespace

FrmSwitchAccess::FrmSwitchAccess(Board& board, UserDialogs& dialogs, bool readOnly, QWidget* parent)
    : QDialog(parent), board_(board), dialogs_(dialogs) {
  setObjectName(u"frmSwitchAccess"_s);
  setWindowTitle(u"Switch Control"_s);
  auto* const layout = new QVBoxLayout(this);
  auto* const tabs = new QTabWidget;
  tabs->setDocumentMode(true);
  tabs->setAccessibleName(u"Groups of switches"_s);
  layout->addWidget(tabs, 1);
  for (const Tab& tab : Tabs()) tabs->addTab(MakeTab(tab.Groups, !readOnly), tab.Caption);
  auto* const readAll = new QPushButton(u"ReadAll"_s);
  readAll->setObjectName(u"cmdReadAll"_s);
  readAll->setDefault(true);
  layout->addWidget(readAll, 0, Qt::AlignLeft);
  connect(readAll, &QPushButton::clicked, this, [this] { Act([this] { board_.ReadAll(); }); });
}

QWidget* FrmSwitchAccess::MakeTab(const std::vector<std::string_view>& groups, bool settable) {
  auto* const page = new QWidget;
  auto* const around = new QVBoxLayout(page);
  around->setContentsMargins(0, fontMetrics().height() / 2, 0, 0);
  auto* const card = new Card({});
  around->addWidget(card);
  auto* const grid = new QGridLayout;
  card->Body().addLayout(grid);
  int place = 0;
  for (const std::string_view group : groups) {
    grid->addWidget(MakeGroup(group, settable), place / columns, place % columns, Qt::AlignTop | Qt::AlignLeft);
    ++place;
  }
  const int last = (place + columns - 1) / columns;
  grid->setRowStretch(last, 1);
  grid->setColumnStretch(columns, 1);
  auto* const legend = new QHBoxLayout;
  for (const LampState state : {LampState::Closed, LampState::Open}) legend->addWidget(new SwitchLamp(state));
  legend->addWidget(new QLabel(u"Green = Closed,  Red = Open"_s));
  legend->addStretch();
  grid->addLayout(legend, last + 1, 0, 1, columns);
  return page;
}

QWidget* FrmSwitchAccess::MakeGroup(std::string_view group, bool settable) {
  auto* const section = new Card(QtText(group), Card::Kind::Section);
  auto* const grid = new QGridLayout;
  grid->setHorizontalSpacing(fontMetrics().height() * 2 / 5);
  section->Body().addLayout(grid);
  int row = 0;
  for (std::size_t index = 0; index < switchMap.size(); ++index) {
    if (switchMap.at(index).Group != group) continue;
    const QString designator = QtText(switchMap.at(index).Designator);
    auto* const button = new QPushButton(designator);
    button->setObjectName(u"cmdSwitch"_s + designator);
    button->setEnabled(settable);
    button->setAutoDefault(false);  // Return writes nothing
    button->setFixedWidth(fontMetrics().horizontalAdvance(widestDesignator.toString()) +
                          fontMetrics().height() * 7 / 4);
    auto* const word = new QLabel;
    word->setObjectName(u"lmpSwitch"_s + designator);
    word->setMinimumWidth(fontMetrics().horizontalAdvance(LampWord(LampState::NotRead)));
    Row& shown = rows_.at(index);
    shown = {new SwitchLamp, button, word, new SwitchSymbol(index)};
    grid->addWidget(shown.Lamp, row, 0);
    grid->addWidget(button, row, 1);
    grid->addWidget(word, row, 2);
    grid->addWidget(shown.Symbol, row, 3);
    ++row;
    connect(button, &QPushButton::clicked, this, [this, index] { Act([this, index] { board_.ToggleSwitch(index); }); });
  }
  return section;
}

void FrmSwitchAccess::Open() {
  Act([this] { board_.ReadAll(); });
  show();
  Act([this] {
    for (int device = 0; device < 4; ++device) ReadSwitchDevice(board_, device);
  });
}

void FrmSwitchAccess::Act(const std::function<void()>& action) {
  RunUserAction(dialogs_, action);
  ShowLamps();
}

void FrmSwitchAccess::ShowLamps() {
  for (std::size_t index = 0; index < rows_.size(); ++index) {
    const LampState state = !board_.SwitchKnown(index)   ? LampState::NotRead
                            : board_.SwitchClosed(index) ? LampState::Closed
                                                         : LampState::Open;
    const Row& row = rows_.at(index);
    row.Lamp->SetState(state);
    row.Symbol->SetState(state);
    SetTextIfChanged(*row.Word, LampWord(state));
    row.Word->setAccessibleName(QtText(switchMap.at(index).Designator) + u' ' + LampWord(state));
    row.Word->setForegroundRole(state == LampState::NotRead  ? QPalette::PlaceholderText
                                : state == LampState::Closed ? okRole
                                                             : badRole);
    row.Button->setAccessibleDescription(LampWord(state));
  }
}

void FrmSwitchAccess::reject() {
  close();
}

void FrmSwitchAccess::closeEvent(QCloseEvent* event) {
  // Not the base class's: it rejects, which closes, and would keep the window open after all.
  event->accept();
  emit Closed();
}

}  // namespace krx
