// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/ui/pinsections.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QRadioButton>

#include "controls/ui/labels.h"
#include "controls/ui/texts.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr double noteScale = 0.92;
constexpr double lineGap = 0.35;

QLabel* AddConsequence(QVBoxLayout& body, const QString& name) {
  auto* const label = MakeLabel(name, noteScale, false, true);
  label->setWordWrap(true);
  body.addStretch();
  body.addWidget(label);
  return label;
}

}  // namespace

ThermSection::ThermSection(const ControlAccess& access)
    : Card(u"THERM Setup"_s, Kind::Section), readOnly_(access.ReadOnly) {
  ControlModel& model = access.Model;
  chkProchot_ = MakeCheck(u"chkPROCHOT"_s, u"EnableTHERM"_s, access, [&model](bool ticked) { model.SetTherm(ticked); });
  opt5V_ = MakeOption(u"opt5V"_s, u"Input on 5V pin"_s, access, [&model] { model.SetThermPin(true); });
  optTach4_ = MakeOption(u"optTach4"_s, u"Input on Tach4 pin"_s, access, [&model] { model.SetThermPin(false); });
  QRadioButton* const prochot = MakeOption(u"optPROCHOT"_s, u"Enable PROCHOT"_s, access, nullptr);
  prochot->setEnabled(false);
  prochot->setToolTip(u"Has no action: EnableTHERM switches the input"_s);
  Body().addWidget(chkProchot_, 0, Qt::AlignLeft);
  auto* const options = new QVBoxLayout;
  options->setContentsMargins(Lines(*this, 1.5), 0, 0, 0);
  options->setSpacing(Lines(*this, lineGap));
  for (QRadioButton* const option : {opt5V_, optTach4_, prochot}) options->addWidget(option, 0, Qt::AlignLeft);
  Body().addLayout(options);
  consequence_ = AddConsequence(Body(), u"lblThermConsequence"_s);
}

void ThermSection::ShowState(const ControlState& state) {
  ShowMarked(*chkProchot_, state.Therm);
  ShowMarked(*opt5V_, state.ThermOn5v);
  ShowMarked(*optTach4_, state.ThermOnTach4);
  for (QRadioButton* const option : {opt5V_, optTach4_}) option->setEnabled(state.Therm && !readOnly_);
  chkProchot_->setEnabled(!readOnly_);
  const SectionWords words = ThermWords(state);
  ShowSectionState(*this, words);
  SetTextIfChanged(*consequence_, words.Consequence);
  chkProchot_->setAccessibleDescription(QtText(words.Word + ". " + words.Consequence));
}

AlertSection::AlertSection(const ControlAccess& access)
    : Card(u"SMBAlert Setup"_s, Kind::Section), readOnly_(access.ReadOnly) {
  ControlModel& model = access.Model;
  const auto onPwm2 = [&model](bool ticked) { model.SetAlertOnPwm2(ticked); };
  chkAlert_ = MakeCheck(u"chkAlert"_s, u"Enable Alert"_s, access, onPwm2);
  chkPwm2Alert_ = MakeCheck(u"chkPWM2Alert"_s, u"ALERT on PWM2 pin"_s, access, onPwm2);
  optPwm2_ = MakeOption(u"optPWM2"_s, u"Alert on PWM2 pin"_s, access, [&model] { model.SetAlertOn25v(false); });
  chk25vAlert_ = MakeCheck(u"chk25vAlert"_s, u"ALERT on 2.5V pin"_s, access,
                           [&model](bool ticked) { model.SetAlertOn25v(ticked); });
  opt25V_ = MakeOption(u"opt25V"_s, u"Alert on 2.5V pin"_s, access, [&model] { model.SetAlertOn25v(true); });
  auto* const grid = new QGridLayout;
  grid->setHorizontalSpacing(Lines(*this, 0.6));
  grid->setVerticalSpacing(Lines(*this, lineGap));
  grid->addWidget(chkAlert_, 0, 0, Qt::AlignLeft);
  grid->addWidget(chkPwm2Alert_, 1, 0, Qt::AlignLeft);
  grid->addWidget(optPwm2_, 1, 1, Qt::AlignLeft);
  grid->addWidget(chk25vAlert_, 2, 0, Qt::AlignLeft);
  grid->addWidget(opt25V_, 2, 1, Qt::AlignLeft);
  grid->setColumnStretch(2, 1);
  Body().addLayout(grid);
  consequence_ = AddConsequence(Body(), u"lblAlertConsequence"_s);
}

void AlertSection::ShowState(const ControlState& state) {
  ShowMarked(*chkAlert_, state.AlertOnPwm2);
  ShowMarked(*chkPwm2Alert_, state.AlertOnPwm2);
  for (QCheckBox* const check : {chkAlert_, chkPwm2Alert_}) check->setEnabled(!readOnly_);
  ShowMarked(*chk25vAlert_, state.AlertOn25v);
  ShowMarked(*opt25V_, state.AlertOn25v);
  ShowMarked(*optPwm2_, state.NoAlertOn25v);
  chk25vAlert_->setEnabled(state.Alert25vOffered && !readOnly_);
  opt25V_->setEnabled(state.Alert25vOffered && !readOnly_);
  optPwm2_->setEnabled(!readOnly_);  // it clears the bit, whatever the probe found
  const SectionWords words = AlertWords(state);
  ShowSectionState(*this, words);
  SetTextIfChanged(*consequence_, words.Consequence);
  chkAlert_->setAccessibleDescription(QtText(words.Word + ". " + words.Consequence));
}

}  // namespace krx
