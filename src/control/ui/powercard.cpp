// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/ui/powercard.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "control/ui/controlchoice.h"
#include "control/ui/readinglabel.h"
#include "controls/ui/labels.h"
#include "power/powersettings.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr double noteScale = 0.92;
constexpr double figureScale = 1.6;
constexpr double buttonLines = 12.7;

}  // namespace

PowerCard::PowerCard() : Card(u"Power and Operating Point"_s) {
  SetState(Mark::None, u"not available yet"_s, true);
  equation_ = MakeLabel(u"lblEquation"_s, 1, false, true);
  auto* const buttons = new QGridLayout;
  buttons->setHorizontalSpacing(Lines(*this, 0.9));
  int row = 0;
  for (const QString& caption :
       {u"Operating Point Demo"_s, u"Power/Current Parameters"_s, u"Power/Current Display"_s}) {
    auto* const button = new QPushButton(caption);
    button->setMinimumWidth(Lines(*this, buttonLines));
    button->setEnabled(false);
    button->setToolTip(u"Not available yet"_s);
    buttons->addWidget(button, row++, 0);
  }
  buttons->addWidget(equation_, 1, 1);
  buttons->setColumnStretch(1, 1);
  Body().addLayout(buttons);
  Body().addStretch();

  figures_ = new QWidget;
  auto* const figures = new QHBoxLayout(figures_);
  figures->setContentsMargins(0, 0, 0, 0);
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const QString name = std::array{u"Power"_s, u"Current"_s, u"Vccp"_s}[i];
    auto* const section = new Card({}, Kind::Section);
    section->setAccessibleName(name);
    section->Body().setSpacing(Lines(*this, 0.2));
    auto* const caption = MakeLabel({}, noteScale, false, true);
    caption->setText(name);
    values_[i] = new ReadingLabel(u"lblFigure%1"_s.arg(name), name, figureScale, true, Qt::AlignLeft);
    section->Body().addWidget(caption);
    section->Body().addWidget(values_[i]);
    figures->addWidget(section, 1);
  }
  Body().addWidget(figures_);
}

void PowerCard::ShowReadings(const ControlReadings& readings, const PowerSettings& power) {
  values_[0]->Show(readings.Power);
  values_[1]->Show(readings.Current);
  values_[2]->Show(readings.Vccp);
  SetTextIfChanged(*equation_, !power.PowerMode      ? u"V*I is off"_s
                               : power.PowerEquation ? u"Rout/Scale equation"_s
                                                     : u"Scale/Offset equation"_s);
}

void PowerCard::SetCompact(bool compact) {
  figures_->setVisible(!compact);
}

}  // namespace krx
