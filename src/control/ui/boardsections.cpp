// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/ui/boardsections.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>

#include "control/ui/readinglabel.h"
#include "control/ui/sparkline.h"
#include "controls/ui/labels.h"
#include "controls/ui/texts.h"
#include "monitor/channels.h"
#include "monitor/readingcycle.h"
#include "monitor/recenttrend.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr double noteScale = 0.92;
constexpr double valueScale = 1.5;

/// Boxes that drive the board: enabled where there is one.
template <std::size_t Count>
void ShowBoxes(std::array<QCheckBox*, Count>& boxes, const std::array<bool, Count>& marks, bool hasBoard,
               bool readOnly) {
  for (std::size_t i = 0; i < Count; ++i) {
    ShowMarked(*boxes[i], marks[i]);
    boxes[i]->setEnabled(hasBoard && !readOnly);
    boxes[i]->setToolTip(hasBoard ? QString() : u"There is no evaluation board on the SMBus"_s);
  }
}

/// A box with a muted line under it, set in as far as the box's text.
QVBoxLayout* Under(QCheckBox* box, QWidget* line) {
  auto* const column = new QVBoxLayout;
  column->setSpacing(Lines(*box, 0.2));
  column->addWidget(box, 0, Qt::AlignLeft);
  auto* const indented = new QHBoxLayout;
  indented->setContentsMargins(Lines(*box, 1.45), 0, 0, 0);
  indented->addWidget(line);
  column->addLayout(indented);
  return column;
}

QString ZoneName(std::size_t zone) {
  return QtText(channels[zone].Caption);
}

}  // namespace

SensorSection::SensorSection(const ControlAccess& access)
    : Card(u"Sensors"_s, Kind::Section), readOnly_(access.ReadOnly) {
  for (std::size_t i = 0; i < boxes_.size(); ++i) {
    const std::size_t zone = i + 1;
    boxes_[i] = MakeCheck(u"chkSensor%1"_s.arg(zone), u"Diode%1 Enabled"_s.arg(zone), access,
                          [&model = access.Model, i](bool ticked) { model.SetDiode(i, ticked); });
    switches_[i] = MakeLabel({}, noteScale, false, true);
    values_[i] = new ReadingLabel(u"lblSensor%1"_s.arg(zone), ZoneName(zone), valueScale);
    auto* const name = MakeLabel({}, 1, false, true);
    name->setText(ZoneName(zone));
    name->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* const row = new QHBoxLayout;
    row->addLayout(Under(boxes_[i], switches_[i]), 1);
    row->setSpacing(Lines(*this, 0.5));
    row->addWidget(new TraceBar(channels[zone].Trace));
    zones_[i] = new QBoxLayout(QBoxLayout::LeftToRight);
    zones_[i]->setSpacing(Lines(*this, 0.5));
    zones_[i]->addWidget(name);
    zones_[i]->addWidget(values_[i]);
    row->addLayout(zones_[i]);
    Body().addStretch();
    Body().addLayout(row);
  }
  Body().addStretch();
}

void SensorSection::ShowState(const ControlState& state) {
  ShowBoxes(boxes_, state.Diodes, state.HasBoard, readOnly_);
  for (std::size_t i = 0; i < switches_.size(); ++i) SetTextIfChanged(*switches_[i], DiodeWords(state, i));
  ShowSectionState(*this, SensorWords(state));
}

void SensorSection::ShowReadings(const ControlState& state, const ControlReadings& readings) {
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const LivingValue& now = readings.Zones[i + 1].Now;
    values_[i]->Show(now);
    boxes_[i]->setAccessibleDescription(
        u"%1, %2 %3"_s.arg(QtText(DiodeWords(state, i)), ZoneName(i + 1), QtText(now.Words())));
  }
}

void SensorSection::SetCompact(bool compact) {
  for (QBoxLayout* const zone : zones_) zone->setDirection(compact ? QBoxLayout::BottomToTop : QBoxLayout::LeftToRight);
}

