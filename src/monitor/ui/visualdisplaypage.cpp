// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/ui/visualdisplaypage.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "controls/ui/labels.h"
#include "controls/ui/palette.h"
#include "controls/ui/userdialogs.h"
#include "link/commserror.h"
#include "monitor/displaystate.h"
#include "monitor/firstvalues.h"
#include "monitor/readingcycle.h"
#include "monitor/seenranges.h"
#include "monitor/ui/channelcard.h"
#include "monitor/ui/channeltiles.h"
#include "monitor/ui/chartcard.h"
#include "monitor/ui/pwmdifference.h"
#include "monitor/ui/pwmpanel.h"
#include "monitor/ui/zonerow.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

/// As the journal names it.
const char* LimitOrigin(Marker marker) {
  return marker == Marker::Low ? "Visual Display: low limit" : "Visual Display: high limit";
}

}  // namespace

VisualDisplayPage::VisualDisplayPage(VisualModel& model, const VisualParts& parts, UserDialogs& dialogs, bool readOnly,
                                     QWidget* parent)
    : QWidget(parent), model_(model), parts_(parts), dialogs_(dialogs) {
  auto* middle = new QHBoxLayout;
  middle->setSpacing(10);
  card_ = new ChannelCard;
  charts_ = new ChartCard({parts_.History, parts_.Display, parts_.Cycle}, dialogs_, model_.State());
  connect(charts_, &ChartCard::Notice, this, &VisualDisplayPage::Notice);
  middle->addWidget(charts_, 1);
  middle->addWidget(card_);
  auto* right = new QVBoxLayout;
  right->setSpacing(10);
  right->addLayout(middle, 1);
  pwm_ = new PwmPanel;
  right->addWidget(MakeBottom(readOnly));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(10, 10, 10, 6);
  row->setSpacing(10);
  tiles_ = new ChannelTiles;
  row->addWidget(tiles_);
  row->addLayout(right, 1);

  connect(tiles_, &ChannelTiles::Selected, this,
          [this](std::size_t channel) { Do([&] { model_.SelectChannel(channel); }); });
  connect(card_, &ChannelCard::MarkerMoving, this, [this](Marker marker, double value) {
    MoveLimit(
        marker, [&] { model_.MarkerMoving(marker, value); }, true);
  });
  connect(card_, &ChannelCard::MarkerReleased, this, [this](Marker marker, double value) {
    MoveLimit(
        marker, [&] { model_.MarkerReleased(marker, value); }, false);
  });
  connect(card_, &ChannelCard::LimitTyped, this, [this](Marker marker, const QString& text) {
    EnterLimit(marker, [&] { model_.TypeLimit(marker, text.toStdString()); });
  });
  connect(card_, &ChannelCard::LimitStepped, this,
          [this](Marker marker, int steps) { EnterLimit(marker, [&] { model_.StepLimit(marker, steps); }); });
  card_->SetStepEnd([this](double from, double wanted) { return model_.LimitStepEnd(from, wanted); });
  connect(card_, &ChannelCard::RangeResetRequested, this, [this] {
    parts_.Ranges.Reset(static_cast<std::size_t>(parts_.Display.SelectedChannel));
    ShowReadings(old_);
  });
  connect(pwm_, &PwmPanel::SliderPressed, this, [this] { Do([&] { model_.SliderPressed(); }); });
  connect(pwm_, &PwmPanel::SliderMoving, this, [this](int value) {
    // The box over a failed write takes the mouse's release, and the cycle would stand still for want of it.
    if (!Do([&] { model_.SliderMoving(value); })) pwm_->LetGo();
  });
  connect(pwm_, &PwmPanel::SliderReleased, this, [this] { Do([&] { model_.SliderReleased(); }); });
  connect(pwm_, &PwmPanel::SliderReleasedAfterMove, this, [this](int value) {
    if (!Do([&] { model_.SliderReleasedAfterMove(value); })) pwm_->LetGo();
  });
}

QPushButton* VisualDisplayPage::AddButton(const QString& name, const QString& text) {
  auto* button = new QPushButton(text);
  button->setObjectName(name);
  button->setAccessibleName(text);
  // On a narrow screen the room around the texts gives way first.
  button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  button->setMinimumWidth(button->fontMetrics().horizontalAdvance(text) + button->fontMetrics().height() * 3 / 4);
  return button;
}

QWidget* VisualDisplayPage::MakeBottom(bool readOnly) {
  auto* frame = new QFrame;
  MakeCard(*frame);
  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  row->addWidget(pwm_, 1);
  row->addSpacing(10);

  QPushButton* easySetup = AddButton(u"Command1"_s, u"Easy Setup"_s);
  easySetup->setToolTip(u"Click for EasySetup"_s);
  connect(easySetup, &QPushButton::clicked, this, &VisualDisplayPage::EasySetupRequested);
  QPushButton* setupLog = AddButton(u"cmdViewEasy"_s, u"Setup Log..."_s);
  connect(setupLog, &QPushButton::clicked, this, &VisualDisplayPage::SetupLogRequested);
  row->addWidget(easySetup);
  row->addWidget(setupLog);
  QPushButton* fanTest = AddButton(u"cmdFanTest"_s, u"Fan Test Setup"_s);
  connect(fanTest, &QPushButton::clicked, this, &VisualDisplayPage::FanTestRequested);
  QPushButton* glitchTest = AddButton(u"cmdGlitchTest"_s, u"glitch test"_s);
  connect(glitchTest, &QPushButton::clicked, this, &VisualDisplayPage::GlitchTestRequested);
  QPushButton* bigGraph = AddButton(u"cmdBigGraph"_s, u"Expand Graph"_s);
  bigGraph->setEnabled(false);
  bigGraph->setToolTip(u"not available yet"_s);
  for (QPushButton* button : {fanTest, glitchTest, bigGraph}) row->addWidget(button);
  if (readOnly) {
    for (QPushButton* button : {easySetup, fanTest, glitchTest}) button->setEnabled(false);
    pwm_->setEnabled(false);
    card_->SetReadOnly();
  }

  auto* column = new QVBoxLayout(frame);
  column->setContentsMargins(14, 8, 14, 8);
  column->addLayout(row);
  pwmDifference_ = new PwmDifference;
  connect(pwmDifference_, &PwmDifference::ReReadRequested, this, &VisualDisplayPage::ReReadRequested);
  column->addWidget(pwmDifference_);
  notMonitoring_ = MakeLabel(u"lblNotMonitoring"_s, 1, true);
  notMonitoring_->setText(readOnly ? u"Not monitoring, values are out of date"_s
                                   : u"Not monitoring, values are out of date: press Easy Setup to start"_s);
  column->addWidget(notMonitoring_);
  zoneRow_ = new ZoneRow;
  column->addWidget(zoneRow_);
  return frame;
}

