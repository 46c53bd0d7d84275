// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/ui/fantab.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "controls/ui/labels.h"
#include "controls/ui/nowheel.h"
#include "controls/ui/texts.h"
#include "controls/ui/updownedit.h"
#include "fans/fantables.h"
#include "fans/ui/fieldcolumn.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr double noteScale = 0.92;
constexpr double readingScale = 1.25;

void SelectItem(QComboBox* list, const std::string& item) {
  list->setCurrentIndex(list->findText(QtText(item)));
}

}  // namespace

FanTab::FanTab(FanDialogModel& model, std::size_t fan) : Card(u"Fan %1"_s.arg(fan + 1)), model_(model), fan_(fan) {
  MakeHead();
  auto* const columns = new QHBoxLayout;
  Body().addLayout(columns);
  if (HasOutput()) {
    auto* const output = new FieldColumn;
    columns->addLayout(output);
    MakeOutputFields(*output);
    output->End();
  }
  auto* const tach = new FieldColumn;
  columns->addLayout(tach);
  MakeTachFields(*tach);
  tach->End();
  columns->addStretch();
}

void FanTab::MakeHead() {
  SetNote(HasOutput() ? u"PWM%1, Tach%1"_s.arg(fan_ + 1) : u"Tach4, no PWM output of its own"_s);
  old_ = MakeLabel({}, noteScale, false, true);
  old_->setText(u"old"_s);
  duty_ = MakeLabel(Named(u"lblDuty"_s), readingScale, true);
  speed_ = MakeLabel(Named(u"lblSpeed"_s), readingScale, true);
  Head().addWidget(old_);
  Head().addWidget(duty_);
  Head().addSpacing(fontMetrics().horizontalAdvance(u'm'));
  Head().addWidget(speed_);
  duty_->setVisible(HasOutput());
  ShowReading({});
}

void FanTab::ShowReading(const FanReading& reading) {
  const auto show = [&](QLabel& label, const QString& name, const std::string& text) {
    const QString shown = text.empty() ? u"–"_s : QtText(text);
    SetNamedText(label, name, reading.Old ? shown + u", old"_s : shown);
    SetTextIfChanged(label, shown);
    SetMuted(label, reading.Old || shown == u"–"_s);
  };
  show(*speed_, u"Speed"_s, reading.Speed);
  show(*duty_, u"Duty"_s, reading.Duty);
  old_->setVisible(reading.Old);
}

QString FanTab::Named(const QString& name) const {
  return u"%1_%2"_s.arg(name).arg(fan_);
}

void FanTab::Edit(FanSetting setting) {
  model_.Edited(setting, fan_);
  emit Edited();
}

QComboBox* FanTab::MakeFanType() {
  fanType_ = new QComboBox;
  fanType_->setObjectName(Named(u"cmbFanType"_s));
  fanType_->setAccessibleName(u"Fan Type"_s);
  fanType_->setEditable(true);
  fanType_->setInsertPolicy(QComboBox::NoInsert);
  // Without these a text that happens to be an item would count as a choice, even when the field was only left.
  fanType_->setCompleter(nullptr);
  disconnect(fanType_->lineEdit(), &QLineEdit::editingFinished, fanType_, nullptr);
  for (const FanType& type : fanTypes) fanType_->addItem(QtText(type.Item));
  IgnoreWheel(*fanType_);
  connect(fanType_, &QComboBox::activated, this, [this](int index) {
    Fields().FanType = fanType_->itemText(index).toStdString();
    Edit(FanSetting::FanType);
  });
  return fanType_;
}

QComboBox* FanTab::MakeList(const QString& name, const QString& label, std::span<const std::string_view> items,
                            std::string FanFields::*field, FanSetting setting) {
  auto* const list = new QComboBox;
  list->setObjectName(Named(name));
  list->setAccessibleName(label);
  for (const std::string_view item : items) list->addItem(QtText(item));
  IgnoreWheel(*list);
  connect(list, &QComboBox::activated, this, [=, this](int index) {
    Fields().*field = list->itemText(index).toStdString();
    Edit(setting);
  });
  return list;
}

