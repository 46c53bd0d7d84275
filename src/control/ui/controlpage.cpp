// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/ui/controlpage.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QResizeEvent>
#include <QScrollArea>

#include "control/controlreadings.h"
#include "control/ui/boardsections.h"
#include "control/ui/fancard.h"
#include "control/ui/pinsections.h"
#include "control/ui/powercard.h"
#include "controls/ui/labels.h"
#include "controls/ui/texts.h"
#include "controls/ui/userdialogs.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr double noteScale = 0.92;
// In heights of a line.
constexpr double leftWidth = 28.3;
constexpr double leftCompactWidth = 25;
constexpr double margin = 0.85;
constexpr double gap = 0.7;
constexpr double fullWidth = 76;
constexpr double fullHeight = 46;

QPushButton* MakeLaterButton(const QString& caption) {
  auto* const button = new QPushButton(caption);
  button->setEnabled(false);
  button->setToolTip(u"Not available yet"_s);
  return button;
}

Card* MakeFileCard() {
  auto* const card = new Card(u"File Access"_s);
  card->SetState(Mark::None, u"not available yet"_s, true);
  auto* const row = new QHBoxLayout;
  card->Body().addLayout(row);
  const auto add = [&](const QString& title, const QStringList& captions) {
    auto* const section = new Card(title, Card::Kind::Section);
    auto* const column = new QVBoxLayout;
    for (const QString& caption : captions) column->addWidget(MakeLaterButton(caption));
    auto* const left = new QHBoxLayout;
    left->addLayout(column);
    left->addStretch();
    section->Body().addLayout(left);
    section->Body().addStretch();
    row->addWidget(section, 1);
  };
  add(u"Save/Recall"_s, {u"Save Register Values..."_s, u"Recall Previous Setup..."_s});
  add(u"Log Data To File"_s, {u"Make New Log"_s});
  return card;
}

QLabel* MakeNote(const QString& name, const QString& text) {
  auto* const label = new QLabel(text);
  label->setObjectName(name);
  label->setWordWrap(true);
  return label;
}

}  // namespace

ControlPage::ControlPage(const ControlParts& parts, UserDialogs& dialogs, bool readOnly)
    : parts_(parts), model_(parts), dialogs_(dialogs) {
  auto* const page = new QVBoxLayout(this);
  page->setContentsMargins(0, 0, 0, 0);
  auto* const area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  page->addWidget(area);
  auto* const content = new QWidget;
  auto* const columns = new QHBoxLayout(content);
  const int around = Lines(*this, margin);
  columns->setContentsMargins(around, around, around, around);
  columns->setSpacing(Lines(*this, gap));
  columns->addWidget(MakeLeftColumn());
  columns->addWidget(MakeRightColumn(readOnly), 1);
  area->setWidget(content);
  SetCompact(false);
  ShowState();
}

QWidget* ControlPage::MakeLeftColumn() {
  auto* const column = new QWidget;
  left_ = column;
  auto* const layout = new QVBoxLayout(column);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(Lines(*this, gap));
  fans_ = new FanCard;
  connect(fans_, &FanCard::SwitchAccessRequested, this, &ControlPage::SwitchAccessRequested);
  connect(fans_, &FanCard::FanConfigRequested, this, &ControlPage::FanConfigRequested);
  power_ = new PowerCard;
  layout->addWidget(fans_);
  layout->addWidget(MakeThermTimeCard());
  layout->addWidget(power_, 1);
  return column;
}

QWidget* ControlPage::MakeThermTimeCard() {
  auto* const card = new Card(u"Set THERM# Read Time"_s);
  txtProcTime_ = new QLineEdit;
  txtProcTime_->setObjectName(u"txtProcTime"_s);
  txtProcTime_->setAccessibleName(u"THERM read time in seconds"_s);
  txtProcTime_->setFixedWidth(Lines(*this, 6.4));
  thermNow_ = MakeLabel(u"lblTherm"_s, 1, false);
  thermRead_ = MakeLabel(u"lblThermRead"_s, noteScale, false, true);
  auto* const unit = MakeLabel({}, 1, false, true);
  unit->setText(u"s"_s);
  auto* const words = new QVBoxLayout;
  words->setSpacing(1);
  words->addWidget(thermNow_);
  words->addWidget(thermRead_);
  auto* const row = new QHBoxLayout;
  row->addWidget(txtProcTime_);
  row->addWidget(unit);
  row->addSpacing(Lines(*this, 4));
  row->addLayout(words, 1);
  card->Body().addLayout(row);
  connect(txtProcTime_, &QLineEdit::textEdited, this,
          [this](const QString& text) { model_.SetThermPeriod(text.toStdString()); });
  return card;
}