bool VisualDisplayPage::Do(const std::function<void()>& action) {
  const bool done = RunUserAction(dialogs_, action);
  ShowAll();
  return done;
}

void VisualDisplayPage::MoveLimit(Marker marker, const std::function<void()>& action, bool dragging) {
  bool refused = false;
  const auto refusable = [&] {
    try {
      action();
    } catch (const OutOfRange& reason) {  // no failure of the link: the value has no byte
      refused = true;
      emit LimitRejected(QString::fromStdString(reason.what()));
    }
  };
  const bool done = RunUserAction(dialogs_, refusable, LimitOrigin(marker));
  // While the mouse holds a marker the gauge has it.
  if (dragging && done && !refused) return;
  ShowAll();
}

void VisualDisplayPage::EnterLimit(Marker marker, const std::function<void()>& action) {
  QString range;
  const auto refusable = [&] {
    try {
      action();
    } catch (const OutOfRange& reason) {
      range = QString::fromStdString(reason.what());
    }
  };
  RunUserAction(dialogs_, refusable, LimitOrigin(marker));
  if (range.isEmpty()) {
    card_->Release(marker);
    ShowAll();
    return;
  }
  card_->Refuse(marker, range);
  const auto selected = static_cast<std::size_t>(parts_.Display.SelectedChannel);
  emit LimitRejected(u"Not written: the %1 limit of %2 must be %3"_s.arg(
      marker == Marker::High ? u"high"_s : u"low"_s, QString::fromStdString(model_.State().Captions[selected]), range));
}

void VisualDisplayPage::ShowAll() {
  tiles_->ShowFrames(model_.State());
  charts_->ShowState(model_.State());
  ShowLimits();
  ShowReadings(old_);
}

void VisualDisplayPage::ShowLimits() {
  card_->ShowLimits(model_.State().Gauge, static_cast<std::size_t>(parts_.Display.SelectedChannel),
                    parts_.Power.PowerMode);
}

void VisualDisplayPage::SetWaitBudget(WaitBudget* budget) {
  charts_->SetWaitBudget(budget);
}

void VisualDisplayPage::Posted() {
  charts_->Posted();
}

void VisualDisplayPage::GapPosted() {
  charts_->GapPosted();
}

SavingBar& VisualDisplayPage::Saving() {
  return charts_->Saving();
}

void VisualDisplayPage::SetSource(const QString& source) {
  charts_->SetSource(source);
}

void VisualDisplayPage::ShowReadings(bool old) {
  old_ = old;
  const bool notMonitoring = parts_.First.Monitoring() == false;
  const bool outOfDate = old || notMonitoring;
  const VisualState& state = model_.State();
  for (std::size_t channel = 0; channel < channelCount; ++channel) {
    tiles_->ShowReading(state, channel,
                        {.Readout = QString::fromStdString(ReadoutText(channel, parts_.Measured, parts_.Power)),
                         .Measured = parts_.First.Measured(channel, parts_.Power),
                         .Old = outOfDate || parts_.Cycle.ReadFailed(channel),
                         .Alarm = QString::fromStdString(model_.AlarmWords(channel)),
                         .LampOld = outOfDate});
  }
  const auto selected = static_cast<std::size_t>(parts_.Display.SelectedChannel);
  card_->ShowReading(state, selected,
                     {.Range = parts_.Ranges.Of(selected),
                      .PowerMode = parts_.Power.PowerMode,
                      .Measured = parts_.First.Measured(selected, parts_.Power),
                      .AlarmWords = model_.AlarmWords(selected),
                      .Old = outOfDate,
                      .NotMonitoring = notMonitoring,
                      .PulsesDiffer = model_.PulsesDiffer(selected),
                      .Failed = parts_.Cycle.ReadFailed(selected)});
  // Placed by a tick, which measured what they rest on.
  if (state.Gauge.IsPlaced(Marker::Low) && !card_->HasLimits()) ShowLimits();
  for (const Marker marker : {Marker::Low, Marker::High}) {
    if (card_->IsRefused(marker)) card_->Refuse(marker, QString::fromStdString(model_.LimitRange(marker)));
  }
  const auto output = static_cast<std::size_t>(parts_.Display.SelectedPwm - 1);
  pwm_->Show(state, outOfDate || parts_.Cycle.DutyFailed(output));
  pwmDifference_->Show(state.Pwm);
  notMonitoring_->setVisible(notMonitoring);
  zoneRow_->ShowReading(state, outOfDate);
  zoneRow_->setVisible(parts_.Display.DynamicTminShown);
  charts_->ShowReading(state);
}

}  // namespace krx