QCheckBox* FanTab::MakeCheck(const QString& name, const QString& caption, bool FanFields::*field, FanSetting setting) {
  auto* const check = new QCheckBox(caption);
  check->setObjectName(Named(name));
  connect(check, &QCheckBox::clicked, this, [=, this](bool ticked) {
    Fields().*field = ticked;
    Edit(setting);
  });
  return check;
}

QPushButton* FanTab::MakeAutoDetect() {
  auto* const detect = new QPushButton(u"Auto Detect"_s);
  detect->setObjectName(Named(u"cmdAutoDetect"_s));
  connect(detect, &QPushButton::clicked, this, &FanTab::AutoDetectRequested);
  return detect;
}

void FanTab::MakeOutputFields(FieldColumn& column) {
  behaviour_ =
      MakeList(u"cmbFanControl"_s, u"Fan Control"_s, behaviourList, &FanFields::Behaviour, FanSetting::Behaviour);
  frequency_ =
      MakeList(u"cmbPWMFrequency"_s, u"PWM Frequency"_s, frequencyItems, &FanFields::Frequency, FanSetting::Frequency);
  activeHigh_ = MakeCheck(u"chkActiveHigh"_s, u"Fan Active High"_s, &FanFields::ActiveHigh, FanSetting::Polarity);
  spinUp_ = MakeList(u"cmbSpinUp"_s, u"SpinUp"_s, spinUpItems, &FanFields::SpinUp, FanSetting::SpinUp);
  acoustics_ = MakeCheck(u"chkAcoustics"_s, u"Enable Enhanced Acoustics on PWM%1"_s.arg(fan_ + 1),
                         &FanFields::EnhancedAcoustics, FanSetting::Acoustics);
  rampRate_ =
      MakeList(u"cmbRampRate"_s, u"Acoustic Ramp Rate"_s, rampRateItems, &FanFields::RampRate, FanSetting::RampRate);
  column.Begin(u"Drive"_s);
  column.Add(u"Fan Type"_s, MakeFanType());
  column.Add(u"Fan Control"_s, behaviour_);
  column.Add(u"PWM Frequency"_s, frequency_);
  column.AddWide(activeHigh_);
  column.Begin(u"Minimum duty"_s);
  MakeMinimumFields(column);
  column.Begin(u"Spin-up and acoustics"_s);
  column.Add(u"SpinUp"_s, spinUp_);
  column.AddWide(acoustics_);
  column.Add(u"Acoustic Ramp Rate"_s, rampRate_);
}

void FanTab::MakeMinimumFields(FieldColumn& column) {
  minimumDuty_ = new UpDownEdit(Named(u"txtMinPWM"_s), u"Min PWM"_s, 0, 100);
  column.Add(u"Min PWM"_s, minimumDuty_, {new QLabel(u"%"_s), MakeAutoDetect()});
  minimumRemark_ = new QLabel;
  minimumRemark_->setObjectName(Named(u"lblMinPWMRemark"_s));
  minimumRemark_->hide();
  // Unwrapped: a window does not grow for a text that wraps, and would cut it.
  column.AddWide(minimumRemark_);
  saveEvidence_ = new QPushButton(u"Save evidence..."_s);
  saveEvidence_->setObjectName(Named(u"cmdSaveEvidence"_s));
  saveEvidence_->hide();
  column.AddWide(saveEvidence_);
  hysteresis_ = MakeCheck(u"chkHysteresis"_s, u"Hysteresis On"_s, &FanFields::HysteresisOn, FanSetting::Hysteresis);
  column.AddWide(hysteresis_);
  connect(minimumDuty_, &UpDownEdit::Edited, this, [this](const QString& text) {
    minimumRemark_->hide();
    minimumDuty_->Field().setAccessibleDescription({});
    Fields().MinimumDuty = text.toStdString();
    Edit(FanSetting::MinimumDuty);
  });
  connect(saveEvidence_, &QPushButton::clicked, this, &FanTab::SaveEvidenceRequested);
}

