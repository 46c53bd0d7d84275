// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/ui/pwmdifference.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "controls/ui/labels.h"
#include "monitor/pwmbehaviour.h"

namespace krx {

using namespace Qt::StringLiterals;

PwmDifference::PwmDifference(QWidget* parent)
    : QWidget(parent), text_(MakeLabel(u"lblPwmDifference"_s, 1, false)), remedy_(new QPushButton) {
  remedy_->setObjectName(u"cmdUseSlider"_s);
  remedy_->setAccessibleName(u"Re-read Chip"_s);
  remedy_->setToolTip(u"Reads the chip again (F5)"_s);
  connect(remedy_, &QPushButton::clicked, this, &PwmDifference::ReReadRequested);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(text_);
  row->addWidget(remedy_);
  row->addStretch(1);
  hide();
}

void PwmDifference::Show(const PwmBehaviour& behaviour) {
  if (!behaviour.Difference.empty()) {
    SetTextIfChanged(*text_, behaviour.Difference);
    const QString caption = QString::fromStdString(behaviour.Remedy);
    if (remedy_->text() != caption) remedy_->setText(caption);
  }
  setVisible(!behaviour.Difference.empty());
}

}  // namespace krx
