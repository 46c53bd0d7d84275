// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/controlpage.h"

#include <QLabel>
#include <QVBoxLayout>

namespace krx {

ControlPage::ControlPage(QWidget* parent) : QWidget(parent) {
  auto* label = new QLabel(tr("This page is not available yet."));
  label->setAlignment(Qt::AlignCenter);
  label->setEnabled(false);
  (new QVBoxLayout(this))->addWidget(label);
}

}  // namespace krx