void FanTab::MakeTachFields(FieldColumn& column) {
  column.Begin(u"Tachometer"_s);
  if (!HasOutput()) column.Add(u"Fan Type"_s, MakeFanType());
  tachLimit_ = new QLineEdit;
  tachLimit_->setObjectName(Named(u"txtTachLimit"_s));
  tachLimit_->setAccessibleName(u"Tach low Limit (RPM)"_s);
  tachLimit_->setFixedWidth(fontMetrics().horizontalAdvance(u'0') * 12);
  connect(tachLimit_, &QLineEdit::textEdited, this, [this](const QString& text) {
    const QString kept = QtText(model_.EditTachLimit(fan_, text.toStdString()));
    if (kept != text) tachLimit_->setText(kept);
    emit Edited();
  });
  column.Add(u"Tach low Limit (RPM)"_s, tachLimit_);

  column.Begin(u"Tach Source"_s);
  threeWire_ = new QRadioButton(u"3-Wire Fan"_s);
  threeWire_->setObjectName(Named(u"opt3Wire"_s));
  twoWire_ = new QRadioButton(u"2-Wire Fan"_s);
  twoWire_->setObjectName(Named(u"opt2Wire"_s));
  for (QRadioButton* const choice : {threeWire_, twoWire_}) {
    column.AddWide(choice);
    connect(choice, &QRadioButton::clicked, this, [this, choice] {
      Fields().TwoWire = choice == twoWire_;
      Edit(FanSetting::TachSource);
    });
  }

  column.Begin(u"Pulses/Rev"_s);
  fanIs_ = MakeList(u"cmbFanIs"_s, u"Fan Is"_s, pulseItems, &FanFields::ActualPulses, FanSetting::ActualPulses);
  measure_ =
      MakeList(u"cmbMeasure"_s, u"Measure"_s, pulseItems, &FanFields::ProgrammedPulses, FanSetting::ProgrammedPulses);
  column.Add(u"Fan Is"_s, fanIs_);
  column.Add(u"Measure"_s, measure_);
  if (!HasOutput()) {
    QPushButton* const detect = MakeAutoDetect();
    detect->setToolTip(u"Fan 4 has no PWM output of its own: there is nothing to detect"_s);
    column.AddWide(detect);
  }
}

void FanTab::Show() {
  const FanFields& fields = Fields();
  SelectItem(fanType_, fields.FanType);
  fanType_->setEditText(QtText(fields.FanType));
  tachLimit_->setText(QtText(fields.TachLimit));
  (fields.TwoWire ? twoWire_ : threeWire_)->setChecked(true);
  SelectItem(fanIs_, fields.ActualPulses);
  SelectItem(measure_, fields.ProgrammedPulses);
  if (!HasOutput()) return;
  SelectItem(behaviour_, fields.Behaviour);
  SelectItem(spinUp_, fields.SpinUp);
  SelectItem(frequency_, fields.Frequency);
  minimumDuty_->SetText(QtText(fields.MinimumDuty));
  hysteresis_->setChecked(fields.HysteresisOn);
  activeHigh_->setChecked(fields.ActiveHigh);
  acoustics_->setChecked(fields.EnhancedAcoustics);
  SelectItem(rampRate_, fields.RampRate);
}

void FanTab::FocusOn(FanSetting setting) {
  QLineEdit& field = setting == FanSetting::MinimumDuty && HasOutput() ? minimumDuty_->Field() : *tachLimit_;
  field.setFocus();
  field.selectAll();
}

void FanTab::SetMinimumDuty(int percent, const QString& remark) {
  minimumDuty_->SetText(QString::number(percent));
  Fields().MinimumDuty = std::to_string(percent);
  Edit(FanSetting::MinimumDuty);
  minimumRemark_->setText(remark);
  minimumRemark_->setVisible(!remark.isEmpty());
  minimumDuty_->Field().setAccessibleDescription(remark);
  if (remark.isEmpty()) return;
  QAccessibleEvent announcement(minimumRemark_, QAccessible::Alert);
  QAccessible::updateAccessibility(&announcement);
}

void FanTab::SetEvidenceAvailable(bool available) {
  saveEvidence_->setVisible(available);
}

}  // namespace krx
