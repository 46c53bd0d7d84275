// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/ui/fantab.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "controls/ui/nowheel.h"
#include "controls/ui/updownedit.h"
#include "fans/fantables.h"

namespace krx {
namespace {

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void SelectItem(QComboBox* list, const std::string& item) {
  list->setCurrentIndex(list->findText(Text(item)));
}

}  // namespace

FanTab::FanTab(FanDialogModel& model, std::size_t fan) : model_(model), fan_(fan) {
  auto* const columns = new QHBoxLayout(this);
  const auto addForm = [columns] {
    auto* const form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    columns->addLayout(form, 1);
    return form;
  };
  QFormLayout* const output = HasOutput() ? addForm() : nullptr;
  columns->addSpacing(fontMetrics().horizontalAdvance("mm"));
  QFormLayout* const tach = addForm();

  fanType_ = new QComboBox;
  fanType_->setObjectName(Named("cmbFanType"));
  fanType_->setAccessibleName("Fan Type");
  fanType_->setEditable(true);
  fanType_->setInsertPolicy(QComboBox::NoInsert);
  // Without these a text that happens to be an item would count as a choice, even when the field was only left.
  fanType_->setCompleter(nullptr);
  disconnect(fanType_->lineEdit(), &QLineEdit::editingFinished, fanType_, nullptr);
  for (const FanType& type : fanTypes) fanType_->addItem(Text(type.Item));
  IgnoreWheel(*fanType_);
  connect(fanType_, &QComboBox::activated, this, [this](int index) {
    Fields().FanType = fanType_->itemText(index).toStdString();
    Edit(FanSetting::FanType);
  });
  (HasOutput() ? output : tach)->addRow("Fan Type", fanType_);
  if (HasOutput()) MakeOutputFields(*output);
  MakeTachFields(*tach);
}

QString FanTab::Named(const char* name) const {
  return QString("%1_%2").arg(name).arg(fan_);
}

void FanTab::Edit(FanSetting setting) {
  model_.Edited(setting, fan_);
  emit Edited();
}

QComboBox* FanTab::MakeList(const char* name, const QString& label, std::span<const std::string_view> items,
                            std::string FanFields::*field, FanSetting setting) {
  auto* const list = new QComboBox;
  list->setObjectName(Named(name));
  list->setAccessibleName(label);
  for (const std::string_view item : items) list->addItem(Text(item));
  IgnoreWheel(*list);
  connect(list, &QComboBox::activated, this, [=, this](int index) {
    Fields().*field = list->itemText(index).toStdString();
    Edit(setting);
  });
  return list;
}

QCheckBox* FanTab::MakeCheck(const char* name, const QString& caption, bool FanFields::*field, FanSetting setting) {
  auto* const check = new QCheckBox(caption);
  check->setObjectName(Named(name));
  connect(check, &QCheckBox::clicked, this, [=, this](bool ticked) {
    Fields().*field = ticked;
    Edit(setting);
  });
  return check;
}

void FanTab::MakeOutputFields(QFormLayout& layout) {
  behaviour_ = MakeList("cmbFanControl", "Fan Control", behaviourList, &FanFields::Behaviour, FanSetting::Behaviour);
  spinUp_ = MakeList("cmbSpinUp", "SpinUp", spinUpItems, &FanFields::SpinUp, FanSetting::SpinUp);
  frequency_ =
      MakeList("cmbPWMFrequency", "PWM Frequency", frequencyItems, &FanFields::Frequency, FanSetting::Frequency);
  layout.addRow("Fan Control", behaviour_);
  layout.addRow("SpinUp", spinUp_);
  layout.addRow("PWM Frequency", frequency_);

  auto* const minimum = new QWidget;
  auto* const row = new QHBoxLayout(minimum);
  row->setContentsMargins(0, 0, 0, 0);
  minimumDuty_ = new UpDownEdit(Named("txtMinPWM"), "Min PWM", 0, 100);
  row->addWidget(minimumDuty_, 1);
  row->addWidget(new QLabel("%"));
  auto* const detect = new QPushButton("Auto Detect");
  detect->setObjectName(Named("cmdAutoDetect"));
  row->addWidget(detect);
  layout.addRow("Min PWM", minimum);
  minimumRemark_ = new QLabel;
  minimumRemark_->setObjectName(Named("lblMinPWMRemark"));
  minimumRemark_->hide();
  // A row of its own, unwrapped: a window does not grow for a text that wraps, and would cut it.
  layout.addRow(minimumRemark_);
  saveEvidence_ = new QPushButton("Save evidence...");
  saveEvidence_->setObjectName(Named("cmdSaveEvidence"));
  saveEvidence_->hide();
  layout.addRow(QString(), saveEvidence_);
  connect(minimumDuty_, &UpDownEdit::Edited, this, [this](const QString& text) {
    minimumRemark_->hide();
    Fields().MinimumDuty = text.toStdString();
    Edit(FanSetting::MinimumDuty);
  });
  connect(detect, &QPushButton::clicked, this, &FanTab::AutoDetectWanted);
  connect(saveEvidence_, &QPushButton::clicked, this, &FanTab::SaveEvidenceWanted);

  hysteresis_ = MakeCheck("chkHysteresis", "Hysteresis On", &FanFields::HysteresisOn, FanSetting::Hysteresis);
  activeHigh_ = MakeCheck("chkActiveHigh", "Fan Active High", &FanFields::ActiveHigh, FanSetting::Polarity);
  acoustics_ = MakeCheck("chkAcoustics", QString("Enable Enhanced Acoustics on PWM%1").arg(fan_ + 1),
                         &FanFields::EnhancedAcoustics, FanSetting::Acoustics);
  layout.addRow(hysteresis_);
  layout.addRow(activeHigh_);
  layout.addRow(acoustics_);
  rampRate_ = MakeList("cmbRampRate", "Acoustic Ramp Rate", rampRateItems, &FanFields::RampRate, FanSetting::RampRate);
  layout.addRow("Acoustic Ramp Rate", rampRate_);
}

void FanTab::MakeTachFields(QFormLayout& layout) {
  tachLimit_ = new QLineEdit;
  tachLimit_->setObjectName(Named("txtTachLimit"));
  tachLimit_->setAccessibleName("Tach low Limit (RPM)");
  layout.addRow("Tach low Limit (RPM)", tachLimit_);
  connect(tachLimit_, &QLineEdit::textEdited, this, [this](const QString& text) {
    const QString kept = QString::fromStdString(model_.EditTachLimit(fan_, text.toStdString()));
    if (kept != text) tachLimit_->setText(kept);
    emit Edited();
  });

  auto* const source = new QGroupBox("Tach Source");
  auto* const choices = new QVBoxLayout(source);
  threeWire_ = new QRadioButton("3-Wire Fan");
  threeWire_->setObjectName(Named("opt3Wire"));
  twoWire_ = new QRadioButton("2-Wire Fan");
  twoWire_->setObjectName(Named("opt2Wire"));
  for (QRadioButton* const choice : {threeWire_, twoWire_}) {
    choices->addWidget(choice);
    connect(choice, &QRadioButton::clicked, this, [this, choice] {
      Fields().TwoWire = choice == twoWire_;
      Edit(FanSetting::TachSource);
    });
  }
  layout.addRow(source);

  auto* const pulses = new QGroupBox("Pulses/Rev");
  auto* const lists = new QFormLayout(pulses);
  fanIs_ = MakeList("cmbFanIs", "Fan Is", pulseItems, &FanFields::ActualPulses, FanSetting::ActualPulses);
  measure_ = MakeList("cmbMeasure", "Measure", pulseItems, &FanFields::ProgrammedPulses, FanSetting::ProgrammedPulses);
  lists->addRow("Fan Is", fanIs_);
  lists->addRow("Measure", measure_);
  layout.addRow(pulses);
  if (!HasOutput()) {
    auto* const detect = new QPushButton("Auto Detect");
    detect->setObjectName(Named("cmdAutoDetect"));
    detect->setToolTip("Fan 4 has no PWM output of its own: there is nothing to detect");
    layout.addRow(QString(), detect);
    connect(detect, &QPushButton::clicked, this, &FanTab::AutoDetectWanted);
  }
}

void FanTab::Show() {
  const FanFields& fields = Fields();
  SelectItem(fanType_, fields.FanType);
  fanType_->setEditText(Text(fields.FanType));
  tachLimit_->setText(Text(fields.TachLimit));
  (fields.TwoWire ? twoWire_ : threeWire_)->setChecked(true);
  SelectItem(fanIs_, fields.ActualPulses);
  SelectItem(measure_, fields.ProgrammedPulses);
  if (!HasOutput()) return;
  SelectItem(behaviour_, fields.Behaviour);
  SelectItem(spinUp_, fields.SpinUp);
  SelectItem(frequency_, fields.Frequency);
  minimumDuty_->SetText(Text(fields.MinimumDuty));
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
}

void FanTab::SetEvidenceAvailable(bool available) {
  saveEvidence_->setVisible(available);
}

}  // namespace krx
