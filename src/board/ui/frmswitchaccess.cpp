// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/ui/frmswitchaccess.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

#include "board/switches.h"
#include "board/ui/switchsymbol.h"
#include "controls/ui/palette.h"
#include "controls/ui/userdialogs.h"

namespace krx {
namespace {

struct Tab {
  const char* Caption;
  std::vector<const char*> Groups;
};

std::vector<Tab> Tabs() {
  return {{"Fans", {"Fan1", "Fan2", "Fan3", "Fan4"}},
          {"Temp", {"Temp1", "Temp2"}},
          {"VID/Spare", {"VID", "Spare"}},
          {"PWM/Tach", {"PWM3", "Tach4/PROC", "PWM2/Alert"}}};
}

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

FrmSwitchAccess::FrmSwitchAccess(Board& board, UserDialogs& dialogs, bool readOnly, QWidget* parent)
    : QDialog(parent), board_(board), dialogs_(dialogs) {
  setObjectName("frmSwitchAccess");
  setWindowTitle("Switch Control");
  auto* const layout = new QVBoxLayout(this);
  auto* const tabs = new QTabWidget;
  layout->addWidget(tabs, 1);
  for (const Tab& tab : Tabs()) tabs->addTab(MakeTab(tab.Groups, !readOnly), tab.Caption);
  auto* const readAll = new QPushButton("ReadAll");
  readAll->setObjectName("cmdReadAll");
  layout->addWidget(readAll, 0, Qt::AlignLeft);
  connect(readAll, &QPushButton::clicked, this, [this] { Act([this] { board_.ReadAll(); }); });
}

QWidget* FrmSwitchAccess::MakeTab(const std::vector<const char*>& groups, bool settable) {
  auto* const page = new QWidget;
  auto* const grid = new QGridLayout(page);
  int place = 0;
  for (const char* const group : groups) {
    grid->addWidget(MakeGroup(group, settable), place / 2, place % 2, Qt::AlignTop);
    ++place;
  }
  const int last = (place + 1) / 2;
  grid->setRowStretch(last, 1);
  grid->addWidget(new QLabel("Green = Closed,  Red = Open"), last + 1, 0, 1, 2);
  return page;
}

QWidget* FrmSwitchAccess::MakeGroup(const QString& group, bool settable) {
  auto* const frame = new QGroupBox(group);
  auto* const grid = new QGridLayout(frame);
  int row = 0;
  for (std::size_t index = 0; index < switchMap.size(); ++index) {
    if (Text(switchMap.at(index).Group) != group) continue;
    const QString designator = Text(switchMap.at(index).Designator);
    auto* const button = new QPushButton(designator);
    button->setObjectName("cmdSwitch" + designator);
    button->setEnabled(settable);
    auto* const lamp = new QLabel;
    lamp->setObjectName("lmpSwitch" + designator);
    lamp->setMinimumWidth(fontMetrics().horizontalAdvance("– not read "));
    auto* const symbol = new SwitchSymbol(index);
    lamps_.at(index) = lamp;
    symbols_.at(index) = symbol;
    grid->addWidget(button, row, 0);
    grid->addWidget(lamp, row, 1);
    grid->addWidget(symbol, row, 2);
    ++row;
    connect(button, &QPushButton::clicked, this, [this, index] { Act([this, index] { board_.ToggleSwitch(index); }); });
  }
  return frame;
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
  for (std::size_t index = 0; index < lamps_.size(); ++index) {
    const bool closed = board_.SwitchClosed(index);
    QLabel& lamp = *lamps_.at(index);
    const bool known = board_.SwitchKnown(index);
    lamp.setText(!known ? "– not read" : closed ? "● closed" : "○ open");
    lamp.setAccessibleName(Text(switchMap.at(index).Designator) + (!known   ? " not read"
                                                                   : closed ? " closed"
                                                                            : " open"));
    lamp.setForegroundRole(!known ? QPalette::PlaceholderText : closed ? okRole : badRole);
    symbols_.at(index)->SetClosed(closed);
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
