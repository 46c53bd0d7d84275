// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/ui/pwmpanel.h"

#include <QHBoxLayout>
#include <QLabel>

#include "controls/ui/dutyslider.h"
#include "controls/ui/labels.h"

namespace krx {

using namespace Qt::StringLiterals;

PwmPanel::PwmPanel(QWidget* parent) : QWidget(parent) {
  panel_ = new QWidget;
  panel_->setObjectName(u"pnlPWM"_s);
  panelCaption_ = MakeLabel(u"lblPanelCaption"_s, 1.0, true);
  panelBehaviour_ = MakeLabel(u"lblPanelBehaviour"_s, 1.0, false, true);
  panelText_ = MakeLabel(u"lblPWM"_s, 1.5, true);
  panelText_->setText(u"100%"_s);  // by design; the first reading replaces it
  auto* panelRow = new QHBoxLayout(panel_);
  panelRow->setContentsMargins(0, 0, 0, 0);
  for (QLabel* label : {panelCaption_, panelBehaviour_, panelText_}) panelRow->addWidget(label);
  panelRow->addStretch();

  sliderPanel_ = new QWidget;
  sliderPanel_->setObjectName(u"pnlSlider"_s);
  sliderCaption_ = MakeLabel(u"lblSliderCaption"_s, 1.0, true);
  sliderBehaviour_ = MakeLabel(u"lblSliderBehaviour"_s, 1.0, false, true);
  dutyText_ = MakeLabel(u"lblDutyCycle1"_s, 1.5, true);
  slider_ = new DutySlider;
  slider_->setMinimumWidth(fontMetrics().averageCharWidth() * 12);
  auto* sliderRow = new QHBoxLayout(sliderPanel_);
  sliderRow->setContentsMargins(0, 0, 0, 0);
  sliderRow->addWidget(sliderCaption_);
  sliderRow->addWidget(sliderBehaviour_);
  sliderRow->addWidget(slider_, 1);
  sliderRow->addWidget(dutyText_);
  // Room for the longest text: a duty that changes its length would otherwise move the slider under the mouse.
  dutyText_->setMinimumWidth(dutyText_->fontMetrics().horizontalAdvance(u"100%"_s));
  dutyText_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(panel_);
  row->addWidget(sliderPanel_);

  connect(slider_, &DutySlider::Pressed, this, &PwmPanel::SliderPressed);
  connect(slider_, &DutySlider::ValueMoving, this, &PwmPanel::SliderMoving);
  connect(slider_, &DutySlider::Released, this, &PwmPanel::SliderReleased);
  connect(slider_, &DutySlider::ReleasedAfterMove, this, &PwmPanel::SliderReleasedAfterMove);
}

void PwmPanel::Show(const VisualState& state, bool old) {
  SetTextIfChanged(*panelCaption_, state.PanelCaption);
  SetTextIfChanged(*panelText_, state.PwmText);
  SetTextIfChanged(*sliderCaption_, state.PanelCaption);
  SetTextIfChanged(*dutyText_, state.DutyCycleText);
  SetTextIfChanged(*panelBehaviour_, state.Pwm.Word);
  // Where it differs, a line of its own says it: beside the slider a long word would widen the window.
  SetTextIfChanged(*sliderBehaviour_, state.Pwm.Difference.empty() ? state.Pwm.Word : std::string());
  const QString unknown = u"–"_s;
  SetMuted(*panelText_, old || panelText_->text() == unknown);
  SetMuted(*dutyText_, old || dutyText_->text() == unknown);
  const QString slider = QString::fromStdString(state.SliderCaption);
  if (slider_->Caption() != slider) slider_->SetCaption(slider);
  slider_->SetValue(state.SliderValue);
  sliderPanel_->setVisible(state.SliderShown);
  panel_->setVisible(!state.SliderShown);
}

void PwmPanel::LetGo() {
  slider_->LetGo();
}

}  // namespace krx