HeaterSection::HeaterSection(const ControlAccess& access)
    : Card(u"Heaters"_s, Kind::Section), readOnly_(access.ReadOnly) {
  for (std::size_t i = 0; i < boxes_.size(); ++i) {
    const std::size_t zone = i + 1;
    boxes_[i] = MakeCheck(u"chkHeater%1"_s.arg(zone), u"Heater%1 Enabled"_s.arg(zone), access,
                          [&model = access.Model, i](bool ticked) { model.SetHeater(i, ticked); });
    marks_[i] = new StateMark;
    words_[i] = MakeLabel({}, noteScale, false, true);
    words_[i]->setObjectName(u"lblHeater%1"_s.arg(zone));
    lines_[i] = new Sparkline(channels[zone].Trace);
    lines_[i]->setAccessibleName(ZoneName(zone) + u", last 60 s"_s);
    values_[i] = new ReadingLabel(u"lblHeaterZone%1"_s.arg(zone), ZoneName(zone), valueScale);
    trends_[i] = MakeLabel({}, noteScale, false, true);
    trends_[i]->setObjectName(u"lblTrend%1"_s.arg(zone));
    trends_[i]->setAlignment(Qt::AlignRight);
    // As wide as its longest text: the line beside it must not move with every reading.
    trends_[i]->setMinimumWidth(trends_[i]->fontMetrics().horizontalAdvance(ZoneName(zone) + u" · +00.0 C/s"_s));
    auto* const onWords = new QWidget;
    auto* const on = new QHBoxLayout(onWords);
    on->setContentsMargins(0, 0, 0, 0);
    on->setSpacing(Lines(*this, 0.2));
    on->addWidget(marks_[i]);
    on->addWidget(words_[i], 1);
    auto* const zoneColumn = new QVBoxLayout;
    zoneColumn->setSpacing(Lines(*this, 0.2));
    zoneColumn->addWidget(values_[i]);
    zoneColumn->addWidget(trends_[i]);
    auto* const row = new QHBoxLayout;
    row->addLayout(Under(boxes_[i], onWords), 1);
    row->addWidget(lines_[i], 0, Qt::AlignBottom);
    row->addLayout(zoneColumn);
    Body().addStretch();
    Body().addLayout(row);
  }
  Body().addStretch();
}

void HeaterSection::ShowState(const ControlState& state) {
  ShowBoxes(boxes_, state.Heaters, state.HasBoard, readOnly_);
  ShowSectionState(*this, HeaterWords(state));
}

void HeaterSection::ShowReadings(const ControlParts& parts, const ControlReadings& readings) {
  for (std::size_t i = 0; i < boxes_.size(); ++i) {
    const ControlReadings::Heater& heater = readings.Heaters[i];
    marks_[i]->SetMark(heater.On ? Mark::HeaterOn : Mark::None);
    marks_[i]->setVisible(heater.On);
    SetTextIfChanged(*words_[i], heater.Words);
    SetBad(*words_[i], heater.On, true);
    values_[i]->Show(heater.Now);
    SetTextIfChanged(*trends_[i], heater.Trend);
    boxes_[i]->setAccessibleDescription(u"%1, %2 %3, %4"_s.arg(QtText(heater.Words), ZoneName(i + 1),
                                                               QtText(heater.Now.Words()), QtText(heater.Trend)));
    if (lines_[i]->isHidden()) continue;
    const LivingParts& living = parts.Living;
    lines_[i]->Show(RecentColumns(living.History, channels[i + 1].Trace, living.Cycle.Now()), readings.Old);
  }
}

void HeaterSection::SetCompact(bool compact) {
  for (Sparkline* const line : lines_) line->setVisible(!compact);
}

VidStrip::VidStrip(const ControlAccess& access) : Card({}, Kind::Section), readOnly_(access.ReadOnly) {
  setObjectName(u"pnlVIDBits"_s);
  setAccessibleName(u"VID Bits"_s);
  auto* const row = new QHBoxLayout;
  row->setSpacing(Lines(*this, 1.6));
  auto* const title = MakeLabel({}, 1, true);
  title->setText(u"VID"_s);
  row->addWidget(title);
  for (std::size_t i = 0; i < boxes_.size(); ++i) {
    boxes_[i] = MakeCheck(u"chkVID_%1"_s.arg(i), u"VID%1"_s.arg(i), access,
                          [&model = access.Model, i](bool ticked) { model.SetVid(i, ticked); });
    row->addWidget(boxes_[i]);
  }
  row->addStretch();
  register_ = MakeLabel(u"lblVidRegister"_s, noteScale, false, true);
  row->addWidget(register_);
  Body().addLayout(row);
}

void VidStrip::ShowState(const ControlState& state) {
  ShowBoxes(boxes_, state.Vid, state.HasBoard, readOnly_);
  setVisible(state.VidShown);
}

void VidStrip::ShowReadings(const ControlReadings& readings) {
  SetTextIfChanged(*register_, readings.Vid);
}

}  // namespace krx