QWidget* ControlPage::MakeRightColumn(bool readOnly) {
  auto* const column = new QWidget;
  auto* const layout = new QVBoxLayout(column);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(Lines(*this, gap));
  layout->addWidget(MakeBoardCard(readOnly), 1);
  layout->addWidget(MakeFileCard());
  return column;
}

QWidget* ControlPage::MakeBoardCard(bool readOnly) {
  const ControlAccess access{model_, [this](const std::function<void()>& action) { Act(action); }, readOnly};
  auto* const card = new Card(u"Board Control"_s);
  card->SetState(Mark::None, readOnly ? u"read-only"_s : u"every click writes at once"_s, true);
  auto* const grid = new QGridLayout;
  card->Body().addLayout(grid);
  grid->addWidget(therm_ = new ThermSection(access), 0, 0);
  grid->addWidget(alert_ = new AlertSection(access), 0, 1);
  grid->addWidget(sensors_ = new SensorSection(access), 1, 0);
  grid->addWidget(heaters_ = new HeaterSection(access), 1, 1);
  grid->addWidget(vid_ = new VidStrip(access), 2, 0, 1, 2);
  noBoard_ = MakeNote(u"lblNoBoard"_s,
                      u"There is no evaluation board on the SMBus: its switches and heaters cannot be set."_s);
  vidNotProbed_ =
      MakeNote(u"lblVidNotProbed"_s,
               u"VID drive: not probed. The probe writes switch U3D, which a read-only run leaves alone."_s);
  grid->addWidget(noBoard_, 3, 0, 1, 2);
  grid->addWidget(vidNotProbed_, 4, 0, 1, 2);
  for (const int i : {0, 1}) {
    grid->setColumnStretch(i, 1);
    grid->setRowStretch(i, 1);
  }
  return card;
}

void ControlPage::Enter() {
  Act([this] { model_.Enter(); });
  txtProcTime_->setText(QString::fromStdString(model_.State().ThermPeriod));
}

void ControlPage::SwitchesChanged() {
  model_.ShowSwitches();
  ShowState();
}

void ControlPage::PinsChanged() {
  model_.ShowPins();
  ShowState();
}

void ControlPage::SetFanDialogAvailable(bool available) {
  fans_->SetFanDialogAvailable(available);
}

void ControlPage::Act(const std::function<void()>& action) {
  RunUserAction(dialogs_, action);
  // Also after a failure: a box that could not be carried out goes back.
  ShowState();
}

void ControlPage::ShowState() {
  model_.ShowPins();  // a failed transfer may have made the pins unknown
  const ControlState& state = model_.State();
  therm_->ShowState(state);
  alert_->ShowState(state);
  sensors_->ShowState(state);
  heaters_->ShowState(state);
  vid_->ShowState(state);
  fans_->ShowState(state);
  noBoard_->setVisible(!state.HasBoard);
  vidNotProbed_->setVisible(state.HasBoard && !state.VidProbed);
  ShowReadings(old_);
}

void ControlPage::ShowReadings(bool old) {
  old_ = old;
  const ControlState& state = model_.State();
  const ControlReadings readings = ReadControl(parts_, state, old);
  fans_->ShowReadings(readings);
  power_->ShowReadings(readings, parts_.Living.Power);
  sensors_->ShowReadings(state, readings);
  heaters_->ShowReadings(parts_, readings);
  vid_->ShowReadings(readings);
  SetTextIfChanged(*thermNow_, readings.Therm);
  SetMuted(*thermNow_, readings.Old);
  SetTextIfChanged(*thermRead_, readings.ThermRead);
  txtProcTime_->setAccessibleDescription(QtText(readings.Therm + ", " + readings.ThermRead));
}

void ControlPage::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  SetCompact(event->size().width() < Lines(*this, fullWidth) || event->size().height() < Lines(*this, fullHeight));
}

void ControlPage::SetCompact(bool compact) {
  left_->setFixedWidth(Lines(*this, compact ? leftCompactWidth : leftWidth));
  fans_->SetCompact(compact);
  power_->SetCompact(compact);
  sensors_->SetCompact(compact);
  heaters_->SetCompact(compact);
  const auto note = [&](Card* section, const QString& text) { section->SetNote(compact ? QString() : text); };
  note(therm_, u"78h bit 1, 7Dh bit 1"_s);
  note(alert_, u"78h bit 0, 7Dh bit 0"_s);
  note(sensors_, u"device U4"_s);
  note(heaters_, u"last 60 s"_s);
}

}  // namespace krx
