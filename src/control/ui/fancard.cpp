// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/ui/fancard.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "control/ui/controlchoice.h"
#include "control/ui/readinglabel.h"
#include "control/ui/readingtable.h"
#include "controls/ui/labels.h"
#include "controls/ui/texts.h"
#include "registers/chip.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr double buttonLines = 12.7;
constexpr double compactButtonLines = 11.3;

QString OutputName(std::size_t output) {
  return u"PWM%1"_s.arg(output + 1);
}

}  // namespace

FanCard::FanCard() : Card(u"Fan Configuration"_s) {
  temps_ = AddButton(u"cmdAuto"_s, u"Configure Temps..."_s, nullptr);
  temps_->setEnabled(false);
  temps_->setToolTip(u"Not available yet"_s);
  MakeZoneTable();
  switches_ = MakeLabel(u"lblSwitches"_s, 1, false, true);
  switchAccess_ = AddButton(u"cmdSwitchAccess"_s, u"Switch Access..."_s, switches_);
  fanConfig_ = AddButton(u"cmdConfigureFans"_s, u"Configure Fans..."_s, nullptr);
  MakeOutputTable();
  connect(switchAccess_, &QPushButton::clicked, this, &FanCard::SwitchAccessRequested);
  connect(fanConfig_, &QPushButton::clicked, this, &FanCard::FanConfigRequested);
}

QPushButton* FanCard::AddButton(const QString& name, const QString& caption, QWidget* beside) {
  auto* const button = new QPushButton(caption);
  button->setObjectName(name);
  auto* const row = new QHBoxLayout;
  row->setSpacing(Lines(*this, 0.9));
  row->addWidget(button);
  if (beside != nullptr) row->addWidget(beside);
  row->addStretch();
  Body().addLayout(row);
  return button;
}

void FanCard::MakeZoneTable() {
  zoneTable_ = new ReadingTable(u"Temperature zones"_s, {u"Zone"_s, u"Now"_s, u"Tmin"_s, u"Op. point"_s}, 1);
  const std::array columns{u"%1"_s, u"Tmin, %1"_s, u"Operating point, %1"_s};
  for (int zone = 0; zone < 3; ++zone) {
    const auto index = static_cast<std::size_t>(zone);
    const QString name = QtText(chip::Zones[index].Name);
    zoneTable_->Add(zone + 1, 0, new QLabel(name));
    for (std::size_t column = 0; column < columns.size(); ++column) {
      auto* const cell =
          new ReadingLabel(u"lblZone%1_%2"_s.arg(column).arg(zone), columns[column].arg(name), 1, column == 0);
      zones_[index][column] = cell;
      zoneTable_->Add(zone + 1, static_cast<int>(column) + 1, cell);
    }
  }
  Body().addWidget(zoneTable_);
}

void FanCard::MakeOutputTable() {
  outputTable_ = new ReadingTable(u"PWM outputs"_s, {u"Output"_s, u"Behaviour"_s, u"Duty"_s, u"Speed"_s}, 2);
  const std::array columns{u"Duty, %1"_s, u"Speed, %1"_s};
  for (int output = 0; output < 3; ++output) {
    const auto index = static_cast<std::size_t>(output);
    const QString name = OutputName(index);
    outputTable_->Add(output + 1, 0, new QLabel(name));
    behaviours_[index] = new QLabel;
    behaviours_[index]->setObjectName(u"lblBehaviour_%1"_s.arg(output));
    outputTable_->Add(output + 1, 1, behaviours_[index]);
    for (std::size_t column = 0; column < columns.size(); ++column) {
      auto* const cell = new ReadingLabel(u"lblOutput%1_%2"_s.arg(column).arg(output), columns[column].arg(name));
      outputs_[index][column] = cell;
      outputTable_->Add(output + 1, static_cast<int>(column) + 2, cell);
    }
  }
  Body().addWidget(outputTable_);
}

void FanCard::ShowState(const ControlState& state) {
  SetTextIfChanged(*switches_, SwitchesWords(state));
  switchAccess_->setEnabled(state.HasBoard);
  switchAccess_->setToolTip(state.HasBoard ? QString() : u"There is no evaluation board on the SMBus"_s);
  switchAccess_->setAccessibleDescription(QtText(SwitchesWords(state)));
}

void FanCard::ShowReadings(const ControlReadings& readings) {
  QString spoken;
  bool known = false;
  for (std::size_t zone = 0; zone < zones_.size(); ++zone) {
    const ControlReadings::Zone& row = readings.Zones[zone];
    zones_[zone][0]->Show(row.Now);
    zones_[zone][1]->Show(row.Tmin);
    zones_[zone][2]->Show(row.OperatingPoint);
    known = known || row.Now.Known() || row.Tmin.Known();
  }
  for (std::size_t output = 0; output < outputs_.size(); ++output) {
    const ControlReadings::Output& row = readings.Outputs[output];
    SetTextIfChanged(*behaviours_[output], row.Behaviour);
    outputs_[output][0]->Show(row.Duty);
    outputs_[output][1]->Show(row.Speed);
    known = known || row.Duty.Known() || row.Speed.Known();
    spoken += u"%1 %2, %3, %4. "_s.arg(OutputName(output), QtText(row.Behaviour), QtText(row.Duty.Words()),
                                       QtText(row.Speed.Words()));
  }
  fanConfig_->setAccessibleDescription(spoken.trimmed());
  SetState(Mark::None, readings.Old && known ? u"old"_s : QString(), true);
}

void FanCard::SetFanDialogAvailable(bool available) {
  fanConfig_->setEnabled(available);
}

void FanCard::SetCompact(bool compact) {
  for (ReadingTable* const table : {zoneTable_, outputTable_}) table->SetCompact(compact);
  for (QPushButton* const button : {temps_, switchAccess_, fanConfig_})
    button->setMinimumWidth(Lines(*this, compact ? compactButtonLines : buttonLines));
}

}  // namespace krx
